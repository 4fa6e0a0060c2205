// Which plug-in of REAPER's lists plays an insert: the chain of rules.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/name_hash.h"
#include "plugins/scan_list.h"

namespace frt {

// The 16 bytes of a class id of 32 hexadecimal digits; nothing for another text.
using ClassIdBytes = std::array<std::uint8_t, 16>;
std::optional<ClassIdBytes> decoded(std::string_view class_id);

// Four characters as a big-endian number, as plug-ins write their ids; nothing for another length.
std::optional<std::uint32_t> four_character_code(std::string_view code);

// Asked for every distinct plug-in of a session, which in a hostile one can be 50,000: each rule is an index of the
// list, in which the first entry that a walk would meet stands.
class IdentityIndex {
 public:
  // The cache must outlive the index.
  explicit IdentityIndex(const ReaperPluginCache& cache);

  struct Match {
    std::size_t entry = 0;
    std::string_view rule;
  };

  // The first rule that an entry of the list meets. `hint_name` is what the plug-in is known as, or empty.
  std::optional<Match> match_identity(std::string_view key, std::string_view hint_name, bool prefer_vst3) const;

  // The first VST3 whose class id says that it takes the place of the VST2 with this code.
  std::optional<std::size_t> compatible(std::string_view code) const;

  // The entry of the name that a session gives its plug-in; nothing if plug-ins of several makers have it.
  std::optional<std::size_t> of_stored_name(std::string_view name) const;

 private:
  using ByCode = std::unordered_map<std::uint32_t, std::size_t>;  // the first entry of each

  void add(std::size_t index);
  void add_stored_name(std::size_t index, const std::string& name);
  std::optional<Match> match_name(std::string_view hint_name) const;
  std::optional<std::size_t> holding_both(std::uint32_t maker, std::uint32_t code) const;

  struct StoredName {
    std::size_t best = 0;
    std::string maker;
    bool several_makers = false;
  };

  const ReaperPluginCache& cache_;
  ByCode compatible_;  // by the code in a class id that begins with "VST"
  ByCode vst2_ids_;
  ByCode id_ends_;                                                      // by the last four bytes of a class id
  HashByName<std::size_t> stems_;                                       // VST3s with a class id, by file
  HashByName<std::size_t> names_;                                       // by short or bare name
  std::vector<std::string> bare_names_;                                 // of all entries
  HashByName<StoredName> stored_names_;                                 // by bare name
  std::unordered_map<std::uint32_t, std::vector<std::size_t>> inside_;  // VST3s by each four bytes of their class id
};

}  // namespace frt

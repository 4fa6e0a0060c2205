// The list of volumes, folders and files that a session keeps for its audio (and another for its movies): the one
// reader of its layout.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "ptf/session_bytes.h"

namespace frt {

struct FileListEntry {
  enum Kind : std::uint8_t { kVolume = 0, kFolder = 1, kFile = 2 };
  std::uint8_t kind = kVolume;
  std::uint32_t parent = 0;  // number of an entry, 0xFFFFFFFF for none
  std::string_view name;
};

// The entries of a name list block from `start` to `end`, as every session from Pro Tools 10 on writes it; nothing if
// it doesn't read that way to its last byte.
std::optional<std::vector<FileListEntry>> read_file_list(const SessionBytes& session, std::uint64_t start,
                                                         std::uint64_t end);

// Entries of a list that was made otherwise or is damaged: a name and the four bytes behind it, nothing else.
struct TaggedName {
  std::string_view name;
  std::string_view tag;  // "WAVE" and the like; zero bytes for a folder
};

// Steps over such a list from its first name on. Its length runs to at most `most_name` bytes a name; nothing at its
// end, or at a name that is empty, longer, or leaves the image.
class TaggedNames {
 public:
  TaggedNames(const SessionBytes& session, std::uint64_t start, std::uint64_t end);
  // The next name cut to what the image holds.
  std::optional<TaggedName> next_cut();
  // The next name as a whole: 1 to `most_name` bytes, the entry ending at or before two bytes behind the list.
  std::optional<TaggedName> next_whole(std::uint32_t most_name);

 private:
  const SessionBytes& session_;
  std::uint64_t at_, end_;
};

}  // namespace frt

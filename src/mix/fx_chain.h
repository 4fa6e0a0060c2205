// What each insert of a strip becomes, decided: a plug-in with its settings, the plug-in at its defaults, a named empty
// slot, or nothing. Whatever it is, a row tells it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "mix/fx_counts.h"
#include "mix/key_inputs.h"
#include "mix/parameter_lanes.h"
#include "plugins/plugins.h"
#include "run/options.h"
#include "session/session.h"
#include "state/containers.h"
#include "state/transform.h"

namespace frt {

struct FxSlot {
  enum class Kind : std::uint8_t {
    kPlugin,
    kAaxOnly,  // a named empty slot
    // Trim's gain and the stand-ins for Avid's processors come here.
  };

  Kind kind = Kind::kPlugin;
  const InsertRecord* insert = nullptr;
  // As the slot's lines name the plug-in. Of an empty slot it is made up.
  const KnowledgeRecord* record = nullptr;
  std::string empty_name, empty_ident;  // of an empty slot
  StripPins pins;
  bool has_state = false;
  bool bypassed = false, offline = false;
  bool first_pair_only = false;  // hands on channels 1/2 alone
  std::vector<ParameterLane> lanes;

  // The settings, made when they are asked for: a session holds hundreds of MB of them. Empty without any.
  StateBytes state() const;
  // The same before a MIDI trigger is switched off in settings that came whole from the session.
  StateBytes carried_state() const;

  ByteView image;
  TransformOptions transform;
};

struct FxChain {
  bool of_master = false;
  std::vector<FxSlot> slots;
  // A Trim's one-sided polarity stands ahead of the slots, a surround panner behind them; a chain without slots is
  // written for either.

  bool empty() const { return slots.empty(); }
};

// The strip whose inserts a track takes.
struct FxStrip {
  std::string_view name;
  int channels = 2;
  bool has_midi = false;  // its track carries MIDI
  bool of_master = false;
  bool keyed_passthrough = false;  // the track's parent takes channels 1/2 alone
};

class FxChainMaker {
 public:
  // All must live as long as this and the chains.
  FxChainMaker(const Session& session, const Plugins& plugins, const KeyInputs& keys, const ConversionOptions& options);

  // Chains are counted in the order in which they are made.
  FxChain make(const FxStrip& strip);
  FxCounts take_counts();

 private:
  // What of a plug-in REAPER has here.
  struct Installed {
    std::unordered_set<std::uint32_t> uids;
    std::unordered_set<std::string_view> class_ids, clap_ids;
  };

  bool may_repeat(const std::vector<std::uint32_t>& inserts);
  bool is_missing(const KnowledgeRecord* record) const;
  void take(const InsertRecord& insert, const FxStrip& strip, int position, FxChain& chain);
  void write_plugin(const InsertRecord& insert, const KnowledgeRecord& record, std::string_view key,
                    const FxStrip& strip, FxReportRow& row, FxChain& chain);
  void leave_avid(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain);
  void tell_multi_mono();

  const Inserts& inserts_;
  const Plugins& plugins_;
  const KeyInputs& keys_;
  const ConversionOptions& options_;
  Installed installed_;
  std::unordered_set<std::string_view> made_;                         // strips
  std::uint64_t repeat_left_;                                         // bytes
  std::unordered_map<std::string_view, const AaxOnlyRow*> aax_only_;  // by signature
  ParameterLaneMaker lanes_;
  FxCounts counts_;
};

}  // namespace frt

// What each insert of a strip becomes, decided: a plug-in with its settings, the plug-in at its defaults, REAPER's own
// plug-ins in its place, a named empty slot, or nothing. Whatever it is, a row tells it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
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
#include "standins/slot.h"
#include "standins/trim.h"
#include "state/containers.h"
#include "state/transform.h"

namespace frt {

struct FxSlot {
  enum class Kind : std::uint8_t {
    kPlugin,
    kAaxOnly,  // a named empty slot
    kStandIn,  // REAPER's own plug-ins in the place of an Avid one
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
  std::vector<StandInSlot> stand_in;

  // The settings, made when they are asked for: a session holds hundreds of MB of them. Empty without any.
  StateBytes state() const;
  // The same before a MIDI trigger is switched off in settings that came whole from the session.
  StateBytes carried_state() const;

  ByteView image;
  TransformOptions transform;
};

struct FxChain {
  bool of_master = false;
  std::optional<StandInSlot> polarity;  // ahead of the slots: one side flipped
  std::vector<FxSlot> slots;
  // A surround panner stands behind the slots; a chain without slots is written for it too.

  bool empty() const { return slots.empty() && !polarity; }
};

// The strip whose inserts a track takes.
struct FxStrip {
  std::string_view name;
  int channels = 2;
  bool has_midi = false;  // its track carries MIDI
  bool of_master = false;
  bool keyed_passthrough = false;  // the track's parent takes channels 1/2 alone
  TrimPolarity::Side flipped = TrimPolarity::Side::kNone;
};

class FxChainMaker {
 public:
  // All must live as long as this and the chains.
  FxChainMaker(const Session& session, const Plugins& plugins, const KeyInputs& keys, const Trims& trims,
               const ConversionOptions& options);

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
  bool stand_in(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain);
  bool write_trim_gain(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain);
  StripPins pins_of(const InsertRecord& insert, const FxStrip& strip) const;
  void leave_avid(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain);
  void tell_multi_mono();

  const Inserts& inserts_;
  const Plugins& plugins_;
  const KeyInputs& keys_;
  const Trims& trims_;
  const ConversionOptions& options_;
  Installed installed_;
  std::unordered_set<std::string_view> made_;                         // strips
  std::uint64_t repeat_left_;                                         // bytes
  std::unordered_map<std::string_view, const AaxOnlyRow*> aax_only_;  // by signature
  double sample_rate_;
  EqFitter fitter_;
  ParameterLaneMaker lanes_;
  FxCounts counts_;
};

}  // namespace frt

#include "standins/dyn3.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "base/decibel.h"
#include "base/text.h"
#include "standins/js_slots.h"
#include "standins/reacomp.h"

namespace frt {
namespace {

constexpr std::string_view kCompressorName = "Dyn3 Compressor/Limiter";
constexpr std::string_view kExpanderGateName = "Dyn3 Expander/Gate";

// Places in the list of controls. Values stand in the plug-in's own units: dB, ratio to one, seconds, Hz; switches are
// on from 0.5.
namespace compressor {
constexpr std::size_t kKnee = 0, kRatio = 1, kAttack = 2, kRelease = 3, kGain = 4, kThreshold = 5, kPolarity = 6;
constexpr std::size_t kLowFilter = 7, kHighFilter = 10, kExternalKey = 13;
}  // namespace compressor

namespace expander_gate {
constexpr std::size_t kDepth = 0, kRatio = 1, kAttack = 2, kRelease = 3, kHold = 4, kThreshold = 5, kPolarity = 6;
constexpr std::size_t kLookAhead = 7, kLowFilter = 8, kHighFilter = 11, kExternalKey = 14;
}  // namespace expander_gate

// Of a filter of the side chain, from its first control on. Its type is a cut, or a band below 0.5.
constexpr std::size_t kFilterFrequency = 0, kFilterType = 1, kFilterIn = 2;
constexpr double kDetectorTopHz = 20000;

class Controls {
 public:
  explicit Controls(const InsertRecord& insert) : values_(insert.controls) {}

  float operator[](std::size_t index) const {
    constexpr float kMost = 1e30F;
    if (index >= values_.size()) return 0;
    const float value = values_[index];
    return std::abs(value) < kMost ? value : 0;
  }
  bool on(std::size_t index) const { return (*this)[index] >= 0.5F; }
  double ms(std::size_t index) const { return 1000.0 * static_cast<double>((*this)[index]); }

 private:
  const std::vector<float>& values_;
};

void note(StandIn& out, std::string_view text) {
  if (std::find(out.notes.begin(), out.notes.end(), text) == out.notes.end()) out.notes.push_back(text);
}

// Slots of one insert, in order, each with an identifier of its own.
class Slots {
 public:
  explicit Slots(const InsertRecord& insert)
      : bypassed_(insert.bypassed || insert.inactive), next_seed_(first_slot_seed(insert.start)) {}

  SlotTitle title(std::string label, std::string preset) {
    return {std::move(label), std::move(preset), bypassed_, next_seed_++};
  }

 private:
  bool bypassed_;
  std::uint32_t next_seed_;
};

void put_polarity(StandIn& out, Slots& slots, std::string_view family) {
  const std::string what = std::string(family) + " polarity";
  out.slots.push_back(
      polarity_slot(FlippedSides::kBoth, slots.title(stand_in_label(what, stock_names::kPolarity), "Dyn3 polarity")));
}

// The filters in front of the detector.
DetectorInput detector_filters(const Controls& controls, std::size_t low, std::size_t high, StandIn& out) {
  DetectorInput detector;
  const auto passes = [&](std::size_t filter) {
    if (!controls.on(filter + kFilterIn)) return false;
    if (controls.on(filter + kFilterType)) return true;
    note(out, "Dyn3 side-chain band filter not carried (REAPER's detector filters are high and low pass only)");
    return false;
  };
  const auto part_of_top = [&](std::size_t filter) {
    return static_cast<double>(controls[filter + kFilterFrequency]) / kDetectorTopHz;
  };
  if (passes(low)) detector.low_pass = std::min(part_of_top(low), 1.0);
  if (passes(high)) detector.high_pass = part_of_top(high);
  return detector;
}

// A key that nothing feeds is silence in Pro Tools. On a stereo track channels 3/4 are as silent; on others there may
// be something on them.
bool has_silent_pair(const StripPins& strip) { return strip.channels == 2; }

std::string ratio_preset(std::string_view family, float ratio) {
  return std::string(family) + format_text(" %.3g:1", static_cast<double>(ratio));
}

// Measured: what REAPER's compressor needs to act as Dyn3's does.
constexpr double kKneeFactor = 0.3575, kAttackFactor = 0.584, kReleaseFactor = 0.4134, kThresholdShiftDb = 0.337;

struct GateTimes {
  double attack_ms, release_ms;
};

// ReaGate's times run down to silence, Dyn3's to the depth: a release is as fast as that of 22 dB, an attack as that of
// 20.
GateTimes gate_times(double attack_ms, double release_ms, double depth_db) {
  constexpr double kReleaseDb = 22, kAttackDb = 20;
  const double depth = std::max(1.0, std::abs(depth_db));
  return {attack_ms * std::max(depth / kAttackDb, 1.0), release_ms * std::min(kReleaseDb / depth, 1.0)};
}

// From here on an expander is a gate.
constexpr float kLeastGateRatio = 9.99F;
// Below it Dyn3 still is an expander.
constexpr float kTrueGateRatio = 50;
constexpr double kPreOpen = 0.008;  // 2 ms
constexpr float kNoFloorDb = -100;
constexpr double kLeastHoldMs = 0.5;

// What an expander and a gate are both made from.
struct ExpanderGate {
  float ratio = 0, threshold_db = 0, depth_db = 0;
  double attack_ms = 0, release_ms = 0, hold_ms = 0;
  bool look_ahead = false;
  bool forced = false;  // shut for good
  DetectorInput detector;
};

void put_expander(StandIn& out, Slots& slots, const ExpanderGate& in) {
  if (in.depth_db > kNoFloorDb) {
    note(out, "expander depth (its floor) not carried: REAPER's Downward Expander has none");
  }
  if (in.hold_ms >= kLeastHoldMs) note(out, "expander hold not carried: REAPER's Downward Expander has none");
  if (in.look_ahead) {
    note(out, "Dyn3 look-ahead not carried on an expander (REAPER's Downward Expander has none)");
  }
  if (in.detector.low_pass < 1 || in.detector.high_pass > 0) note(out, "expander side-chain filter not carried");

  // A JS takes what its text says: no ratio that would lift what it is to lower, no time that runs backwards.
  const std::string parameters = format_text("%.3f %.4f 0 %d 2 %.4f %.4f", static_cast<double>(in.threshold_db),
                                             std::max(1.0, static_cast<double>(in.ratio)), in.detector.keyed ? 1 : 0,
                                             std::max(0.0, in.attack_ms), std::max(0.0, in.release_ms));
  out.slots.push_back(js_slot(
      "sstillwell/expander", parameters, 7,
      slots.title(stand_in_label(kExpanderGateName, "Downward Expander"), ratio_preset(kExpanderGateName, in.ratio))));
}

void put_gate(StandIn& out, Slots& slots, const ExpanderGate& in, const StripPins& strip) {
  if (in.look_ahead) note(out, "Dyn3 look-ahead written as a 2 ms pre-open (its length is not measured)");
  if (in.hold_ms > kDynamicsMostHoldMs || in.attack_ms > kDynamicsMostAttackMs ||
      in.release_ms > kDynamicsMostReleaseMs) {
    note(out, "gate time past ReaGate's range held at its top (attack 500 ms, release 5 s, hold 1 s)");
  }
  if (in.ratio < kTrueGateRatio && !in.forced) {
    note(out, "expander at 1:10 or more written as a gate, with Pro Tools' depth as its floor");
  }

  const GateTimes times = gate_times(in.attack_ms, in.release_ms, static_cast<double>(in.depth_db));
  ReaGateSettings gate;
  gate.threshold = gain_of_db(static_cast<double>(in.threshold_db));
  gate.attack_ms = times.attack_ms;
  gate.release_ms = times.release_ms;
  gate.hold_ms = in.hold_ms;
  gate.pre_open = in.look_ahead ? kPreOpen : 0;
  gate.floor = gain_of_db(static_cast<double>(in.depth_db));
  gate.detector = in.detector;
  out.slots.push_back(reagate_slot(
      gate, strip.key_pair,
      slots.title(stand_in_label(kExpanderGateName, "ReaGate"), ratio_preset(kExpanderGateName, in.ratio))));
}

}  // namespace

StandIn dyn3_compressor(const InsertRecord& insert, const StripPins& strip, bool keyed) {
  using namespace compressor;
  const Controls controls(insert);
  StandIn out;
  Slots slots(insert);
  if (controls.on(kPolarity)) put_polarity(out, slots, kCompressorName);

  ReaCompSettings comp;
  comp.threshold = gain_of_db(static_cast<double>(controls[kThreshold]) + kThresholdShiftDb);
  comp.ratio = static_cast<double>(controls[kRatio]);
  comp.attack_ms = controls.ms(kAttack) * kAttackFactor;
  comp.release_ms = controls.ms(kRelease) * kReleaseFactor;
  comp.knee_db = static_cast<double>(controls[kKnee]) * kKneeFactor;
  comp.detector = detector_filters(controls, kLowFilter, kHighFilter, out);
  if (comp.attack_ms > kDynamicsMostAttackMs || comp.release_ms > kDynamicsMostReleaseMs) {
    note(out, "compressor time past ReaComp's range held at its top (attack 500 ms, release 5 s)");
  }
  if (comp.knee_db > kReaCompMostKneeDb) note(out, "compressor knee past ReaComp's 24 dB held at 24");

  if (controls.on(kExternalKey)) {
    comp.detector.keyed = keyed || has_silent_pair(strip);
    if (!keyed) {
      note(out, comp.detector.keyed
                    ? "Dyn3 External Key on with no key input: Pro Tools hears silence there, so the compressor never "
                      "acts (its gain still applies); REAPER's does the same, keyed from the track's empty channels 3/4"
                    : "Dyn3 External Key on with no key input, on a track wider than stereo: Pro Tools hears silence "
                      "there and never acts; here it detects on its own signal");
    }
  }

  const float gain_db = std::max(controls[kGain], 0.0F);
  const bool gain_fits = gain_db <= kReaCompMostGainDb;
  if (gain_fits) comp.wet_gain = gain_of_db(static_cast<double>(gain_db));
  out.slots.push_back(reacomp_slot(
      comp, strip.key_pair,
      slots.title(stand_in_label(kCompressorName, "ReaComp"), ratio_preset(kCompressorName, controls[kRatio]))));
  if (!gain_fits) {
    const auto gain = static_cast<double>(gain_db);
    const std::string what = std::string(kCompressorName) + " gain";
    out.slots.push_back(volume_slot(
        gain, slots.title(stand_in_label(what, stock_names::kVolume), format_text("Dyn3 gain %+.1f dB", gain))));
  }
  return out;
}

StandIn dyn3_expander_gate(const InsertRecord& insert, const StripPins& strip, bool keyed) {
  using namespace expander_gate;
  const Controls controls(insert);
  StandIn out;
  Slots slots(insert);
  if (controls.on(kPolarity)) put_polarity(out, slots, kExpanderGateName);

  ExpanderGate in;
  in.ratio = controls[kRatio];
  in.threshold_db = controls[kThreshold];
  in.depth_db = controls[kDepth];
  in.attack_ms = controls.ms(kAttack);
  in.release_ms = controls.ms(kRelease);
  in.hold_ms = controls.ms(kHold);
  in.look_ahead = controls.on(kLookAhead);
  in.detector = detector_filters(controls, kLowFilter, kHighFilter, out);

  if (controls.on(kExternalKey)) {
    in.forced = !keyed && has_silent_pair(strip);
    in.detector.keyed = keyed || in.forced;
    if (!keyed) {
      note(out, in.forced ? "Dyn3 Expander/Gate External Key on with no key input: Pro Tools hears silence there, so "
                            "it stays shut at its range; REAPER's gate does the same, keyed from the track's empty "
                            "channels 3/4"
                          : "Dyn3 Expander/Gate External Key on with no key input, on a track wider than stereo: Pro "
                            "Tools keeps it shut at its range; here it detects on its own signal");
    }
  }

  if (in.forced || in.ratio >= kLeastGateRatio) {
    put_gate(out, slots, in, strip);
  } else {
    put_expander(out, slots, in);
  }
  return out;
}

}  // namespace frt

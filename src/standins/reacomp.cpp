#include "standins/reacomp.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "state/containers.h"

namespace frt {
namespace {

// ReaComp and ReaGate keep their settings alike: two marks, then a list of floats.
constexpr std::uint32_t kStateMark = 0xDEADBEEF, kStateMark2 = 0xDEADF00D;
constexpr std::size_t kFloats = 21;
using Floats = std::array<double, kFloats>;

enum ReaCompFloat : std::uint8_t {
  kCompThreshold = 0,
  kCompRatio = 1,
  kCompAttack = 2,
  kCompRelease = 3,
  kCompLowPass = 6,
  kCompHighPass = 7,
  kCompDetector = 8,
  kCompDry = 10,
  kCompWet = 11,
  kCompRms = 13,
  kCompKnee = 14,
  kCompFixed = 17,  // always the same
};

enum ReaGateFloat : std::uint8_t {
  kGateThreshold = 0,
  kGateAttack = 1,
  kGateRelease = 2,
  kGatePreOpen = 3,
  kGateHold = 4,
  kGateLowPass = 5,
  kGateHighPass = 6,
  kGateDetector = 7,
  kGateDry = 9,
  kGateWet = 10,
  kGateNoise = 11,
  kGateHysteresis = 12,
  kGateRms = 14,
  kGateFixed = 16,  // always the same
};

// Of the list of inputs that the detector may hear; 0 is the signal itself.
constexpr double kKeyInputChoice = 0.0018450184725224972;
constexpr double kSilent = 3.1622800378272586e-08;  // -150 dB
constexpr double kCompFixedValue = 0.25;
constexpr double kGateFixedValue = 0.5433070063591003;

constexpr double kMostRatio = 100;
constexpr double kMostGain = 2;  // +6.02 dB, of a threshold as of a level

// What is no number counts as 0 too.
double held(double value, double most) { return value > 0 ? std::min(value, most) : 0; }

StateBytes state_of(const Floats& floats) {
  StateWriter out(8 + 4 * kFloats);
  out.u32(kStateMark).u32(kStateMark2);
  for (const double value : floats) out.f32(static_cast<float>(value));
  return out.take();
}

// Two inputs for the signal, two for the key.
constexpr std::uint32_t kInputs = 4, kOutputs = 2, kKeyInputs = 2;
constexpr std::uint32_t kVstMagic = 0xFEED5EEF;
constexpr std::uint32_t kHeaderVersion = 0;
constexpr std::uint32_t kTailWord = 0x00100000;
constexpr std::uint64_t kMostChannels = 64;

StateBytes header_of(std::string_view ident, std::size_t state_size, int key_pair) {
  const auto put_channel = [](StateWriter& out, std::uint64_t channel) {
    const std::uint64_t mask = channel < kMostChannels ? std::uint64_t{1} << channel : 0;
    out.u32(mask & 0xFFFFFFFF).u32(mask >> 32);
  };
  const std::uint64_t key_shift = 2 * static_cast<std::uint64_t>(std::max(key_pair, 0));
  StateWriter out(28 + 8 * std::size_t{kInputs + kOutputs});
  out.u32(uid_of(ident)).u32(kVstMagic);
  out.u32(kInputs);
  for (std::uint64_t i = 0; i < kInputs; ++i) put_channel(out, i < kKeyInputs ? i : i + key_shift);
  out.u32(kOutputs);
  for (std::uint64_t i = 0; i < kOutputs; ++i) put_channel(out, i);
  return out.u32(state_size).u32(kHeaderVersion).u32(kTailWord).take();
}

struct Plugin {
  std::string_view display, file, ident;
};
constexpr Plugin kReaComp = {"VST: ReaComp (Cockos)", "reacomp.dll", "1919247213<5653547265636D726561636F6D700000>"};
constexpr Plugin kReaGate = {"VST: ReaGate (Cockos)", "reagate.dll", "1919248244<56535472656774726561676174650000>"};

StandInSlot slot_of(const Plugin& plugin, const Floats& floats, int key_pair, SlotTitle title) {
  StandInSlot slot;
  slot.bypassed = title.bypassed;
  slot.label = std::move(title.label);
  slot.preset = std::move(title.preset);
  slot.fxid_seed = title.fxid_seed;
  slot.vst_display = plugin.display;
  slot.vst_file = plugin.file;
  slot.vst_ident = plugin.ident;
  slot.vst_state = state_of(floats);
  slot.vst_header = header_of(plugin.ident, slot.vst_state.size(), key_pair);
  slot.vst_record = StateWriter().u32(kTailWord).zeros(2).take();
  return slot;
}

}  // namespace

StandInSlot reacomp_slot(const ReaCompSettings& settings, int key_pair, SlotTitle title) {
  Floats floats{};
  floats[kCompThreshold] = held(settings.threshold, kMostGain);
  floats[kCompRatio] = held((settings.ratio - 1) / (kMostRatio - 1), 1);
  floats[kCompAttack] = held(settings.attack_ms / kDynamicsMostAttackMs, 1);
  floats[kCompRelease] = held(settings.release_ms / kDynamicsMostReleaseMs, 1);
  floats[kCompLowPass] = held(settings.detector.low_pass, 1);
  floats[kCompHighPass] = settings.detector.high_pass;
  if (settings.detector.keyed) floats[kCompDetector] = kKeyInputChoice;
  floats[kCompDry] = kSilent;
  floats[kCompWet] = held(settings.wet_gain, kMostGain);
  floats[kCompRms] = held(settings.rms_window, 1);
  floats[kCompKnee] = held(settings.knee_db / kReaCompMostKneeDb, 1);
  floats[kCompFixed] = kCompFixedValue;
  return slot_of(kReaComp, floats, key_pair, std::move(title));
}

StandInSlot reagate_slot(const ReaGateSettings& settings, int key_pair, SlotTitle title) {
  Floats floats{};
  const double floor = held(settings.floor, 1);
  floats[kGateThreshold] = held(settings.threshold, kMostGain);
  floats[kGateAttack] = held(settings.attack_ms / kDynamicsMostAttackMs, 1);
  floats[kGateRelease] = held(settings.release_ms / kDynamicsMostReleaseMs, 1);
  floats[kGatePreOpen] = held(settings.pre_open, 1);
  floats[kGateHold] = held(settings.hold_ms / kDynamicsMostHoldMs, 1);
  floats[kGateLowPass] = held(settings.detector.low_pass, 1);
  floats[kGateHighPass] = settings.detector.high_pass;
  if (settings.detector.keyed) floats[kGateDetector] = kKeyInputChoice;
  // What is let through when shut, and what opening adds to it.
  floats[kGateDry] = floor;
  floats[kGateWet] = 1 - floor;
  floats[kGateNoise] = kSilent;
  floats[kGateHysteresis] = held(settings.hysteresis, kMostGain);
  floats[kGateRms] = held(settings.rms_window, 1);
  floats[kGateFixed] = kGateFixedValue;
  return slot_of(kReaGate, floats, key_pair, std::move(title));
}

}  // namespace frt

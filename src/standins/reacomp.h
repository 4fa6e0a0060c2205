// ReaComp and ReaGate as slots: the settings that they take, in the form in which they keep them.
#pragma once

#include "standins/js_slots.h"
#include "standins/slot.h"

namespace frt {

// ReaComp's and ReaGate's longest times.
constexpr double kDynamicsMostAttackMs = 500, kDynamicsMostReleaseMs = 5000, kDynamicsMostHoldMs = 1000;
// ReaComp's widest knee and highest wet gain.
constexpr double kReaCompMostKneeDb = 24;
constexpr float kReaCompMostGainDb = 6.0206F;

// What the detector hears.
struct DetectorInput {
  double low_pass = 1, high_pass = 0;  // a part of 20 kHz; 1 and 0 are off
  bool keyed = false;                  // inputs 3 and 4 in the place of the signal
};

// Values that ReaComp can't hold go in at the end of its range.
struct ReaCompSettings {
  double threshold = 1;  // linear
  double ratio = 1;
  double attack_ms = 0, release_ms = 0;
  double knee_db = 0;
  double wet_gain = 1;    // linear
  double rms_window = 0;  // a part of the longest
  DetectorInput detector;
};

// The same for ReaGate.
struct ReaGateSettings {
  double threshold = 1;  // linear
  double attack_ms = 0, release_ms = 0, hold_ms = 0;
  double pre_open = 0;    // a part of the longest
  double floor = 0;       // linear: what a shut gate lets through
  double hysteresis = 1;  // linear
  double rms_window = 0;  // a part of the longest
  DetectorInput detector;
};

// `key_pair` is the channel pair that brings the key input: 0 for 3/4, 1 for 5/6, ...
StandInSlot reacomp_slot(const ReaCompSettings& settings, int key_pair, SlotTitle title);
StandInSlot reagate_slot(const ReaGateSettings& settings, int key_pair, SlotTitle title);

}  // namespace frt

// REAPER's ReaEQ as a slot: its bands, and the state that holds them.
#pragma once

#include <cstdint>
#include <span>

#include "standins/slot.h"
#include "state/containers.h"

namespace frt {

enum class ReaEqType : std::uint8_t {
  kLowShelf = 0,
  kHighShelf = 1,
  kLowPass = 3,
  kHighPass = 4,
  kNotch = 6,
  kBandPass = 7,
  kBand = 8,
};

struct ReaEqBand {
  ReaEqType type = ReaEqType::kBand;
  bool enabled = true;
  double frequency = 1000;  // Hz
  double gain = 0;          // dB
  double bandwidth = 1;     // a Q until `written` makes ReaEQ's own form of it

  friend bool operator==(const ReaEqBand&, const ReaEqBand&) = default;
  bool is_shelf() const { return type == ReaEqType::kLowShelf || type == ReaEqType::kHighShelf; }
};

// What a band can hold.
inline constexpr double kLeastEqFrequency = 1, kMostEqFrequency = 96000;  // Hz
inline constexpr double kLeastEqQ = 0.05, kMostEqQ = 20;
inline constexpr double kLeastEqGain = -150, kMostEqGain = 24;  // dB

// The width in octaves of a filter of that Q.
double octaves_of_q(double q);
// That width's part that ReaEQ wants at a frequency: its filters are narrower towards half the rate.
double octave_share(double frequency, double sample_rate);
// What ReaEQ keeps as the bandwidth of a shelf of that Q and gain in dB: from the slope, of which it takes 1.2 at most.
double shelf_bandwidth(double q, double gain);

// The band with the bandwidth in ReaEQ's own form, its values held to what ReaEQ takes.
ReaEqBand written(const ReaEqBand& band, double sample_rate);

// Bands whose bandwidths are in ReaEQ's own form, as they stand. Gains in dB.
StateBytes reaeq_state(std::span<const ReaEqBand> bands, double output_gain);
// The VST's part of a slot.
StandInSlot reaeq_slot(std::span<const ReaEqBand> bands, double output_gain);

}  // namespace frt

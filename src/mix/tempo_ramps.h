// Drawn tempo ramps: Pro Tools stores one as a staircase of short, regular tempo steps; REAPER can glide.
#pragma once

#include <cstdint>
#include <vector>

namespace frt {

// One point of REAPER's tempo envelope.
struct TempoPoint {
  static constexpr std::uint8_t kLinear = 0, kSquare = 1;                       // shapes
  static constexpr std::uint8_t kPlain = 0, kFirstMeter = 1, kMeterChange = 3;  // flags
  // Begins a measure, and lets the one before it be short.
  static constexpr std::uint8_t kSongStart = 5;

  double time = 0;  // seconds
  double bpm = 0;
  std::uint32_t code = 0;  // time signature: denominator << 16 | numerator; counts with flags only
  std::uint8_t shape = kSquare;
  std::uint8_t flags = kPlain;
};

struct TempoRamps {
  std::vector<TempoPoint> points;
  int written = 0;         // staircases that became ramps
  int left = 0;            // staircases left as steps
  double point_error = 0;  // seconds: the largest distance from the staircase at a ramp's points
  double inner_error = 0;  // seconds: the largest between them
};

// Turns each staircase of at least three regular steps into linear points that keep its beat count to within
// one sample, and copies everything else. `steps` are in order of time. A rate of 0 counts as 48000 Hz.
TempoRamps solve_tempo_ramps(const std::vector<TempoPoint>& steps, double sample_rate);

}  // namespace frt

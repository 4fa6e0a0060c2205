// One filter of an Avid equaliser, and the ReaEQ bands that play it.
#pragma once

#include <cstdint>
#include <vector>

#include "standins/reaeq.h"

namespace frt {

struct EqFilter {
  enum class Kind : std::uint8_t { kPeak = 0, kShelf = 1, kPass = 2, kNotch = 3 };

  Kind kind = Kind::kPeak;
  bool enabled = false;
  double freq = 1000;  // Hz
  double gain = 0;     // dB, of a peak or shelf
  double q = 1;        // of all but a pass
  int side = 0;        // 1 high, 0 low: of a shelf, and of a pass what it lets through
  int order = 2;       // of a pass, 1 to 4: 6 dB/oct each

  std::vector<ReaEqBand> bands;  // bandwidths as a Q
  double pole_freq = 0;          // of a first-order filter behind the ReaEQ, as its slider counts it; 0 for none
  bool fitted = false;
  int extra_bands = 0;
  double worst_error = 0;  // dB, of a filter that was measured

  bool is_high() const { return side == 1; }
};

// Sets the bands and the first-order filter that play it where the rate is high enough.
void realise(EqFilter& filter, double sample_rate);

// The steepest shelf that ReaEQ has at a gain in dB: its Q. Without a limit, infinite.
double steepest_shelf_q(double gain);

// The tangent of half the frequency at which the digital first-order filter turns.
double pole_tangent(double pole_freq, double sample_rate);

}  // namespace frt

// The Q that a peak of EQ3 has at a gain: not the one that its knob shows.
#pragma once

namespace frt {

// `gain` in dB, `q` as the knob shows it.
double peak_q(double gain, double q);

}  // namespace frt

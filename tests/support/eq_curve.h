// What a stand-in's ReaEQ and the filters behind it do to each frequency, read from the slots themselves, and what the
// analog filter does. Nothing here asks the code that made them: transfer functions as the cookbook of audio equalisers
// has them, in complex numbers.
#pragma once

#include <vector>

#include "standins/eq_filter.h"
#include "standins/slot.h"

namespace frt::test {

// The bands of a ReaEQ state, bandwidths in its own form.
std::vector<ReaEqBand> decoded_bands(const StateBytes& state);

// In dB, with the output gain of the ReaEQ left out.
double slots_level(const StandIn& stand_in, double frequency, double sample_rate);
double analog_level(const EqFilter& filter, double frequency);

// The frequencies that count at a rate.
std::vector<double> eq_grid(double sample_rate);
// How far the slots are from the filter where they are worst: in dB, of faint ones by amplitude. With `print`, each
// frequency, target and result go to standard output.
double worst_distance(const StandIn& stand_in, const EqFilter& filter, double sample_rate, bool print);

}  // namespace frt::test

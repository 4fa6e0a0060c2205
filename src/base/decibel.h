// Decibels and gains.
#pragma once

#include <cmath>

namespace frt {

// 10^(dB/20).
inline double gain_of_db(double db) { return std::pow(10.0, db / 20.0); }

}  // namespace frt

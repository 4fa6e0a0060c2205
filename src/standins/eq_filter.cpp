#include "standins/eq_filter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace frt {
namespace {

constexpr double kLeastPole = 20, kMostPole = 20000;  // Hz, of the first-order filter's slider
constexpr double kHighestOfRate = 0.49;

// What ReaEQ takes as the steepest slope, a trifle below.
constexpr double kBelowSteepest = 0.9999;

double held_q(double q) { return std::clamp(q, kLeastEqQ, kMostEqQ); }

void realise_shelf(EqFilter& filter) {
  const double a = std::pow(10.0, filter.gain / 40);
  const double room = 2 - (a + 1 / a) / 6;
  const double q = held_q(filter.q);
  const double q_max = room > 0 ? kBelowSteepest / std::sqrt(room) : std::numeric_limits<double>::infinity();
  const auto shelf = filter.is_high() ? ReaEqType::kHighShelf : ReaEqType::kLowShelf;
  filter.bands.push_back({shelf, filter.enabled, filter.freq, filter.gain, std::min(q, q_max)});
  if (q <= q_max || !filter.enabled) return;
  // Steeper than ReaEQ's shelf: two bells make the bump on one side of the corner and the dip on the other.
  const double lower = 20 * std::log10(filter.is_high() ? q_max / q : q / q_max);
  const double root = std::sqrt(a), width = std::sqrt(q_max * q);
  filter.bands.push_back({ReaEqType::kBand, true, filter.freq / root, lower, width});
  filter.bands.push_back({ReaEqType::kBand, true, filter.freq * root, -lower, width});
}

void realise_pass(EqFilter& filter, double sample_rate) {
  const auto pass = filter.is_high() ? ReaEqType::kHighPass : ReaEqType::kLowPass;
  const auto add = [&](ReaEqType type, double gain, double q) {
    filter.bands.push_back({type, filter.enabled, filter.freq, gain, q});
  };
  if (filter.order % 2 == 1) {
    const double half = std::min(kHighestOfRate * sample_rate, filter.freq) * std::numbers::pi / sample_rate;
    const double slider = std::floor(std::tan(half) * 3 * sample_rate / (2 * std::numbers::pi) + 0.5);
    const double p = std::max(slider, kLeastPole);
    if (p <= kMostPole) {
      filter.pole_freq = p;
    } else {
      // Past the slider's end a deep shelf of the other side comes nearest.
      add(filter.is_high() ? ReaEqType::kLowShelf : ReaEqType::kHighShelf, -12, 0.5);
    }
  }
  switch (filter.order) {
    case 2:
      add(pass, 0, 0.7071067811865476);
      break;
    case 3:
      add(pass, 0, 1.0);
      break;
    case 4:
      add(pass, 0, 0.5411961001461971);
      add(pass, 0, 1.3065629648763766);
      break;
    default:
      break;
  }
}

}  // namespace

double steepest_shelf_q(double gain) {
  const double a = std::pow(10.0, gain / 40);
  const double room = 2 - (a + 1 / a) / 6;
  return room > 0 ? 1 / std::sqrt(room) : std::numeric_limits<double>::infinity();
}

double pole_tangent(double pole_freq, double sample_rate) {
  return 2 * std::numbers::pi * pole_freq / (3 * sample_rate);
}

void realise(EqFilter& filter, double sample_rate) {
  filter.bands.clear();
  filter.pole_freq = 0;
  switch (filter.kind) {
    case EqFilter::Kind::kNotch:
      filter.bands.assign(2, {ReaEqType::kNotch, filter.enabled, filter.freq, 0, held_q(filter.q)});
      break;
    case EqFilter::Kind::kPeak:
      filter.bands.push_back({ReaEqType::kBand, filter.enabled, filter.freq, filter.gain, held_q(filter.q)});
      break;
    case EqFilter::Kind::kShelf:
      realise_shelf(filter);
      break;
    case EqFilter::Kind::kPass:
      realise_pass(filter, sample_rate);
      break;
  }
}

}  // namespace frt

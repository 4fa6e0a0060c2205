#include "support/eq_curve.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace frt::test {
namespace {

using Complex = std::complex<double>;
constexpr double kPi = std::numbers::pi;

Complex band_response(const ReaEqBand& band, double frequency, double rate) {
  if (!band.enabled) return 1;
  const double a = std::pow(10, band.gain / 40), w0 = 2 * kPi * band.frequency / rate, c = std::cos(w0);
  double alpha = 0;
  if (band.is_shelf()) {
    const double slope = 1 / (band.bandwidth * band.bandwidth);
    alpha = std::sin(w0) / 2 * std::sqrt((a + 1 / a) * (1 / slope - 1) + 2);
  } else {
    const double w = std::min(w0, kPi / 2);
    alpha = std::sin(w0) * std::sinh(std::log(2.0) / 2 * band.bandwidth * w / std::sin(w));
  }
  const double r = 2 * std::sqrt(a) * alpha, p = a + 1, m = a - 1;
  const Complex z = std::polar(1.0, -2 * kPi * frequency / rate);
  const auto of = [&](double b0, double b1, double b2) { return b0 + b1 * z + b2 * z * z; };
  const Complex below = of(1 + alpha, -2 * c, 1 - alpha);
  switch (band.type) {
    case ReaEqType::kLowShelf:
      return a * of(p - m * c + r, 2 * (m - p * c), p - m * c - r) / of(p + m * c + r, -2 * (m + p * c), p + m * c - r);
    case ReaEqType::kHighShelf:
      return a * of(p + m * c + r, -2 * (m + p * c), p + m * c - r) / of(p - m * c + r, 2 * (m - p * c), p - m * c - r);
    case ReaEqType::kLowPass:
      return of((1 - c) / 2, 1 - c, (1 - c) / 2) / below;
    case ReaEqType::kHighPass:
      return of((1 + c) / 2, -1 - c, (1 + c) / 2) / below;
    case ReaEqType::kNotch:
      return of(1, -2 * c, 1) / below;
    case ReaEqType::kBandPass:  // no filter of EQ3
    case ReaEqType::kBand:
      break;
  }
  return of(1 + alpha * a, -2 * c, 1 - alpha * a) / of(1 + alpha / a, -2 * c, 1 - alpha / a);
}

// Simple 1-Pole Filter, from its sliders.
Complex first_order_response(const StandInSlot& slot, double frequency, double rate) {
  int high = 0;
  double slider = 0;
  std::sscanf(slot.js_parameters.c_str(), "0 %d %lf 0", &high, &slider);
  const double p = std::exp((slider * 1.20103 + 16) * 0.05732506661926935) * 8.17742 - 0.5;
  const double k = 2 * kPi * p / (3 * rate);
  const Complex s(0, std::tan(kPi * frequency / rate));
  return (high ? s : k) / (s + k);
}

}  // namespace

std::vector<ReaEqBand> decoded_bands(const StateBytes& state) {
  std::vector<ReaEqBand> bands;
  const ByteView bytes = view_of(state);
  for (std::uint32_t i = 0; i < bytes.u32_or(4, 0); ++i) {
    const std::uint64_t at = 8 + 33 * std::uint64_t{i};
    bands.push_back({static_cast<ReaEqType>(bytes.u32_or(at, 99)), bytes.u32_or(at + 4, 99) == 1,
                     bytes.f64(at + 8).value_or(0), 20 * std::log10(bytes.f64(at + 16).value_or(0)),
                     bytes.f64(at + 24).value_or(0)});
  }
  return bands;
}

double slots_level(const StandIn& stand_in, double frequency, double sample_rate) {
  Complex response = 1;
  for (const StandInSlot& slot : stand_in.slots) {
    if (slot.js_path == "Liteon/simplelp6db") response *= first_order_response(slot, frequency, sample_rate);
    for (const ReaEqBand& band : decoded_bands(slot.vst_state)) response *= band_response(band, frequency, sample_rate);
  }
  return 20 * std::log10(std::abs(response));
}

double analog_level(const EqFilter& filter, double frequency) {
  const Complex s(0, frequency / filter.freq);
  const double a = std::pow(10, filter.gain / 40), root = std::sqrt(a) / filter.q;
  Complex response = 1;
  switch (filter.kind) {
    case EqFilter::Kind::kPeak:
      response = (s * s + s * (a / filter.q) + 1.0) / (s * s + s / (a * filter.q) + 1.0);
      break;
    case EqFilter::Kind::kShelf: {
      const Complex up = a * s * s + root * s + 1.0, down = s * s + root * s + a;
      response = filter.is_high() ? a * up / down : a * down / up;
      break;
    }
    case EqFilter::Kind::kPass: {
      const double power = std::pow(std::abs(s), 2 * filter.order);
      response = std::sqrt((filter.is_high() ? power : 1) / (1 + power));
      break;
    }
    case EqFilter::Kind::kNotch:
      response = std::pow((s * s + 1.0) / (s * s + s / filter.q + 1.0), 2);
      break;
  }
  return 20 * std::log10(std::abs(response));
}

std::vector<double> eq_grid(double sample_rate) {
  const double top = std::min(0.46 * sample_rate, 20000.0);
  std::vector<double> grid;
  for (int k = 0; 20 * std::pow(2, k / 24.0) < top; ++k) grid.push_back(20 * std::pow(2, k / 24.0));
  for (int k = 0; k < 8; ++k) grid.push_back(top + (0.48 * sample_rate - top) * k / 7);
  return grid;
}

double worst_distance(const StandIn& stand_in, const EqFilter& filter, double sample_rate, bool print) {
  double worst = 0;
  for (const double frequency : eq_grid(sample_rate)) {
    const double target = analog_level(filter, frequency), result = slots_level(stand_in, frequency, sample_rate);
    if (print) std::printf("%10.2f Hz  %8.3f dB  %8.3f dB\n", frequency, target, result);
    if (target < -50) continue;
    const double distance =
        target < -20 ? 25 * (std::pow(10, result / 20) - std::pow(10, target / 20)) : result - target;
    worst = std::max(worst, std::fabs(distance));
  }
  return worst;
}

}  // namespace frt::test

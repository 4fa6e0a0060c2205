#include "standins/eq3.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>

#include "base/text.h"
#include "standins/js_slots.h"
#include "standins/peak_q.h"

namespace frt {
namespace {

constexpr double kSwitchedOn = 0.5;
constexpr double kLeastOfNothing = 1e30;  // what a control can't be

struct Limits {
  double least, most;
};

// Control indices of the 7-Band.
namespace seven_band {
constexpr std::size_t kControls = 38, kInputGain = 2, kOutputGain = 3, kPolarity = 4;

struct Pass {
  std::size_t mode, in, q, slope, freq;
  Limits limits;
  int side;
};
constexpr Pass kHighPass = {5, 6, 7, 8, 9, {20, 8000}, 1};
constexpr Pass kLowPass = {32, 33, 34, 35, 36, {120, 20000}, 0};

struct Band {
  std::size_t in, gain, freq, q;
  Limits limits;
  std::size_t shelf = 0;  // its switch; 0 for a band that is always a peak
  int side = 0;
};
constexpr std::array<Band, 5> kBands = {{{10, 11, 12, 13, {20, 500}, 14, 0},
                                         {15, 16, 17, 18, {40, 1000}},
                                         {19, 20, 21, 22, {125, 8000}},
                                         {23, 24, 25, 26, {1, 18000}},
                                         {27, 28, 29, 30, {1800, 20000}, 31, 1}}};
}  // namespace seven_band

// Control indices of the 1-Band.
namespace one_band {
constexpr std::size_t kControls = 8, kGain = 1, kFreq = 2, kQ = 3, kSlope = 4, kType = 5, kOutputGain = 6,
                      kPolarity = 7;
constexpr Limits kFreqLimits = {20, 20000};
enum Type : std::uint8_t { kHighPass, kLowShelf, kNotch, kPeak, kHighShelf, kLowPass };
}  // namespace one_band

// Of both.
constexpr double kNotchQ = 1.5538, kMostShelfGain = 12, kMostShelfQ = 2;
constexpr double kMostSlope = 3;

class Controls {
 public:
  explicit Controls(std::span<const float> values) : values_(values) {}

  double value(std::size_t i) const {
    const double v = i < values_.size() ? static_cast<double>(values_[i]) : 0;
    return std::fabs(v) < kLeastOfNothing ? v : 0;
  }
  bool on(std::size_t i) const { return value(i) >= kSwitchedOn; }
  double held(std::size_t i, Limits limits) const { return std::clamp(value(i), limits.least, limits.most); }
  int choice(std::size_t i, double most) const { return static_cast<int>(std::clamp(std::round(value(i)), 0.0, most)); }

 private:
  std::span<const float> values_;
};

void make_notch(EqFilter& filter, double q) {
  filter.kind = EqFilter::Kind::kNotch;
  filter.q = q * kNotchQ;
}
void make_pass(EqFilter& filter, int side, int slope) {
  filter.kind = EqFilter::Kind::kPass;
  filter.side = side;
  filter.order = slope + 1;
}
void make_shelf(EqFilter& filter, int side, double gain, double q) {
  filter.kind = EqFilter::Kind::kShelf;
  filter.side = side;
  filter.gain = std::clamp(gain, -kMostShelfGain, kMostShelfGain);
  filter.q = std::min(q, kMostShelfQ);
}
void make_peak(EqFilter& filter, double gain, double q) {
  filter.kind = EqFilter::Kind::kPeak;
  filter.gain = std::clamp(gain, kLeastEqGain, kMostEqGain);
  filter.q = peak_q(gain, q);
}

EqFilter pass_of(const Controls& controls, const seven_band::Pass& at) {
  EqFilter filter;
  filter.enabled = controls.on(at.in);
  filter.freq = controls.held(at.freq, at.limits);
  if (controls.on(at.mode)) {
    make_pass(filter, at.side, controls.choice(at.slope, kMostSlope));
  } else {
    make_notch(filter, controls.value(at.q));
  }
  return filter;
}

EqFilter band_of(const Controls& controls, const seven_band::Band& at) {
  EqFilter filter;
  filter.enabled = controls.on(at.in);
  filter.freq = controls.held(at.freq, at.limits);
  if (at.shelf != 0 && controls.on(at.shelf)) {
    make_shelf(filter, at.side, controls.value(at.gain), controls.value(at.q));
  } else {
    make_peak(filter, controls.value(at.gain), controls.value(at.q));
  }
  return filter;
}

Eq3Settings seven_band_settings(const Controls& controls) {
  namespace at = seven_band;
  Eq3Settings settings;
  settings.filters.push_back(pass_of(controls, at::kHighPass));
  for (const at::Band& band : at::kBands) settings.filters.push_back(band_of(controls, band));
  settings.filters.push_back(pass_of(controls, at::kLowPass));
  settings.output_gain = controls.value(at::kInputGain) + controls.value(at::kOutputGain);
  settings.inverts = controls.on(at::kPolarity);
  return settings;
}

Eq3Settings one_band_settings(const Controls& controls) {
  namespace at = one_band;
  const double gain = controls.value(at::kGain), q = controls.value(at::kQ);
  const int slope = controls.choice(at::kSlope, kMostSlope);
  EqFilter filter;
  filter.enabled = true;  // it has no switch of its own
  filter.freq = controls.held(at::kFreq, at::kFreqLimits);
  switch (controls.choice(at::kType, at::kLowPass)) {
    case at::kHighPass:
      make_pass(filter, 1, slope);
      break;
    case at::kLowShelf:
      make_shelf(filter, 0, gain, q);
      break;
    case at::kNotch:
      make_notch(filter, q);
      break;
    case at::kPeak:
      make_peak(filter, gain, q);
      break;
    case at::kHighShelf:
      make_shelf(filter, 1, gain, q);
      break;
    default:
      make_pass(filter, 0, slope);
      break;
  }
  Eq3Settings settings;
  settings.filters.push_back(filter);
  settings.output_gain = controls.value(at::kOutputGain);
  settings.inverts = std::fabs(controls.value(at::kPolarity)) >= kSwitchedOn;
  return settings;
}

// ---- slots ----

constexpr std::uint32_t kSeedMask = 0xFFFFFF, kSeed = 0x53540000;
// Behind the running numbers of a stand-in's slots.
constexpr std::uint32_t kFirstOrderSeed = 900, kLowPassSeed = 30;

constexpr std::string_view kBeyondReach =
    "EQ3 band beyond REAPER's reach near the top of the range (worst of these below)";

constexpr std::string_view kFirstOrderPath = "Liteon/simplelp6db", kFirstOrderName = "Simple 1-Pole Filter";
constexpr int kFirstOrderParameters = 4;

// The slider at which the first-order filter has a frequency: it climbs in logarithmic steps.
double first_order_slider(double frequency) {
  const double slider = (std::log((frequency + 0.5) / 8.17742) / 0.05732506661926935 - 16) / 1.20103;
  return std::clamp(slider, 0.0, 100.0);
}

StandInSlot first_order_slot(const EqFilter& filter, std::string_view name, SlotTitle title) {
  const std::string what = std::string(name) + (filter.is_high() ? " high-pass " : " low-pass ");
  title.label = stand_in_label(what + (filter.order == 3 ? "6 of 18 dB/oct" : "6 dB/oct"), kFirstOrderName);
  title.preset = filter.is_high() ? "EQ3 high-pass, first-order part" : "EQ3 low-pass, first-order part";
  std::string parameters = format_text("0 %d %.6f 0", filter.is_high() ? 1 : 0, first_order_slider(filter.pole_freq));
  return js_slot(kFirstOrderPath, std::move(parameters), kFirstOrderParameters, std::move(title));
}

}  // namespace

std::optional<Eq3Kind> eq3_kind(std::string_view signature) {
  if (signature == "Digi47e3") return Eq3Kind::kSevenBand;
  if (signature == "Digi1be3") return Eq3Kind::kOneBand;
  return std::nullopt;
}

std::size_t eq3_control_count(Eq3Kind kind) {
  return kind == Eq3Kind::kSevenBand ? seven_band::kControls : one_band::kControls;
}

std::string_view eq3_name(Eq3Kind kind) { return kind == Eq3Kind::kSevenBand ? "EQ3 7-Band" : "EQ3 1-Band"; }

Eq3Settings eq3_settings(Eq3Kind kind, std::span<const float> controls) {
  return kind == Eq3Kind::kSevenBand ? seven_band_settings(Controls(controls)) : one_band_settings(Controls(controls));
}

StandIn eq3_stand_in(const InsertRecord& insert, double sample_rate, EqFitter& fitter, Eq3Counts& counts) {
  const Eq3Kind kind = eq3_kind(insert.signature).value_or(Eq3Kind::kSevenBand);
  const std::string_view name = eq3_name(kind);
  Eq3Settings settings = eq3_settings(kind, insert.controls);
  const bool bypassed = insert.bypassed || insert.inactive;
  const std::uint32_t seed = (static_cast<std::uint32_t>(insert.start) & kSeedMask) ^ kSeed;

  StandIn result;
  std::uint32_t running = 0;
  if (settings.inverts) {
    const std::string what = std::string(name) + " polarity";
    result.slots.push_back(polarity_slot(FlippedSides::kBoth, {.label = stand_in_label(what, stock_names::kPolarity),
                                                               .preset = "EQ3 polarity",
                                                               .bypassed = bypassed,
                                                               .fxid_seed = seed + running++}));
  }

  std::vector<ReaEqBand> bands;
  bool within_reach = true;
  for (EqFilter& filter : settings.filters) {
    realise(filter, sample_rate);
    if (!fitter.fit(filter)) within_reach = false;
    if (filter.fitted) {
      ++counts.fitted_bands;
      counts.extra_bands += filter.extra_bands;
      counts.worst_error = std::max(counts.worst_error, filter.worst_error);
    }
    for (const ReaEqBand& band : filter.bands) bands.push_back(written(band, sample_rate));
  }
  if (!within_reach) result.notes.push_back(kBeyondReach);
  StandInSlot eq = reaeq_slot(bands, settings.output_gain);
  eq.label = stand_in_label(name, "ReaEQ");
  eq.preset = name;
  eq.bypassed = bypassed;
  eq.fxid_seed = seed + running++;
  result.slots.push_back(std::move(eq));

  for (const EqFilter& filter : settings.filters) {
    if (!filter.enabled || !(filter.pole_freq > 0)) continue;
    const std::uint32_t of_side = kind == Eq3Kind::kSevenBand && !filter.is_high() ? kLowPassSeed : 0;
    const SlotTitle title = {.label = {}, .bypassed = bypassed, .fxid_seed = seed + kFirstOrderSeed + of_side};
    result.slots.push_back(first_order_slot(filter, name, title));
    ++counts.first_order_slots;
  }
  return result;
}

}  // namespace frt

#include "standins/channel_strip.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <numbers>
#include <utility>

#include "base/byte_order.h"
#include "base/decibel.h"
#include "base/text.h"
#include "session/inserts/aax_chunks.h"
#include "standins/js_slots.h"
#include "standins/reacomp.h"
#include "standins/reaeq.h"

namespace frt {
namespace {

// ---- controls ----

// From the insert's mark: its first chunk's data, of which the list begins behind a word. An item is a tag of two
// characters with the control's name, ending in a zero byte and filled up to a multiple of 4, and the value,
// big-endian: i32 behind "l_", f64 behind "d_".
namespace named_list_layout {
constexpr std::uint64_t kItems = 17 + AaxChunk::kHeader + 4;
constexpr std::uint64_t kTagLength = 2, kUnit = 4;
constexpr std::string_view kIntegerTag = "l_", kDoubleTag = "d_";
}  // namespace named_list_layout

constexpr double kMostValue = 1e30;
// A comparison with NaN is false.
bool is_sensible(double value) { return std::abs(value) < kMostValue; }

// The controls in the plug-in's own order, with what a clip's are from the start.
struct ControlDefault {
  std::string_view name;
  double value;
};
constexpr ControlDefault kVocabulary[] = {
    {"Phase Switch In/Out", 0},
    {"EQ On/Off", 1},
    {"Filters On/Off", 1},
    {"Dynamics On/Off", 1},
    {"Input Trim", 0.5},
    {"Dynamics Range", 0},
    {"EQ Range", 0},
    {"EQ Low In/Out", 1},
    {"EQ Low Type", 0},
    {"EQ Low Gain", 0.5},
    {"EQ Low Frequency", 0.103889},
    {"EQ Low Q", 0.147441},
    {"EQ Low-Mid In/Out", 1},
    {"EQ Low-Mid Gain", 0.5},
    {"EQ Low-Mid Frequency", 0.402545},
    {"EQ Low-Mid Q", 0.147441},
    {"EQ High-Mid In/Out", 1},
    {"EQ High-Mid Gain", 0.5},
    {"EQ High-Mid Frequency", 0.701355},
    {"EQ High-Mid Q", 0.147441},
    {"EQ High In/Out", 1},
    {"EQ High Type", 0},
    {"EQ High Gain", 0.5},
    {"EQ High Frequency", 0.90036},
    {"EQ High Q", 0.147441},
    {"Filter 1 In/Out", 0},
    {"Filter 1 Type", 0},
    {"Filter 1 Frequency", 0.0042},
    {"Filter 1 Q", 0.147441},
    {"Filter 1 Slope 12/24dB", 0},
    {"Filter 2 In/Out", 0},
    {"Filter 2 Type", 0.333333},
    {"Filter 2 Frequency", 1},
    {"Filter 2 Q", 0.147441},
    {"Filter 2 Slope 12/24dB", 0},
    {"Cmp In/Out", 1},
    {"Cmp Ratio", 0},
    {"Cmp Knee", 0},
    {"Cmp Attack Time", 0},
    {"Cmp Release Time", 0.575257},
    {"Cmp Gain Makeup", 0},
    {"Cmp Threshold", 0.6},
    {"Cmp Depth", 0.666667},
    {"Exp In/Out", 1},
    {"Exp Ratio", 0},
    {"Exp Knee", 0},
    {"Exp Attack Time", 0},
    {"Exp Release Time", 0.575257},
    {"Exp Threshold", 0.314286},
    {"Exp Depth", 0.666667},
    {"Exp Hold Time", 0},
    {"Exp Hysteresis", 0},
    {"Sc Filter In/Out", 1},
    {"Sc Filter Type", 0},
    {"Sc Filter Frequency", 0},
    {"Sc Source", 0},
    {"Sc Detector Type Avg/Pk", 1},
    {"Fader Volume", 0.888889},
    {"Fader Volume Pre/Post", 0},
    {"Fader Volume On/Off", 1},
};
static_assert(std::size(kVocabulary) == 60);

double default_of(std::string_view name) {
  const auto* const row = std::find_if(std::begin(kVocabulary), std::end(kVocabulary),
                                       [&](const ControlDefault& control) { return control.name == name; });
  return row == std::end(kVocabulary) ? 0 : row->value;
}

constexpr std::array<std::string_view, 4> kBandStems = {"EQ Low", "EQ Low-Mid", "EQ High-Mid", "EQ High"};
constexpr std::array<std::string_view, 2> kFilterStems = {"Filter 1", "Filter 2"};
constexpr std::string_view kInOut = " In/Out", kType = " Type", kGain = " Gain", kFrequency = " Frequency", kQ = " Q",
                           kSlope = " Slope 12/24dB";

std::string joined(std::string_view stem, std::string_view ending) {
  std::string name(stem);
  name += ending;
  return name;
}

// What no gain, threshold or time of these plug-ins goes beyond.
constexpr double kMostDb = 150, kMostMs = 1e6;
double held_db(double db) { return std::clamp(db, -kMostDb, kMostDb); }
double held_ms(double ms) { return std::clamp(ms, 0.0, kMostMs); }

constexpr int kMostChoice = 1000;
int choice_of(double value) {
  return static_cast<int>(std::round(std::clamp<double>(value, -kMostChoice, kMostChoice)));
}

bool is_on(double value) { return value >= 0.5; }

constexpr double kOrdinaryDepth = -36, kDepthStep = 0.05;
constexpr double kShortestHoldMs = 1.05;
constexpr double kLeastChange = 0.0001;  // of a clip's value
constexpr double kLeastLevel = 0.005;    // below it a level counts as unmoved

class InsertControls {
 public:
  explicit InsertControls(const ByName<double>& values) : values_(values) {}

  double value(std::string_view name, double otherwise) const {
    const auto found = values_.find(name);
    return found == values_.end() ? otherwise : found->second;
  }
  bool on(std::string_view name, double otherwise) const { return is_on(value(name, otherwise)); }
  int choice(std::string_view name) const { return choice_of(value(name, 0)); }
  double db(std::string_view name, double otherwise) const { return held_db(value(name, otherwise)); }
  // Kept in seconds.
  double ms(std::string_view name, double otherwise) const { return held_ms(value(name, otherwise) * 1000); }

 private:
  const ByName<double>& values_;
};

// ---- a clip's ratios ----

struct RatioPoint {
  double value, ratio;
};
struct RatioScale {
  std::span<const RatioPoint> points;
  double measured_to;  // beyond it the last two points go on
};
constexpr RatioPoint kExpanderPoints[] = {{0, 1}, {0.614583, 3}, {0.909404, 10}};
constexpr RatioPoint kCompressorPoints[] = {{0, 1}, {0.171875, 2}, {0.253906, 3}, {0.3359375, 4}, {0.593715, 10}};
constexpr RatioScale kExpanderScale = {kExpanderPoints, 0.909405}, kCompressorScale = {kCompressorPoints, 0.593716};

double ratio_of(const RatioScale& scale, double v) {
  if (v <= 0) return 1;
  std::size_t upper = 1;
  while (upper + 1 < scale.points.size() && v > scale.points[upper].value) ++upper;
  const RatioPoint &from = scale.points[upper - 1], &to = scale.points[upper];
  const double low = std::log(from.ratio), high = std::log(to.ratio);
  return std::exp(low + (high - low) * (v - from.value) / (to.value - from.value));
}

// ---- equaliser and filters ----

struct CurvePoint {
  double x, y;
};

double on_curve(std::span<const CurvePoint> points, double x) {
  if (x <= points.front().x) return points.front().y;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const CurvePoint &from = points[i - 1], &to = points[i];
    if (x < to.x) return from.y + (to.y - from.y) * (x - from.x) / (to.x - from.x);
  }
  return points.back().y;
}

// What a bell's Q is of what its control says, as measured: by the size of its gain in dB, and by the logarithm of its
// frequency at 48 kHz.
constexpr CurvePoint kQOfGain[] = {{3, 0.6716}, {6, 0.8474}, {9, 0.9508}, {12, 1.0}, {18, 0.9911}};
constexpr CurvePoint kQOfFrequency[] = {{2, 1.0297},      {2.4771, 1.0225}, {3, 1.0},         {3.4771, 0.9394},
                                        {3.7782, 0.8556}, {4, 0.7463},      {4.1761, 0.5908}, {4.301, 0.3603}};
constexpr double kLeastQ = 0.2, kQShare = 0.4044;
constexpr double kLeastGain = 0.05;  // below it a band does nothing
constexpr double kMeasuredRate = 48000, kLeastMeasuredFrequency = 100;

constexpr double kShelfBandwidth = 1.4142135623730951;
constexpr double kButterworthOctaves = 1.8999686297483922;
constexpr double kTopOfRange = 0.49;  // of the rate

double q_of_gain(double gain) {
  const double g = std::abs(gain);
  if (g < kLeastGain) return 1;
  const CurvePoint& first = kQOfGain[0];
  return g < first.x ? first.y * std::pow(g / first.x, 0.25) : on_curve(kQOfGain, g);
}

double q_of_frequency(double frequency, double sample_rate) {
  return on_curve(kQOfFrequency,
                  std::log10(std::max(frequency * kMeasuredRate / sample_rate, kLeastMeasuredFrequency)));
}

// Of both the frequency that ReaEQ gets and what is worked out from it.
double held_frequency(double frequency) { return std::clamp(frequency, kLeastEqFrequency, kMostEqFrequency); }

// A shelf's corner, moved to where ReaEQ has its middle.
double shelf_frequency(const ChannelStripBand& band, bool high, double sample_rate) {
  const double a = std::pow(10.0, std::abs(band.gain) / 40);
  const double f = std::min(held_frequency(band.frequency), kTopOfRange * sample_rate);
  return sample_rate / std::numbers::pi * std::atan((high ? 1 / a : a) * std::tan(f * std::numbers::pi / sample_rate));
}

ReaEqBand eq_band(const ChannelStripBand& band, bool high, double sample_rate) {
  if (band.shelf) {
    return {high ? ReaEqType::kHighShelf : ReaEqType::kLowShelf, band.in,
            held_frequency(shelf_frequency(band, high, sample_rate)), band.gain, kShelfBandwidth};
  }
  const double f = held_frequency(band.frequency);
  const double q = std::max(band.q, kLeastQ) * kQShare * q_of_gain(band.gain) * q_of_frequency(f, sample_rate);
  return {ReaEqType::kBand, band.in, f, band.gain, octaves_of_q(q) * octave_share(f, sample_rate)};
}

enum FilterType : std::uint8_t { kHighPass = 0, kLowPass = 1, kBandPass = 2 };

void add_filter(std::vector<ReaEqBand>& bands, const ChannelStripFilter& filter, double sample_rate) {
  ReaEqBand band;
  band.enabled = filter.in;
  band.frequency = held_frequency(filter.frequency);
  if (filter.type == kHighPass || filter.type == kLowPass) {
    band.type = filter.type == kHighPass ? ReaEqType::kHighPass : ReaEqType::kLowPass;
    band.bandwidth = kButterworthOctaves * octave_share(band.frequency, sample_rate);
    if (filter.steep) bands.push_back(band);
  } else {
    band.type = filter.type == kBandPass ? ReaEqType::kBandPass : ReaEqType::kNotch;
    band.bandwidth = octaves_of_q(std::max(filter.q, kLeastEqQ));
  }
  bands.push_back(band);
}

// ---- dynamics ----

constexpr double kNoRatio = 1.0001;
constexpr double kGateRatio = 9.99, kTrueGateRatio = 50;
constexpr double kLeastKnee = 0.05, kLeastMakeup = 0.05;
constexpr double kNoDepth = -100;
constexpr double kSideChainTop = 20000;
constexpr double kOpenHighPass = 0.0011;  // the lowest that the control goes to
enum ScSource : std::uint8_t { kKey = 1, kAllLinked = 2 };

constexpr double kMostDetectorFrequency = 1e9;

// The detector's RMS window where it follows peaks.
constexpr double kPeakWindow = 0.05;

class ChainWriter {
 public:
  ChainWriter(const ChannelStripSettings& settings, const ChannelStripPlace& place) : s_(settings), place_(place) {
    if (!(place_.sample_rate > 0)) place_.sample_rate = kMeasuredRate;
    if (s_.sc_filter_on) {
      const double part = std::clamp(s_.sc_filter_freq, 0.0, kMostDetectorFrequency) / kSideChainTop;
      if (s_.sc_filter_type == kLowPass) detector_.low_pass = std::min(part, 1.0);
      if (s_.sc_filter_type == kHighPass) detector_.high_pass = part;
      sc_band_ = s_.sc_filter_type != kLowPass && s_.sc_filter_type != kHighPass;
    }
    detector_.keyed = s_.sc_source == kKey && place_.key_wired;
  }

  ChannelStripChain write() {
    if (s_.phase && !s_.clip) add(polarity_slot(FlippedSides::kBoth, named_title(" polarity", stock_names::kPolarity)));
    if (std::abs(s_.input_trim) >= kLeastLevel) volume(" input trim", s_.input_trim);
    if (s_.eq_present) equaliser();
    if (s_.filters_present) filters();
    dynamics();
    if (s_.fader_on) volume(" fader", s_.fader);
    if (s_.clip_fader) note("clip fader not carried (its scale is unmeasured)");
    if (s_.order_other) note("processing order other than EQ, filters, dynamics not carried (written in that order)");
    if (s_.range_other) {
      note("EQ/Dynamics Range other than the default: gains read at the default range (unmeasured)");
    }
    return std::move(chain_);
  }

 private:
  std::string named(std::string_view what) const { return joined(s_.name, what); }

  // A slot's label of what of the processor it plays and by which plug-in.
  SlotTitle title(std::string_view what, std::string_view plugin, std::string preset = {}, bool on = true) {
    std::vector<std::string_view>& plugins = chain_.plugins;
    if (std::find(plugins.begin(), plugins.end(), plugin) == plugins.end()) plugins.push_back(plugin);
    SlotTitle title;
    title.label = stand_in_label(named(what), plugin);
    title.preset = std::move(preset);
    title.bypassed = place_.bypassed || !on;
    title.fxid_seed = place_.fxid_seed + static_cast<std::uint32_t>(chain_.stand_in.slots.size());
    return title;
  }
  // The same with the preset's name from it.
  SlotTitle named_title(std::string_view what, std::string_view plugin) { return title(what, plugin, named(what)); }

  void add(StandInSlot slot) { chain_.stand_in.slots.push_back(std::move(slot)); }
  void add(StandInSlot slot, SlotTitle title) {
    slot.label = std::move(title.label);
    slot.preset = std::move(title.preset);
    slot.bypassed = title.bypassed;
    slot.fxid_seed = title.fxid_seed;
    add(std::move(slot));
  }

  void volume(std::string_view what, double db, bool on = true) {
    add(volume_slot(db, title(what, stock_names::kVolume, format_text("%s %+.1f dB", named(what).c_str(), db), on)));
  }

  void note(std::string_view text) {
    std::vector<std::string_view>& notes = chain_.stand_in.notes;
    if (std::find(notes.begin(), notes.end(), text) == notes.end()) notes.push_back(text);
  }

  void equaliser() {
    std::vector<ReaEqBand> bands;
    bool wired = false;
    for (const ChannelStripBand& band : s_.bands) {
      bands.push_back(eq_band(band, &band == &s_.bands.back(), place_.sample_rate));
      wired = wired || band.wired();
    }
    add(reaeq_slot(bands, 0), title(" EQ", "ReaEQ", {}, s_.eq_on));
    if (s_.clip && wired) {
      note(
          "EQ written as Channel Strip plays it (measured 26 Sep); checked on a Clip Effects bell, which matches Pro "
          "Tools to -109 dB");
    }
  }

  void filters() {
    std::vector<ReaEqBand> bands;
    for (const ChannelStripFilter& filter : s_.filters) add_filter(bands, filter, place_.sample_rate);
    add(reaeq_slot(bands, 0), title(" filters", "ReaEQ", {}, s_.filters_on));
  }

  void dynamics() {
    const bool expands = s_.exp_ratio > kNoRatio;
    const bool compresses = s_.cmp_ratio > kNoRatio || s_.cmp_makeup >= kLeastMakeup;
    if (expands) expander_or_gate();
    if (compresses) compressor();
    if (!expands && !compresses) return;
    if (s_.sc_source == kAllLinked && place_.side_of_a_stereo) {
      note("side chain All-Linked not carried: each side of the stereo pair detects on its own");
    }
    if (s_.sc_source == kKey && !place_.key_wired) {
      note("side chain set to Key with no key input wired: it detects on its own signal");
    }
  }

  void expander_or_gate() {
    if (s_.exp_extrapolated) note("expander ratio past 1:10 extrapolated (unsampled)");
    if (s_.exp_knee >= kLeastKnee) {
      note("expander/gate knee not carried (no knee in REAPER's gate or expander)");
    }
    if (s_.exp_hysteresis_set) note("gate hysteresis not carried (its Pro Tools scale is unmeasured)");
    if (s_.exp_ratio < kGateRatio) {
      expander();
    } else {
      gate();
    }
  }

  void expander() {
    constexpr int kModeAverage = 2, kModePeak = 3, kParameters = 7;
    add(js_slot("sstillwell/expander",
                format_text("%.3f %.4f 0 %d %d %.4f %.4f", s_.exp_thr, s_.exp_ratio, detector_.keyed ? 1 : 0,
                            s_.sc_peak ? kModePeak : kModeAverage, s_.exp_attack, s_.exp_release),
                kParameters,
                title(" Exp/Gate", "Downward Expander",
                      format_text("%s 1:%.3g", named(" Expander").c_str(), s_.exp_ratio), s_.exp_on && s_.dyn_on)));
    if (s_.exp_depth > kNoDepth) {
      note("expander depth (its floor) not carried: REAPER's Downward Expander has none");
    }
    if (s_.exp_hold_set) note("expander hold not carried: REAPER's Downward Expander has none");
    if (sc_band_ || detector_.low_pass != 1 || detector_.high_pass > kOpenHighPass) {
      note("expander side-chain filter not carried");
    }
  }

  void gate() {
    ReaGateSettings gate;
    gate.threshold = gain_of_db(s_.exp_thr);
    gate.attack_ms = s_.exp_attack;
    gate.release_ms = s_.exp_release;
    gate.hold_ms = s_.exp_hold;
    gate.floor = gain_of_db(s_.exp_depth);
    gate.hysteresis = gain_of_db(-s_.exp_hysteresis);
    if (s_.sc_peak) gate.rms_window = kPeakWindow;
    gate.detector = detector_;
    add(reagate_slot(gate, place_.key_pair,
                     title(" Exp/Gate", "ReaGate", format_text("%s 1:%.3g", named(" Exp/Gate").c_str(), s_.exp_ratio),
                           s_.exp_on && s_.dyn_on)));
    if (s_.exp_hold > kDynamicsMostHoldMs || s_.exp_attack > kDynamicsMostAttackMs ||
        s_.exp_release > kDynamicsMostReleaseMs) {
      note("gate time past ReaGate's range held at its top (attack 500 ms, release 5 s, hold 1 s)");
    }
    if (s_.exp_ratio < kTrueGateRatio) {
      note("expander at 1:10 or more written as a gate, with Pro Tools' depth as its floor");
    }
    if (sc_band_) note("side-chain band-pass/notch filter not carried");
  }

  void compressor() {
    constexpr double kMostMakeup = 6.0206;
    const bool on = s_.cmp_on && s_.dyn_on;
    const bool gain_behind = s_.cmp_makeup > kMostMakeup;
    ReaCompSettings comp;
    comp.threshold = gain_of_db(s_.cmp_thr);
    comp.ratio = s_.cmp_ratio;
    comp.attack_ms = s_.cmp_attack;
    comp.release_ms = s_.cmp_release;
    comp.knee_db = s_.cmp_knee;
    comp.wet_gain = gain_behind ? 1 : gain_of_db(s_.cmp_makeup);
    if (s_.sc_peak) comp.rms_window = kPeakWindow;
    comp.detector = detector_;
    add(reacomp_slot(
        comp, place_.key_pair,
        title(" Comp/Lim", "ReaComp", format_text("%s %.3g:1", named(" Comp/Lim").c_str(), s_.cmp_ratio), on)));
    if (s_.cmp_depth_set) {
      note("compressor depth (a gain-reduction limit) not carried: ReaComp has none");
    }
    if (s_.cmp_extrapolated) note("compressor ratio past 10:1 extrapolated (unsampled)");
    if (s_.cmp_attack > kDynamicsMostAttackMs || s_.cmp_release > kDynamicsMostReleaseMs) {
      note("compressor time past ReaComp's range held at its top (attack 500 ms, release 5 s)");
    }
    if (s_.cmp_knee > kReaCompMostKneeDb) {
      note("compressor knee past ReaComp's 24 dB held at 24");
    }
    if (gain_behind) volume(" makeup", s_.cmp_makeup, on);
  }

  const ChannelStripSettings& s_;
  ChannelStripPlace place_;
  DetectorInput detector_;
  bool sc_band_ = false;  // the detector's filter is one that REAPER's detectors don't have
  ChannelStripChain chain_;
};

}  // namespace

bool ChannelStripBand::wired() const { return in && std::abs(gain) >= kLeastGain; }

ByName<double> named_controls(ByteView image, const InsertRecord& insert) {
  namespace at = named_list_layout;
  ByName<double> controls;
  if (!begins_with_controls(image, insert.start, insert.end)) return controls;
  const ByteView bytes = image.clamped(0, insert.end);
  std::uint64_t item = insert.start + at::kItems;
  for (;;) {
    const bool whole = bytes.equals(item, at::kIntegerTag);
    if (!whole && !bytes.equals(item, at::kDoubleTag)) return controls;
    const std::uint64_t name_end = bytes.find(0, item, bytes.size());
    if (name_end == bytes.size()) return controls;
    const std::uint64_t length = name_end - item;
    const std::uint64_t value_at = item + length / at::kUnit * at::kUnit + at::kUnit;
    std::optional<double> value;
    if (whole) {
      if (const auto number = u32_big(bytes, value_at)) value = static_cast<std::int32_t>(*number);
    } else {
      value = f64_big(bytes, value_at);
    }
    if (!value) return controls;
    if (is_sensible(*value)) {
      controls.emplace(bytes.text(item + at::kTagLength, length - at::kTagLength).value_or(""), *value);
    }
    item = value_at + (whole ? sizeof(std::int32_t) : sizeof(double));
  }
}

std::optional<ChannelStripSettings> channel_strip_of_insert(const ByName<double>& controls) {
  for (const std::string_view needed : {"Cmp Ratio", "EQ Low Gain", "Filter 2 Type", "Sc Source"}) {
    if (!controls.contains(needed)) return std::nullopt;
  }
  const InsertControls c(controls);
  ChannelStripSettings s;
  s.phase = c.on("Phase Switch In/Out", 0);
  s.input_trim = c.db("Input Trim", 0);

  s.eq_on = c.on("EQ On/Off", 1);
  for (std::size_t i = 0; i < s.bands.size(); ++i) {
    ChannelStripBand& band = s.bands[i];
    const std::string_view stem = kBandStems[i];
    band.in = c.on(joined(stem, kInOut), 1);
    band.shelf = (i == 0 || i + 1 == s.bands.size()) && c.on(joined(stem, kType), 0);
    band.gain = c.db(joined(stem, kGain), 0);
    band.frequency = c.value(joined(stem, kFrequency), 1000);
    band.q = c.value(joined(stem, kQ), 1);
  }
  s.filters_on = c.on("Filters On/Off", 1);
  for (std::size_t i = 0; i < s.filters.size(); ++i) {
    ChannelStripFilter& filter = s.filters[i];
    const std::string_view stem = kFilterStems[i];
    filter.in = c.on(joined(stem, kInOut), 0);
    filter.type = c.choice(joined(stem, kType));
    filter.frequency = c.value(joined(stem, kFrequency), 1000);
    filter.q = c.value(joined(stem, kQ), 1);
    filter.steep = c.on(joined(stem, kSlope), 0);
  }

  s.dyn_on = c.on("Dynamics On/Off", 1);
  s.sc_peak = c.on("Sc Detector Type Avg/Pk", 1);
  s.sc_filter_on = c.on("Sc Filter In/Out", 1);
  s.sc_filter_type = c.choice("Sc Filter Type");
  s.sc_filter_freq = c.value("Sc Filter Frequency", 20);
  s.sc_source = c.choice("Sc Source");

  s.exp_on = c.on("Exp In/Out", 1);
  s.exp_ratio = c.value("Exp Ratio", 1);
  s.exp_thr = c.db("Exp Threshold", -80);
  s.exp_attack = c.ms("Exp Attack Time", 0);
  s.exp_release = c.ms("Exp Release Time", 0.2);
  s.exp_hold = c.ms("Exp Hold Time", 0.001);
  s.exp_knee = c.db("Exp Knee", 0);
  s.exp_depth = c.db("Exp Depth", kOrdinaryDepth);
  s.exp_hysteresis = c.db("Exp Hysteresis", 0);
  s.exp_hold_set = s.exp_hold > kShortestHoldMs;

  s.cmp_on = c.on("Cmp In/Out", 1);
  s.cmp_ratio = c.value("Cmp Ratio", 1);
  s.cmp_thr = c.db("Cmp Threshold", -24);
  s.cmp_attack = c.ms("Cmp Attack Time", 0);
  s.cmp_release = c.ms("Cmp Release Time", 0.2);
  s.cmp_knee = c.db("Cmp Knee", 0);
  s.cmp_makeup = c.db("Cmp Gain Makeup", 0);
  s.cmp_depth_set = std::abs(c.value("Cmp Depth", kOrdinaryDepth) - kOrdinaryDepth) >= kDepthStep;

  s.fader = c.db("Fader Volume", 0);
  s.fader_on = std::abs(s.fader) >= kLeastLevel && c.on("Fader Volume On/Off", 1);
  const auto moved = [&](std::string_view name) { return is_on(std::abs(c.value(name, 0))); };
  s.order_other = moved("Process Order");
  s.range_other = moved("EQ Range") || moved("Dynamics Range");
  return s;
}

ClipControls::ClipControls(const ClipEffects& list) {
  for (const auto& [name, value] : list) {
    if (is_sensible(value)) values_.emplace(name, std::clamp(value, 0.0, 1.0));
  }
}

double ClipControls::clip_value(std::string_view name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? default_of(name) : found->second;
}

bool ClipControls::clip_changed(std::string_view name) const {
  return values_.contains(name) && std::abs(clip_value(name) - default_of(name)) >= kLeastChange;
}

ChannelStripSettings channel_strip_of_clip(const ClipControls& controls) {
  const auto v = [&](std::string_view name) { return controls.clip_value(name); };
  const auto on = [&](std::string_view name) { return is_on(v(name)); };
  const auto frequency = [&](std::string_view name) { return 20 * std::pow(1050, v(name)); };
  const auto q = [&](std::string_view name) { return 0.2 * std::pow(500, v(name)); };
  const auto type = [&](std::string_view name) { return static_cast<int>(std::floor(3 * v(name) + 0.5)); };
  // `decades` of them from the least on.
  const auto ms = [&](std::string_view name, double least, double decades) {
    return least * std::pow(10.0, decades * v(name));
  };
  const auto any_changed = [&](const auto& stems, std::initializer_list<std::string_view> endings) {
    for (const std::string_view stem : stems) {
      for (const std::string_view ending : endings) {
        if (controls.clip_changed(joined(stem, ending))) return true;
      }
    }
    return false;
  };

  ChannelStripSettings s;
  s.name = "Clip Effects";
  s.clip = true;
  s.phase = on("Phase Switch In/Out");
  s.input_trim = (v("Input Trim") - 0.5) * 72;

  s.eq_present = any_changed(kBandStems, {kInOut, kType, kGain, kFrequency, kQ});
  s.eq_on = on("EQ On/Off");
  for (std::size_t i = 0; i < s.bands.size(); ++i) {
    ChannelStripBand& band = s.bands[i];
    const std::string_view stem = kBandStems[i];
    band.in = on(joined(stem, kInOut));
    band.shelf = (i == 0 || i + 1 == s.bands.size()) && on(joined(stem, kType));
    band.gain = (v(joined(stem, kGain)) - 0.5) * 48;
    band.frequency = frequency(joined(stem, kFrequency));
    band.q = q(joined(stem, kQ));
  }
  s.filters_present = any_changed(kFilterStems, {kInOut, kType, kFrequency, kQ, kSlope});
  s.filters_on = on("Filters On/Off");
  for (std::size_t i = 0; i < s.filters.size(); ++i) {
    ChannelStripFilter& filter = s.filters[i];
    const std::string_view stem = kFilterStems[i];
    filter.in = on(joined(stem, kInOut));
    filter.type = type(joined(stem, kType));
    filter.frequency = frequency(joined(stem, kFrequency));
    filter.q = q(joined(stem, kQ));
    filter.steep = on(joined(stem, kSlope));
  }

  s.dyn_on = on("Dynamics On/Off");
  s.sc_peak = on("Sc Detector Type Avg/Pk");
  s.sc_filter_on = on("Sc Filter In/Out");
  s.sc_filter_type = type("Sc Filter Type");
  s.sc_filter_freq = frequency("Sc Filter Frequency");
  s.sc_source = on("Sc Source") ? kAllLinked : 0;

  s.exp_on = on("Exp In/Out");
  s.exp_ratio = ratio_of(kExpanderScale, v("Exp Ratio"));
  s.exp_extrapolated = v("Exp Ratio") > kExpanderScale.measured_to;
  s.exp_thr = 70 * v("Exp Threshold") - 80;
  s.exp_attack = ms("Exp Attack Time", 0.02, 5);
  s.exp_release = ms("Exp Release Time", 1, 4);
  s.exp_hold = ms("Exp Hold Time", 1, 4);
  s.exp_knee = 30 * v("Exp Knee");
  s.exp_depth = (1 - v("Exp Depth")) * -108;
  s.exp_hysteresis_set = controls.clip_changed("Exp Hysteresis");
  s.exp_hold_set = controls.clip_changed("Exp Hold Time");

  s.cmp_on = on("Cmp In/Out");
  s.cmp_ratio = ratio_of(kCompressorScale, v("Cmp Ratio"));
  s.cmp_extrapolated = v("Cmp Ratio") > kCompressorScale.measured_to;
  s.cmp_thr = 60 * v("Cmp Threshold") - 60;
  s.cmp_attack = ms("Cmp Attack Time", 0.1, 4);
  s.cmp_release = ms("Cmp Release Time", 1, 4);
  s.cmp_knee = 30 * v("Cmp Knee");
  s.cmp_makeup = 30 * v("Cmp Gain Makeup");
  s.cmp_depth_set = controls.clip_changed("Cmp Depth");

  s.clip_fader = controls.clip_changed("Fader Volume");
  s.order_other = v("Process Order") >= kLeastChange;
  s.range_other = v("EQ Range") >= kLeastChange || v("Dynamics Range") >= kLeastChange;
  return s;
}

ChannelStripChain channel_strip_chain(const ChannelStripSettings& settings, const ChannelStripPlace& place) {
  return ChainWriter(settings, place).write();
}

}  // namespace frt

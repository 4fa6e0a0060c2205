// Channel Strip and Clip Effects: from the controls' bytes or a clip's list to REAPER's plug-ins.
#include "standins/channel_strip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <regex>
#include <string>
#include <vector>

#include "base/text.h"
#include "state/containers.h"

namespace frt::test {
namespace {

using std::string;

string big_endian(std::uint64_t value, int bytes) {
  string text;
  while (bytes-- > 0) text += static_cast<char>(value >> (8 * bytes));
  return text;
}
// An item of the list: name with tag up to its value, then the value.
string item(string name, const string& value) {
  name.resize(name.size() / 4 * 4 + 4);
  return name + value;
}
string integer(const string& name, int value) {
  return item("l_" + name, big_endian(static_cast<std::uint32_t>(value), 4));
}
string real(const string& name, double value) {
  return item("d_" + name, big_endian(std::bit_cast<std::uint64_t>(value), 8));
}

ByName<double> read(const string& items, const char* chunk = "elck") {
  const string bytes = string(37, '\x7F') + chunk + string(36, '\0') + items;
  InsertRecord insert;
  insert.end = bytes.size();
  return named_controls(view_of(bytes + "l_\x01 behind the insert"), insert);
}

TEST(ChannelStrip, NamedControls) {
  using Controls = ByName<double>;
  const string start = integer("A", -7) + real("Sc Sou", 0.25) + integer("Sc Source", 3) + real("Sc Sourc", -1e29);
  const Controls first = {{"A", -7}, {"Sc Sou", 0.25}, {"Sc Source", 3}, {"Sc Sourc", -1e29}};
  EXPECT_EQ(read(start), first);
  EXPECT_EQ(read(start + "m_" + integer("B", 1)), first) << "ends at a tag of another shape";
  EXPECT_EQ(read(start + integer("A", 5) + real("A", 6)), first) << "the first of a name";
  EXPECT_EQ(read(start + "l_a name without an end"), first);
  for (const string& last : {integer("Last", 2), real("Last", 2.5)}) {
    EXPECT_EQ(read(start + last).size(), 5U);
    EXPECT_EQ(read(start + last.substr(0, last.size() - 1)), first) << "one byte short";
  }
  using Limits = std::numeric_limits<double>;
  for (const double value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), 1e30, -1e30}) {
    EXPECT_EQ(read(real("Odd", value) + start), first) << value;
  }
  EXPECT_TRUE(read(start, "plug").empty());
}

// One line a slot: "-" for a bypassed one, label, preset, values of a JS; then the notes.
string rows(const ChannelStripChain& chain, std::uint32_t seed = 0) {
  string text;
  for (const StandInSlot& slot : chain.stand_in.slots) {
    text += (slot.bypassed ? "- " : "") + slot.label;
    if (!slot.preset.empty()) text += " | " + slot.preset;
    if (!slot.js_path.empty()) text += " | " + string(slot.js_path) + " " + slot.js_parameters;
    text += '\n';
    EXPECT_EQ(slot.fxid_seed, seed++);
    EXPECT_EQ(slot.vst_state.empty(), slot.vst_ident.empty());
  }
  for (const std::string_view note : chain.stand_in.notes) text.append("# ").append(note) += '\n';
  return text;
}

// "Cmp Ratio 4, Exp Depth -20" as a list.
ClipEffects list_of(const string& text) {
  ClipEffects list;
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 2) {
    end = std::min(text.find(", ", at), text.size());
    const std::size_t blank = text.rfind(' ', end - 1);
    list.emplace_back(text.substr(at, blank - at), std::stod(text.substr(blank + 1, end - blank - 1)));
  }
  return list;
}
ByName<double> controls_of(const string& text) {
  const ClipEffects list = list_of(text);
  return {list.begin(), list.end()};
}
const string kNeeded = "Cmp Ratio 1, EQ Low Gain 0, Filter 2 Type 1, Sc Source 0";

ChannelStripChain chain_of(const string& controls, const ChannelStripPlace& place = {}) {
  const auto settings = channel_strip_of_insert(controls_of(controls + ", " + kNeeded));
  return channel_strip_chain(settings.value_or(ChannelStripSettings{}), place);
}

const string kEqAndFilters = "Channel Strip EQ (ReaEQ)\nChannel Strip filters (ReaEQ)\n";

TEST(ChannelStrip, AnInsertAtRestHasItsEqualiserAndFilters) {
  EXPECT_EQ(rows(chain_of("Dynamics On/Off 1")), kEqAndFilters);
  EXPECT_EQ(rows(chain_of("Input Trim 0.0049, Fader Volume -0.0049, Cmp Gain Makeup 0.04")), kEqAndFilters);
  const ByName<double> needed = controls_of(kNeeded);
  EXPECT_TRUE(channel_strip_of_insert(needed));
  for (const auto& [name, value] : needed) {
    ByName<double> fewer = needed;
    fewer.erase(name);
    EXPECT_FALSE(channel_strip_of_insert(fewer)) << name;
  }
}

const string kAll =
    "Phase Switch In/Out 1, Input Trim 3.010299956639812, Exp Ratio 3, Exp Depth -100, Exp Threshold -30.2, Exp Attack "
    "Time 0.00002, Cmp Ratio 4, Cmp Gain Makeup 12.041199826559248, Fader Volume -6";

TEST(ChannelStrip, AllSectionsInOrderAndEachOff) {
  const ChannelStripPlace place = {.fxid_seed = 40};
  const string all =
      "Channel Strip polarity (Channel Polarity Control) | Channel Strip polarity | IX/StereoPhaseInvert 3\n"
      "Channel Strip input trim (Volume Adjustment) | Channel Strip input trim +3.0 dB | utility/volume 3.000000 150\n"
      "Channel Strip EQ (ReaEQ)\n"
      "Channel Strip filters (ReaEQ)\n"
      "Channel Strip Exp/Gate (Downward Expander) | Channel Strip Expander 1:3 | "
      "sstillwell/expander -30.200 3.0000 0 0 3 0.0200 200.0000\n"
      "Channel Strip Comp/Lim (ReaComp) | Channel Strip Comp/Lim 4:1\n"
      "Channel Strip makeup (Volume Adjustment) | Channel Strip makeup +12.0 dB | utility/volume 12.000000 150\n"
      "Channel Strip fader (Volume Adjustment) | Channel Strip fader -6.0 dB | utility/volume -5.979471 150\n";
  EXPECT_EQ(rows(chain_of(kAll, place), 40), all);
  EXPECT_EQ(chain_of(kAll).plugins, (std::vector<std::string_view>{"Channel Polarity Control", "Volume Adjustment",
                                                                   "ReaEQ", "Downward Expander", "ReaComp"}));

  const auto bypassed = [](const string& controls, bool insert = false) {
    string text;
    for (const StandInSlot& slot : chain_of(controls + kAll, {.bypassed = insert}).stand_in.slots) {
      text += slot.bypassed ? '-' : '+';
    }
    return text;
  };
  EXPECT_EQ(bypassed("EQ On/Off 0, "), "++-+++++");
  EXPECT_EQ(bypassed("Filters On/Off 0, "), "+++-++++");
  EXPECT_EQ(bypassed("Exp In/Out 0, "), "++++-+++");
  EXPECT_EQ(bypassed("Cmp In/Out 0, "), "+++++--+");
  EXPECT_EQ(bypassed("Dynamics On/Off 0, "), "++++---+");
  EXPECT_EQ(bypassed("Fader Volume On/Off 0, "), "+++++++");
  EXPECT_EQ(bypassed("", true), "--------");
}

double float_of(const StandInSlot& slot, unsigned index) {
  return view_of(slot.vst_state).f32(8 + 4 * index).value_or(-1);
}

TEST(ChannelStrip, ExpanderGateAndTheirLosses) {
  const string hard =
      "Exp Depth -20, Exp Threshold -40, Exp Attack Time 0.05, Exp Release Time 2.5, Exp Hold Time 0.25, Exp "
      "Hysteresis 20, Sc Filter Type 1, Sc Filter Frequency 5000, Exp Knee 0.05";
  const auto with_ratio = [&](const string& ratio, const ChannelStripPlace& place = {}) {
    return chain_of("Exp Ratio " + ratio + ", " + hard, place);
  };
  const string knee = "# expander/gate knee not carried (no knee in REAPER's gate or expander)\n";
  EXPECT_EQ(rows(with_ratio("1.0001")), kEqAndFilters);
  EXPECT_EQ(rows(with_ratio("9.98, Sc Source 1, Sc Detector Type Avg/Pk 0", {.key_wired = true})),
            kEqAndFilters +
                "Channel Strip Exp/Gate (Downward Expander) | Channel Strip Expander 1:9.98 | "
                "sstillwell/expander -40.000 9.9800 0 1 2 50.0000 2500.0000\n" +
                knee + "# expander depth (its floor) not carried: REAPER's Downward Expander has none\n" +
                "# expander hold not carried: REAPER's Downward Expander has none\n" +
                "# expander side-chain filter not carried\n");
  const string as_gate = "# expander at 1:10 or more written as a gate, with Pro Tools' depth as its floor\n";
  const ChannelStripChain gate = with_ratio("9.99, Sc Source 1");
  EXPECT_EQ(rows(gate), kEqAndFilters + "Channel Strip Exp/Gate (ReaGate) | Channel Strip Exp/Gate 1:9.99\n" + knee +
                            as_gate +
                            "# side chain set to Key with no key input wired: it detects on its own signal\n");
  const double expected[] = {
      0.01, 0.1, 0.5, 0, 0.25, 0.25, 0, 0, 0, 0.1, 0.9, 3.1622800378272586e-08, 0.1, 0, 0.05, 0, 0.5433070063591003,
      0,    0,   0,   0};
  for (unsigned i = 0; i < std::size(expected); ++i) {
    EXPECT_NEAR(float_of(gate.stand_in.slots.back(), i), expected[i], 1e-7) << i;
  }
  EXPECT_NEAR(float_of(with_ratio("50, Sc Source 1", {.key_wired = true}).stand_in.slots.back(), 7),
              0.0018450184725224972, 1e-9);
  EXPECT_EQ(rows(with_ratio("50, Sc Filter Type 2, Exp Hold Time 1.001")),
            kEqAndFilters + "Channel Strip Exp/Gate (ReaGate) | Channel Strip Exp/Gate 1:50\n" + knee +
                "# gate time past ReaGate's range held at its top (attack 500 ms, release 5 s, hold 1 s)\n"
                "# side-chain band-pass/notch filter not carried\n");
}

TEST(ChannelStrip, CompressorAndMakeup) {
  const string hard =
      "Cmp Ratio 34, Cmp Threshold -20, Cmp Attack Time 0.05, Cmp Release Time 0.5, Cmp Knee 12, Cmp Gain Makeup 6, Sc "
      "Filter Frequency 200, Sc Detector Type Avg/Pk 0";
  const double expected[] = {0.1,       1.0 / 3, 0.1, 0.1, 0, 0, 1,    0.01, 0, 0, 3.1622800378272586e-08,
                             1.9952623, 0,       0,   0.5, 0, 0, 0.25, 0,    0, 0};
  const StandInSlot comp = chain_of(hard).stand_in.slots.back();
  for (unsigned i = 0; i < std::size(expected); ++i) EXPECT_NEAR(float_of(comp, i), expected[i], 1e-7) << i;

  EXPECT_EQ(rows(chain_of("Cmp Gain Makeup 6.0206")),
            kEqAndFilters + "Channel Strip Comp/Lim (ReaComp) | Channel Strip Comp/Lim 1:1\n");
  const ChannelStripChain loud = chain_of(
      "Cmp Gain Makeup 6.1, Cmp Depth -35.94, Cmp Knee 24.1, Cmp Release Time 5.001, Process Order 1, Dynamics Range "
      "-1");
  EXPECT_EQ(
      rows(loud),
      kEqAndFilters +
          "Channel Strip Comp/Lim (ReaComp) | Channel Strip Comp/Lim 1:1\n"
          "Channel Strip makeup (Volume Adjustment) | Channel Strip makeup +6.1 dB | utility/volume 6.079128 150\n"
          "# compressor depth (a gain-reduction limit) not carried: ReaComp has none\n"
          "# compressor time past ReaComp's range held at its top (attack 500 ms, release 5 s)\n"
          "# compressor knee past ReaComp's 24 dB held at 24\n"
          "# processing order other than EQ, filters, dynamics not carried (written in that order)\n"
          "# EQ/Dynamics Range other than the default: gains read at the default range (unmeasured)\n");
  EXPECT_EQ(float_of(loud.stand_in.slots[2], 11), 1);
  EXPECT_NEAR(float_of(loud.stand_in.slots[2], 13), 0.05, 1e-7);
  EXPECT_EQ(float_of(loud.stand_in.slots[2], 14), 1);
}

struct WrittenBand {
  unsigned type, enabled;
  double frequency, gain, bandwidth;
};
std::vector<WrittenBand> bands_of(const StandInSlot& slot) {
  const ByteView state = view_of(slot.vst_state);
  std::vector<WrittenBand> bands;
  for (std::uint64_t at = 8; bands.size() < state.u32_or(4, 0); at += 33) {
    bands.push_back({state.u32_or(at, 99), state.u32_or(at + 4, 99), state.f64(at + 8).value_or(-1),
                     state.f64(at + 16).value_or(-1), state.f64(at + 24).value_or(-1)});
  }
  return bands;
}

TEST(ChannelStrip, ShelvesAndFiltersByHand) {
  // A gain of factor 3 has the square root of 3 as its A, the tangent of 60 degrees; a quarter of the rate stands
  // at 45.
  const string db = format_text("%.17g", 20 * std::log10(3.0));
  const ChannelStripChain chain =
      chain_of("EQ Low Type 1, EQ Low Gain -" + db +
               ", EQ Low Frequency 12000, EQ Low In/Out 0, EQ Low-Mid Type 1, EQ High Type 1, EQ High Gain " + db +
               ", EQ High Frequency 12000, Filter 1 In/Out 1, Filter 1 Frequency 12000, Filter 1 Slope 12/24dB 1, "
               "Filter 2 Type 1.5, Filter 2 Q 0.5, Filter 2 Frequency 300, Filter 2 Slope 12/24dB 1");
  const auto expect = [](const WrittenBand& band, const WrittenBand& wanted) {
    EXPECT_EQ(band.type, wanted.type);
    EXPECT_EQ(band.enabled, wanted.enabled);
    EXPECT_NEAR(band.frequency, wanted.frequency, 1e-6);
    EXPECT_NEAR(band.gain, wanted.gain, 1e-9);
    EXPECT_NEAR(band.bandwidth, wanted.bandwidth, 1e-9);
  };
  const std::vector<WrittenBand> eq = bands_of(chain.stand_in.slots[0]);
  ASSERT_EQ(eq.size(), 4U);
  expect(eq[0], {0, 0, 16000, 1.0 / 3, std::numbers::sqrt2});
  EXPECT_EQ(eq[1].type, 8U) << "a band in the middle is never a shelf";
  expect(eq[3], {1, 1, 8000, 3, std::numbers::sqrt2});
  const std::vector<WrittenBand> filters = bands_of(chain.stand_in.slots[1]);
  ASSERT_EQ(filters.size(), 3U);
  for (const unsigned i : {0U, 1U}) expect(filters[i], {4, 1, 12000, 1, 1.8999686297483922 * 2 / std::numbers::pi});
  expect(filters[2], {7, 0, 300, 1, 2 * std::log2(1 + std::numbers::sqrt2)});

  const auto type_of = [](double control) {
    return bands_of(chain_of(format_text("Filter 2 Type %g", control)).stand_in.slots[1])[1].type;
  };
  EXPECT_EQ(type_of(0.4), 4U);
  EXPECT_EQ(type_of(1), 3U);
  for (const double other : {2.5, 3.0, 4.0, -1.0, 1e29, -1e29}) EXPECT_EQ(type_of(other), 6U) << other;
}

// The Q behind the first band's width.
double q_written(double gain, double frequency, double q, double rate) {
  const WrittenBand band =
      bands_of(chain_of(format_text("EQ Low Gain %.17g, EQ Low Frequency %.17g, EQ Low Q %.17g", gain, frequency, q),
                        {.sample_rate = rate})
                   .stand_in.slots[0])[0];
  const double w = std::min(2 * std::numbers::pi * frequency / rate, std::numbers::pi / 2);
  return 1 / (2 * std::sinh(band.bandwidth * w / std::sin(w) * std::numbers::ln2 / 2));
}

TEST(ChannelStrip, ABellsQHangsOnItsGainAndFrequency) {
  EXPECT_NEAR(q_written(12, 1000, 1, 48000), 0.4044, 1e-9);
  EXPECT_NEAR(q_written(12, 1000, 0.1, 48000), 0.08088, 1e-9) << "at least 0.2 before the factor";
  EXPECT_NEAR(q_written(0.04, 1000, 1, 48000), 0.4044, 1e-9);
  EXPECT_NEAR(q_written(-0.1875, 1000, 1, 48000), 0.4044 * 0.6716 / 2, 1e-9);
  EXPECT_NEAR(q_written(-4.5, 1000, 1, 48000), 0.4044 * 0.7595, 1e-9);
  EXPECT_NEAR(q_written(18, 2000, 1, 96000), 0.4044 * 0.9911, 1e-9);
  EXPECT_NEAR(q_written(22, 20, 1, 48000), 0.4044 * 0.9911 * 1.0297, 1e-9);
  EXPECT_NEAR(q_written(12, 10000, 1, 48000), 0.4044 * 0.7463, 1e-9);
  EXPECT_NEAR(q_written(12, 10000 * std::pow(10, 0.08805), 1, 48000), 0.4044 * 0.66855, 1e-9);
  EXPECT_NEAR(q_written(12, 20000, 1, 44100), 0.4044 * 0.3603, 1e-9);
}

TEST(ChannelStrip, NoValueBringsANumberThatIsNone) {
  const string names =
      "EQ Low Gain @, EQ Low Frequency @, EQ Low Q @, EQ High Type 1, EQ High Gain @, EQ High Frequency @, Filter 1 "
      "Type @, Filter 1 Frequency @, Filter 2 Type 2, Filter 2 Q @, Input Trim @, Fader Volume @, Exp Threshold @, Exp "
      "Attack Time @, Exp Release Time @, Exp Depth @, Exp Hysteresis @, Exp Hold Time @, Cmp Threshold @, Cmp Knee @, "
      "Cmp Release Time @, Sc Filter Frequency @, Cmp Gain Makeup @, Sc Source @, ";
  for (const double value : {9.9e29, -9.9e29, 1e-300, -1.0, 0.0}) {
    const string controls = std::regex_replace(names, std::regex("@"), format_text("%g", value));
    for (const char* ratios : {"Exp Ratio 5, Cmp Ratio 1e29", "Exp Ratio 1e29, Cmp Ratio 5"}) {
      const ChannelStripChain chain = chain_of(controls + ratios, {.sample_rate = 44100});
      EXPECT_FALSE(std::regex_search(rows(chain), std::regex("nan|[ -]inf")));
      for (const StandInSlot& slot : chain.stand_in.slots) {
        const bool eq = slot.vst_file == "reaeq.dll";
        for (const WrittenBand& band : eq ? bands_of(slot) : std::vector<WrittenBand>{}) {
          EXPECT_TRUE(std::isfinite(band.gain) && band.frequency > 0 && band.bandwidth > 0 && band.bandwidth < 100);
        }
        for (unsigned i = 0; i < 21 && !eq; ++i) EXPECT_TRUE(std::isfinite(float_of(slot, i))) << slot.label << i;
      }
    }
  }
}

ChannelStripSettings clip(const string& list) { return channel_strip_of_clip(ClipControls(list_of(list))); }

TEST(ClipEffects, ValuesOf0To1InTheirUnits) {
  const ChannelStripSettings s = clip(
      "Phase Switch In/Out 0.5, Input Trim 0.75, EQ Low Type 0.5, EQ High-Mid Gain 0.25, EQ High-Mid Frequency 0.5, EQ "
      "High-Mid Q 0.5, Filter 1 Type 0.5, Sc Filter Type 0.16, Sc Filter Frequency 1, Sc Source 0.5, Exp Threshold "
      "0.5, Exp Attack Time 0.4, Exp Release Time 0.25, Exp Hold Time 0.75, Exp Knee 0.5, Exp Depth 0.25, Cmp "
      "Threshold 0.25, Cmp Attack Time 0.5, Cmp Release Time 1.5, Cmp Knee 0.1, Cmp Gain Makeup 0.2, Input Trim 1, "
      "Dynamics On/Off 0.49");
  const double values[] = {s.input_trim,     s.bands[2].gain, s.bands[2].frequency, s.bands[2].q,
                           s.sc_filter_freq, s.exp_thr,       s.exp_attack,         s.exp_release,
                           s.exp_hold,       s.exp_knee,      s.exp_depth,          s.cmp_thr,
                           s.cmp_attack,     s.cmp_release,   s.cmp_knee,           s.cmp_makeup};
  const double expected[] = {18, -12, 648.0741, 4.472136, 21000, -45, 2, 10, 1000, 15, -81, -45, 10, 10000, 3, 6};
  for (std::size_t i = 0; i < std::size(values); ++i) EXPECT_NEAR(values[i], expected[i], 1e-4) << i;
  EXPECT_TRUE(s.phase && s.bands[0].shelf && s.exp_hold_set && s.eq_present && s.filters_present && !s.dyn_on);
  EXPECT_EQ(s.filters[0].type, 2);
  EXPECT_EQ(s.filters[1].type, 1);
  EXPECT_EQ(s.sc_filter_type, 0);
  EXPECT_EQ(s.sc_source, 2);

  const auto expander = [](double v) { return clip(format_text("Exp Ratio %.9f", v)).exp_ratio; };
  const auto compressor = [](double v) { return clip(format_text("Cmp Ratio %.9f", v)).cmp_ratio; };
  const std::pair<double, double> expander_points[] = {
      {0, 1}, {0.3072915, std::numbers::sqrt3}, {0.614583, 3}, {0.7619935, std::sqrt(30)}, {0.909404, 10}, {1, 14.477}};
  for (const auto& [v, ratio] : expander_points) EXPECT_NEAR(expander(v), ratio, 1e-3) << v;
  const std::pair<double, double> compressor_points[] = {
      {0, 1},         {0.0859375, std::numbers::sqrt2}, {0.171875, 2}, {0.253906, 3}, {0.3359375, 4}, {0.593715, 10},
      {0.8514925, 25}};
  for (const auto& [v, ratio] : compressor_points) EXPECT_NEAR(compressor(v), ratio, 1e-6) << v;
  EXPECT_FALSE(clip("Exp Ratio 0.909405, Cmp Ratio 0.593716").exp_extrapolated);
  const ChannelStripSettings past = clip("Exp Ratio 0.90941, Cmp Ratio 0.59372");
  EXPECT_TRUE(past.exp_extrapolated && past.cmp_extrapolated);
}

TEST(ClipEffects, TheirChainAndLosses) {
  const auto written = [](const string& list, const ChannelStripPlace& place = {}) {
    return rows(channel_strip_chain(clip(list), place));
  };
  EXPECT_EQ(written(""), "");
  EXPECT_EQ(written("Exp Ratio 0, EQ Low Gain 0.50009, Phase Switch In/Out 1, Filter 1 Q 0.147441"), "");
  EXPECT_EQ(written("EQ Low Gain 0.5008, Filter 2 Slope 12/24dB nan"), "Clip Effects EQ (ReaEQ)\n") << "0.04 dB";
  EXPECT_EQ(
      written("EQ Low Gain 0.502, EQ On/Off 0, Filter 2 Slope 12/24dB 1, Input Trim 0.25"),
      "Clip Effects input trim (Volume Adjustment) | Clip Effects input trim -18.0 dB | "
      "utility/volume -17.938412 150\n"
      "- Clip Effects EQ (ReaEQ)\n"
      "Clip Effects filters (ReaEQ)\n"
      "# EQ written as Channel Strip plays it (measured 26 Sep); checked on a Clip Effects bell, which matches Pro "
      "Tools to -109 dB\n");
  const string losses =
      "Exp Ratio 1, Exp Hysteresis 0.5, Exp Hold Time 0.2, Cmp Ratio 1, Cmp Depth 0.5, Fader Volume 0.5, Sc Source 1, "
      "EQ Range 0.5, Process Order 0.2";
  const string expected =
      "Clip Effects Exp/Gate (ReaGate) | Clip Effects Exp/Gate 1:14.5\n"
      "Clip Effects Comp/Lim (ReaComp) | Clip Effects Comp/Lim 42.4:1\n"
      "# expander ratio past 1:10 extrapolated (unsampled)\n"
      "# gate hysteresis not carried (its Pro Tools scale is unmeasured)\n"
      "# expander at 1:10 or more written as a gate, with Pro Tools' depth as its floor\n"
      "# compressor depth (a gain-reduction limit) not carried: ReaComp has none\n"
      "# compressor ratio past 10:1 extrapolated (unsampled)\n";
  const string closing =
      "# clip fader not carried (its scale is unmeasured)\n"
      "# processing order other than EQ, filters, dynamics not carried (written in that order)\n"
      "# EQ/Dynamics Range other than the default: gains read at the default range (unmeasured)\n";
  EXPECT_EQ(written(losses), expected + closing);
  EXPECT_EQ(
      written(losses, {.side_of_a_stereo = true}),
      expected + "# side chain All-Linked not carried: each side of the stereo pair detects on its own\n" + closing);
  EXPECT_EQ(float_of(channel_strip_chain(clip(losses), {}).stand_in.slots[0], 12), 1);
}

}  // namespace
}  // namespace frt::test

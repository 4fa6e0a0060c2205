// Dyn3's dynamics as REAPER's: which plug-in, with which numbers, and what is lost on the way.
#include "standins/dyn3.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"

namespace frt {
namespace {

using Controls = std::vector<float>;
constexpr float kKeyed = 0.0018450185F;

// knee, ratio, attack, release, gain, threshold, polarity; low and high filter: Hz, type, in; External Key
Controls comp() { return {0, 3, 0.01F, 0.08F, 0, -24, 0, 100, 1, 0, 1000, 1, 0, 0}; }
// depth, ratio, attack, release, hold, threshold, polarity, look-ahead; the filters; External Key
Controls gate() { return {-40, 100, 0.02F, 0.5F, 0.25F, -30, 0, 0, 100, 1, 0, 1000, 1, 0, 0}; }

Controls with(Controls controls, std::initializer_list<std::pair<std::size_t, float>> changes) {
  for (const auto& [index, value] : changes) controls.at(index) = value;
  return controls;
}

// An insert of a track of that many channels.
StandIn made(bool compressor, const Controls& controls, bool keyed = false, int channels = 2, int key_pair = 0) {
  InsertRecord insert;
  insert.start = 0x12345678;
  insert.controls = controls;
  const StripPins strip{channels, key_pair};
  return compressor ? dyn3_compressor(insert, strip, keyed) : dyn3_expander_gate(insert, strip, keyed);
}
StandIn comp_of(const Controls& controls, bool keyed = false, int channels = 2) {
  return made(true, controls, keyed, channels);
}
StandIn gate_of(const Controls& controls, bool keyed = false, int channels = 2) {
  return made(false, controls, keyed, channels);
}

float number(const StandInSlot& slot, std::size_t index) {
  return view_of(slot.vst_state).f32(8 + 4 * index).value_or(-1);
}

void expect_numbers(const StandInSlot& slot, const std::vector<float>& expected) {
  ASSERT_EQ(slot.vst_state.size(), 8 + 4 * expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(number(slot, i), expected[i], 1e-5F * expected[i]) << i;
  }
}

// These notes by a piece of each, and no others.
bool tells(const StandIn& out, const std::vector<std::string_view>& pieces) {
  return std::equal(out.notes.begin(), out.notes.end(), pieces.begin(), pieces.end(),
                    [](std::string_view text, std::string_view piece) { return text.find(piece) != text.npos; });
}

TEST(Dyn3, CompressorAsWorkedOutByHand) {
  const StandIn out = comp_of(with(comp(), {{0, 12}, {4, 6}, {7, 5000}, {9, 1}, {10, 200}, {12, 1}}));
  ASSERT_EQ(out.slots.size(), 1U);
  EXPECT_TRUE(out.notes.empty());
  // -23.663 dB; 2 of 99; 5.84 of 500 ms; 33.072 of 5000 ms; 5 kHz and 200 Hz of 20 kHz; +6 dB; 4.29 of 24 dB.
  expect_numbers(out.slots[0], {0.0655919F, 0.02020202F, 0.01168F, 0.0066144F, 0, 0, 0.25F, 0.01F, 0, 0, 3.16228e-8F,
                                1.9952623F, 0,           0,        0.17875F,   0, 0, 0.25F, 0,     0, 0});
  EXPECT_EQ(out.slots[0].label, "Dyn3 Compressor/Limiter (ReaComp)");
  EXPECT_EQ(out.slots[0].preset, "Dyn3 Compressor/Limiter 3:1");
}

TEST(Dyn3, BlockOfAVst) {
  const StandInSlot comp_slot = made(true, comp(), true, 2, 3).slots.at(0);
  const std::uint32_t expected[] = {0x7265636D, 0xFEED5EEF, 4, 1, 0, 2, 0,  0x100, 0,         0x200,
                                    0,          2,          1, 0, 2, 0, 92, 0,     0x00100000};
  ASSERT_EQ(comp_slot.vst_header.size(), sizeof expected);
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(view_of(comp_slot.vst_header).u32(4 * i), expected[i]) << i;
  }
  EXPECT_TRUE(view_of(comp_slot.vst_state).equals(0, "\xEF\xBE\xAD\xDE\x0D\xF0\xAD\xDE"));
  EXPECT_EQ(comp_slot.vst_record, StateBytes({0, 0, 16, 0, 0, 0}));
  EXPECT_EQ(comp_slot.vst_ident, "1919247213<5653547265636D726561636F6D700000>");

  const StandInSlot gate_slot = gate_of(gate()).slots.at(0);
  EXPECT_TRUE(view_of(gate_slot.vst_header).equals(0, "tger"));
  EXPECT_EQ(view_of(gate_slot.vst_header).u32(28), 4U);
  EXPECT_EQ(gate_slot.vst_display, "VST: ReaGate (Cockos)");
  EXPECT_EQ(gate_slot.vst_file, "reagate.dll");
  EXPECT_EQ(gate_slot.vst_ident, "1919248244<56535472656774726561676174650000>");
}

TEST(Dyn3, CompressorGainPastReaCompsIsASlotBehindIt) {
  for (const float fits : {-3.0F, 0.0F, 6.0206F}) {
    const StandIn out = comp_of(with(comp(), {{4, fits}}));
    ASSERT_EQ(out.slots.size(), 1U) << fits;
    EXPECT_NEAR(number(out.slots[0], 11), fits > 0 ? 2 : 1, 1e-5) << fits;
  }
  InsertRecord insert;
  insert.start = 0x12345678;
  insert.inactive = true;
  insert.controls = with(comp(), {{4, 6.1F}, {6, 0.5F}});
  const StandIn out = dyn3_compressor(insert, {}, false);
  ASSERT_EQ(out.slots.size(), 3U);
  EXPECT_EQ(out.slots[0].js_path, "IX/StereoPhaseInvert");
  EXPECT_EQ(out.slots[0].js_parameters, "3");
  EXPECT_EQ(out.slots[0].label, "Dyn3 Compressor/Limiter polarity (Channel Polarity Control)");
  EXPECT_EQ(out.slots[0].preset, "Dyn3 polarity");
  EXPECT_EQ(number(out.slots[1], 11), 1);
  EXPECT_EQ(out.slots[2].js_path, "utility/volume");
  EXPECT_EQ(out.slots[2].js_parameters, "6.079128 150");
  EXPECT_EQ(out.slots[2].label, "Dyn3 Compressor/Limiter gain (Volume Adjustment)");
  EXPECT_EQ(out.slots[2].preset, "Dyn3 gain +6.1 dB");
  EXPECT_EQ(comp_of(with(comp(), {{4, 200}})).slots.at(1).js_parameters, "150.000000 150");
  for (std::uint32_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(out.slots[i].bypassed);
    EXPECT_EQ(out.slots[i].fxid_seed, 0x53605678U + i);
  }
}

TEST(Dyn3, CompressorLimits) {
  for (const auto& [ratio, part] :
       {std::pair{0.5F, 0.0F}, {1.0F, 0.0F}, {50.5F, 0.5F}, {100.0F, 1.0F}, {400.0F, 1.0F}}) {
    EXPECT_EQ(number(comp_of(with(comp(), {{1, ratio}})).slots.at(0), 1), part) << ratio;
  }
  // 0.857 s are 500.5 ms of ReaComp's, 12.1 s are 5.002 s, 67.2 dB are 24.02.
  EXPECT_TRUE(comp_of(with(comp(), {{0, 67.1F}, {2, 0.856F}, {3, 12.09F}})).notes.empty());
  const StandIn past = comp_of(with(comp(), {{0, 67.2F}, {2, 0.857F}}));
  EXPECT_TRUE(tells(past, {"compressor time past", "compressor knee past"}));
  EXPECT_EQ(number(past.slots[0], 14), 1);
  EXPECT_EQ(number(past.slots[0], 2), 1);
  EXPECT_TRUE(tells(comp_of(with(comp(), {{3, 12.1F}})), {"compressor time past"}));
}

TEST(Dyn3, ExternalKey) {
  const Controls key_comp = with(comp(), {{13, 0.5F}}), key_gate = with(gate(), {{14, 1}, {0, -100}, {1, 2}, {4, 0}});
  // Wired, but Dyn3 doesn't listen.
  EXPECT_EQ(number(comp_of(comp(), true).slots.at(0), 8), 0);
  EXPECT_EQ(number(gate_of(gate(), true).slots.at(0), 7), 0);
  // Wired.
  EXPECT_EQ(number(comp_of(key_comp, true, 1).slots.at(0), 8), kKeyed);
  EXPECT_TRUE(comp_of(key_comp, true, 1).notes.empty());
  EXPECT_EQ(number(gate_of(with(key_gate, {{1, 60}}), true, 6).slots.at(0), 7), kKeyed);
  EXPECT_EQ(gate_of(key_gate, true).slots.at(0).js_parameters, "-30.000 2.0000 0 1 2 20.0000 500.0000");
  // Not wired, on stereo: as silent as in Pro Tools, whatever the ratio.
  const StandIn silent = comp_of(key_comp), shut = gate_of(key_gate);
  EXPECT_EQ(number(silent.slots.at(0), 8), kKeyed);
  EXPECT_TRUE(tells(silent, {"its gain still applies"}));
  EXPECT_EQ(shut.slots.at(0).label, "Dyn3 Expander/Gate (ReaGate)");
  EXPECT_EQ(shut.slots.at(0).preset, "Dyn3 Expander/Gate 2:1");
  EXPECT_EQ(number(shut.slots.at(0), 7), kKeyed);
  EXPECT_TRUE(tells(shut, {"so it stays shut at its range"}));
  // Not wired, elsewhere: it hears itself.
  for (const int channels : {1, 6}) {
    const StandIn open = comp_of(key_comp, false, channels), expands = gate_of(key_gate, false, channels);
    EXPECT_EQ(number(open.slots.at(0), 8), 0);
    EXPECT_TRUE(tells(open, {"on a track wider than stereo: Pro Tools hears silence"}));
    EXPECT_EQ(expands.slots.at(0).js_parameters, "-30.000 2.0000 0 0 2 20.0000 500.0000");
    EXPECT_TRUE(tells(expands, {"on a track wider than stereo: Pro Tools keeps it shut"}));
  }
}

TEST(Dyn3, GateAsWorkedOutByHand) {
  const StandIn out = gate_of(with(gate(), {{7, 1}, {8, 15000}, {10, 1}, {11, 400}, {13, 1}}));
  ASSERT_EQ(out.slots.size(), 1U);
  // -30 dB; 40 of 500 ms; 275 of 5000 ms; 8 ms of 1 s; 250 of 1000 ms; 15 kHz and 400 Hz of 20 kHz; -40 dB.
  expect_numbers(out.slots[0], {0.0316227766F, 0.08F, 0.055F, 0.008F, 0.25F, 0.75F,     0.02F, 0, 0, 0.01F, 0.99F,
                                3.16228e-8F,   1,     0,      0,      0,     0.543307F, 0,     0, 0, 0});
  EXPECT_TRUE(tells(out, {"2 ms pre-open"}));
  EXPECT_EQ(out.slots[0].preset, "Dyn3 Expander/Gate 100:1");

  // As shallow as this, times are as they stand: 20 of 500 ms, 500 of 5000 ms.
  const StandInSlot shallow = gate_of(with(gate(), {{0, -10}})).slots.at(0);
  EXPECT_NEAR(number(shallow, 1), 0.04F, 1e-6);
  EXPECT_NEAR(number(shallow, 2), 0.1F, 1e-6);
  EXPECT_NEAR(number(shallow, 9), 0.316228F, 1e-5);

  EXPECT_TRUE(gate_of(with(gate(), {{2, 0.5F}, {3, 5}, {4, 1}})).notes.empty());
  for (const auto& [control, past] : {std::pair{2U, 0.6F}, {3U, 5.1F}, {4U, 1.1F}}) {
    EXPECT_TRUE(tells(gate_of(with(gate(), {{control, past}})), {"gate time past"})) << control;
  }
}

TEST(Dyn3, RatioDecidesBetweenExpanderAndGate) {
  const StandIn expander = gate_of(with(gate(), {{0, -100}, {1, 9.98F}, {4, 0}, {6, 1}}));
  ASSERT_EQ(expander.slots.size(), 2U);
  EXPECT_EQ(expander.slots[0].label, "Dyn3 Expander/Gate polarity (Channel Polarity Control)");
  EXPECT_EQ(expander.slots[1].js_path, "sstillwell/expander");
  EXPECT_EQ(expander.slots[1].js_parameter_count, 7);
  EXPECT_EQ(expander.slots[1].js_parameters, "-30.000 9.9800 0 0 2 20.0000 500.0000");
  EXPECT_EQ(expander.slots[1].label, "Dyn3 Expander/Gate (Downward Expander)");
  EXPECT_EQ(expander.slots[1].preset, "Dyn3 Expander/Gate 9.98:1");
  EXPECT_TRUE(expander.notes.empty());

  EXPECT_TRUE(tells(gate_of(with(gate(), {{1, 9.99F}})), {"expander at 1:10 or more"}));
  EXPECT_TRUE(tells(gate_of(with(gate(), {{1, 49.9F}})), {"expander at 1:10 or more"}));
  EXPECT_TRUE(gate_of(with(gate(), {{1, 50}})).notes.empty());
  // A low-pass at 19 kHz, a high-pass at 500 Hz, a low-pass that passes all.
  const Controls lossy = with(gate(), {{0, -99}, {1, 2}, {4, 0.0005F}, {7, 1}, {8, 19000}, {11, 500}});
  const std::vector<std::string_view> rest = {"expander depth", "expander hold", "Dyn3 look-ahead not carried"};
  std::vector<std::string_view> all = rest;
  all.emplace_back("expander side-chain filter");
  EXPECT_TRUE(tells(gate_of(with(lossy, {{10, 1}})), all));
  EXPECT_TRUE(tells(gate_of(with(lossy, {{13, 1}})), all));
  EXPECT_TRUE(tells(gate_of(with(lossy, {{8, 20000}, {10, 1}})), rest));
}

TEST(Dyn3, BandFiltersOfTheSideChainAreToldOnce) {
  const StandIn out = comp_of(with(comp(), {{8, 0.4F}, {9, 1}, {11, 0}, {12, 1}}));
  EXPECT_TRUE(tells(out, {"Dyn3 side-chain band filter"}));
  EXPECT_EQ(number(out.slots.at(0), 6), 1);
  EXPECT_EQ(number(out.slots.at(0), 7), 0);
  EXPECT_TRUE(tells(gate_of(with(gate(), {{9, 0}, {10, 1}})), {"Dyn3 side-chain band filter"}));
  // Past the top a low-pass lets everything through, a high-pass nothing.
  const StandIn past = comp_of(with(comp(), {{7, 30000}, {9, 1}, {10, 30000}, {12, 1}}));
  EXPECT_EQ(number(past.slots.at(0), 6), 1);
  EXPECT_EQ(number(past.slots.at(0), 7), 1.5F);
}

// Every value that a hostile list can bring into every control, and every length of it.
TEST(Dyn3, NoNumberOfAHostileListLeavesTheRange) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  for (const bool compressor : {true, false}) {
    const Controls whole = compressor ? with(comp(), {{9, 1}, {12, 1}}) : with(gate(), {{10, 1}, {13, 1}});
    const auto check = [&](const Controls& controls, bool high_pass_free) {
      const StandIn out = made(compressor, controls);
      ASSERT_FALSE(out.slots.empty());
      for (const StandInSlot& slot : out.slots) {
        for (const std::string* text : {&slot.js_parameters, &slot.preset}) {
          EXPECT_EQ(text->find("nan"), std::string::npos) << *text;
          EXPECT_EQ(text->find("inf"), std::string::npos) << *text;
        }
        for (std::size_t i = 0; i < 21 && !slot.vst_state.empty(); ++i) {
          if (i == (compressor ? 7U : 6U) && high_pass_free) {
            EXPECT_LT(std::abs(number(slot, i)), 1e30F);
          } else {
            EXPECT_TRUE(number(slot, i) >= 0 && number(slot, i) <= 2) << i << ": " << number(slot, i);
          }
        }
      }
    };
    for (std::size_t control = 0; control < whole.size(); ++control) {
      for (const float value :
           {kInf, -kInf, std::numeric_limits<float>::quiet_NaN(), 3e38F, 1e30F, 9e29F, -9e29F, -1.0F, 0.0F, 1e-40F}) {
        check(with(whole, {{control, value}}), control == (compressor ? 10U : 11U));
      }
      check({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(control)}, false);
    }
    check(Controls(15, 9e29F), true);
    check(Controls(15, -9e29F), true);
    check(Controls(15, kInf), false);
  }
}

}  // namespace
}  // namespace frt

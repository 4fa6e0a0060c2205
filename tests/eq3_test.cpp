// EQ3 as ReaEQ: what its controls mean, the slots, and that the curve is the analog one.
#include "standins/eq3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "standins/peak_q.h"
#include "support/eq_curve.h"

namespace frt {
namespace {

struct Scene {
  double rate;
  EqFitter fitter{rate};
  Eq3Counts counts = {};

  StandIn stand_in(const char* signature, std::vector<float> controls) {
    InsertRecord insert;
    insert.signature = signature;
    insert.controls = std::move(controls);
    insert.start = 0x1A000010;
    return eq3_stand_in(insert, rate, fitter, counts);
  }
};

// Gain, frequency, Q, slope, type.
std::vector<float> one_band(float gain, float freq, float q, float slope, float type) {
  return {0, gain, freq, q, slope, type, 0, 0};
}

TEST(Eq3, CurvesAreTheAnalogOnesUpToTheTop) {
  struct Row {
    float rate, gain, freq, q, slope, type;
    double within;
  };
  const std::vector<Row> rows = {
      {44100, 9, 12000, 1, 0, 3, 0.15},      {44100, -18, 18000, 6, 0, 3, 0.15}, {44100, 12, 20000, 2, 0, 4, 0.15},
      {44100, -12, 300, 2, 0, 1, 0.15},      {44100, 0, 6400, 1, 1, 5, 0.5},     {44100, 0, 9000, 1, 2, 5, 0.5},
      {44100, 0, 15000, 1, 0, 5, 0.5},       {44100, 0, 300, 1, 2, 0, 0.05},     {48000, 0, 12000, 1, 3, 5, 0.5},
      {192000, 12, 20000, 0.7F, 0, 4, 0.05}, {96000, 6, 40, 0.1F, 0, 3, 0.05},
  };
  for (const Row& row : rows) {
    Scene scene{row.rate};
    const auto controls = one_band(row.gain, row.freq, row.q, row.slope, row.type);
    const StandIn stand_in = scene.stand_in("Digi1be3", controls);
    const EqFilter filter = eq3_settings(Eq3Kind::kOneBand, controls).filters.front();
    const double distance = test::worst_distance(stand_in, filter, row.rate, false);
    EXPECT_LE(distance, row.within) << "type " << row.type << " at " << row.freq << " of " << row.rate;
    if (scene.counts.fitted_bands > 0) {
      EXPECT_NEAR(distance, scene.counts.worst_error, 1e-3);
    }
    EXPECT_TRUE(stand_in.notes.empty());
    for (const StandInSlot& slot : stand_in.slots) {
      for (const ReaEqBand& band : test::decoded_bands(slot.vst_state)) {
        EXPECT_GE(band.frequency, 10);
        EXPECT_LE(band.frequency, 0.49 * row.rate);
        if (band.is_shelf()) {
          EXPECT_GE(band.bandwidth, 1 / std::sqrt(1.2) - 1e-12);
        }
      }
    }
  }
}

// FERRITE_EQ3="rate gain freq q slope type" prints one filter of a 1-Band: frequency, target, result.
TEST(Eq3, PrintsTheCurveThatIsAskedFor) {
  const char* asked = std::getenv("FERRITE_EQ3");
  float rate = 0, gain = 0, freq = 0, q = 0, slope = 0, type = 0;
  if (!asked || std::sscanf(asked, "%f %f %f %f %f %f", &rate, &gain, &freq, &q, &slope, &type) != 6) {
    GTEST_SKIP() << "nobody asks";
  }
  Scene scene{rate};
  const auto controls = one_band(gain, freq, q, slope, type);
  const auto filter = eq3_settings(Eq3Kind::kOneBand, controls).filters.front();
  std::printf("worst %.4f\n", test::worst_distance(scene.stand_in("Digi1be3", controls), filter, rate, true));
}

TEST(Eq3, SevenBandSlotsInOrderWithLabelsAndSeeds) {
  std::vector<float> controls(38, 0.0F);
  controls[2] = 3, controls[3] = -1, controls[4] = 0.5F;
  controls[5] = 1, controls[6] = 1, controls[8] = 2, controls[9] = 100;      // high-pass, 18 dB/oct
  controls[32] = 1, controls[33] = 1, controls[34] = 1, controls[36] = 120;  // low-pass, 6 dB/oct
  controls[14] = 1, controls[11] = 15, controls[13] = 9;                     // a shelf past both limits, out
  controls[30] = 4;
  Scene scene{192000};
  const StandIn stand_in = scene.stand_in("Digi47e3", controls);
  ASSERT_EQ(stand_in.slots.size(), 4U);
  const StandInSlot &polarity = stand_in.slots[0], &eq = stand_in.slots[1], &high = stand_in.slots[2],
                    &low = stand_in.slots[3];
  EXPECT_EQ(polarity.label, "EQ3 7-Band polarity (Channel Polarity Control)");
  EXPECT_EQ(eq.label, "EQ3 7-Band (ReaEQ)");
  EXPECT_EQ(eq.preset, "EQ3 7-Band");
  EXPECT_EQ(high.label, "EQ3 7-Band high-pass 6 of 18 dB/oct (Simple 1-Pole Filter)");
  EXPECT_EQ(high.preset, "EQ3 high-pass, first-order part");
  EXPECT_EQ(low.label, "EQ3 7-Band low-pass 6 dB/oct (Simple 1-Pole Filter)");
  const std::uint32_t base = 0x53540010;
  EXPECT_EQ(polarity.fxid_seed, base);
  EXPECT_EQ(eq.fxid_seed, base + 1);
  EXPECT_EQ(high.fxid_seed, base + 900);
  EXPECT_EQ(low.fxid_seed, base + 930);
  EXPECT_EQ(scene.counts.first_order_slots, 2);

  const auto bands = test::decoded_bands(eq.vst_state);
  ASSERT_EQ(bands.size(), 6U);  // a 6 dB/oct filter has none
  EXPECT_EQ(bands[0].type, ReaEqType::kHighPass);
  EXPECT_EQ(bands[1].type, ReaEqType::kLowShelf);
  EXPECT_FALSE(bands[1].enabled);
  EXPECT_NEAR(bands[1].gain, 12, 1e-9);
  EXPECT_EQ(bands[1].frequency, 20);
  EXPECT_EQ(bands[5].type, ReaEqType::kBand);
  EXPECT_EQ(bands[5].frequency, 1800);
  EXPECT_EQ(eq.vst_state.size(), 8U + 33U * 6U + 32U);
  EXPECT_NEAR(20 * std::log10(view_of(eq.vst_state).f64(8 + 33 * 6 + 8).value_or(0)), 2, 1e-9);
}

TEST(Eq3, OneBandTypesAreHeldAndNotchesStandTwice) {
  const auto filter = [](float type) {
    return eq3_settings(Eq3Kind::kOneBand, one_band(6, 1000, 2, 1.5F, type)).filters.front();
  };
  EXPECT_EQ(filter(7).side, 0);
  EXPECT_EQ(filter(7).kind, EqFilter::Kind::kPass);
  EXPECT_EQ(filter(-1).side, 1);
  EXPECT_EQ(filter(0).order, 3);  // 1.5 rounds up
  EXPECT_EQ(filter(2.4F).kind, EqFilter::Kind::kNotch);
  Scene scene{44100};
  const auto bands = test::decoded_bands(scene.stand_in("Digi1be3", one_band(6, 20000, 2, 0, 2)).slots[0].vst_state);
  ASSERT_EQ(bands.size(), 2U);
  EXPECT_EQ(bands[0], bands[1]);
  EXPECT_EQ(bands[0].type, ReaEqType::kNotch);
  EXPECT_EQ(scene.counts.fitted_bands, 0);
}

TEST(Eq3, PeaksHaveTheMeasuredQ) {
  EXPECT_DOUBLE_EQ(peak_q(18, 5), 5 * 0.3364);
  EXPECT_DOUBLE_EQ(peak_q(-40, 20), 10 * 0.9105);
  EXPECT_DOUBLE_EQ(peak_q(0, 5), 5);
  EXPECT_NEAR(peak_q(0.5, 5), 5 * (1 + 0.0074 / 2), 1e-12);
  EXPECT_NEAR(peak_q(12.5, 5.25), 5.25 * (0.9686 + 0.8632 + 0.9652 + 0.8710) / 4, 1e-12);
  EXPECT_DOUBLE_EQ(peak_q(1, 0.01), 0.1);
}

TEST(Eq3, WhatNoControlHoldsMakesNoStrangeNumber) {
  constexpr float kInf = std::numeric_limits<float>::infinity(), kNan = std::numeric_limits<float>::quiet_NaN();
  for (const float value : {kInf, -kInf, kNan, 1e31F, 9e29F, -9e29F, -1.0F, 0.0F, 1e-30F}) {
    Scene scene{44100};
    std::vector<float> controls(38, value);
    for (const std::size_t in : {6U, 10U, 15U, 19U, 23U, 27U, 33U}) controls[in] = 1;
    const StandIn stand_in = scene.stand_in("Digi47e3", controls);
    for (const StandInSlot& slot : stand_in.slots) {
      for (const ReaEqBand& band : test::decoded_bands(slot.vst_state)) {
        EXPECT_TRUE(std::isfinite(band.frequency) && std::isfinite(band.gain) && std::isfinite(band.bandwidth));
        EXPECT_TRUE(band.frequency > 0 && band.bandwidth > 0) << value;
      }
    }
  }
}

TEST(Eq3, AFilterMetAgainCountsAgain) {
  Scene scene{44100};
  const auto first = scene.stand_in("Digi1be3", one_band(9, 15000, 1, 0, 3));
  const Eq3Counts once = scene.counts;
  const auto second = scene.stand_in("Digi1be3", one_band(9, 15000, 1, 0, 3));
  EXPECT_EQ(first.slots[0].vst_state, second.slots[0].vst_state);
  EXPECT_EQ(once.fitted_bands, 1);
  EXPECT_EQ(scene.counts.fitted_bands, 2);
  EXPECT_EQ(scene.counts.extra_bands, 2 * once.extra_bands);
}

}  // namespace
}  // namespace frt

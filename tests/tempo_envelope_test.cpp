// The tempo envelope: steps, meter changes, drawn ramps.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/text.h"
#include "mix/tempo_points.h"

namespace frt {
namespace {

constexpr double kQuarter = 960000;

std::string dump(const std::vector<TempoPoint>& points) {
  std::string out;
  for (const TempoPoint& p : points) {
    out += format_text("%.4f:%.4f/%d", p.time, p.bpm, p.shape);
    if (p.flags) out += format_text("(%u/%u,%d)", p.code & 0xFFFF, p.code >> 16, p.flags);
    out += " ";
  }
  return out;
}

MeterEvent meter(double quarters, std::uint32_t numerator, std::uint32_t denominator) {
  return {quarters * kQuarter, 1, numerator, denominator};
}

// 60 BPM, then 120 from beat 4 on: 4 s, then half-second beats.
TempoMap two_tempos() {
  TempoMap map;
  map.events = {{0, 60}, {4 * kQuarter, 120}};
  map.index_events();
  return map;
}

TEST(TempoPoints, TempoAndMeterChanges) {
  const TempoMap map = two_tempos();
  TempoMap none;
  none.session_tempo = 60;
  TempoMap late;  // its first tempo lies at beat 4
  late.events = {{4 * kQuarter, 60}, {8 * kQuarter, 120}};
  const struct {
    const char* what;
    const TempoMap& map;
    std::vector<MeterEvent> meters;
    const char* points;
  } cases[] = {
      {"a meter alone", none, {meter(0, 4, 4), meter(2, 3, 4)}, "0.0000:60.0000/1(4/4,1) 2.0000:60.0000/1(3/4,3) "},
      {"out of order, between points, with the tempo in force",
       map,
       {meter(0, 4, 4), meter(6, 6, 8), meter(2, 3, 4)},
       "0.0000:60.0000/1(4/4,1) 2.0000:60.0000/1(3/4,3) 4.0000:120.0000/1 5.0000:120.0000/1(6/8,3) "},
      {"on the first point", map, {meter(0, 4, 4), meter(0, 3, 4)}, "0.0000:60.0000/1(3/4,3) 4.0000:120.0000/1 "},
      {"on a point, and repeats are no changes",
       map,
       {meter(0, 4, 4), meter(1, 4, 4), meter(2, 3, 4), meter(3, 3, 4), meter(4, 4, 4)},
       "0.0000:60.0000/1(4/4,1) 2.0000:60.0000/1(3/4,3) 4.0000:120.0000/1(4/4,3) "},
      {"the last of two at one place",
       map,
       {meter(0, 4, 4), meter(2, 3, 4), meter(2, 5, 4)},
       "0.0000:60.0000/1(4/4,1) 2.0000:60.0000/1(5/4,3) 4.0000:120.0000/1 "},
      {"ahead of the first tempo",
       late,
       {meter(0, 4, 4), meter(2, 3, 4)},
       "0.0000:60.0000/1(4/4,1) 2.0000:60.0000/1(3/4,3) 4.0000:120.0000/1 "},
  };
  for (const auto& one : cases) {
    const TempoPoints made = make_tempo_points({one.map, 48000}, one.meters, false);
    EXPECT_EQ(dump(made.points), one.points) << one.what;
    EXPECT_EQ(made.counts.tempo_changes, static_cast<int>(one.map.events.size())) << one.what;
  }
}

// ---- drawn ramps ----

std::vector<TempoPoint> steps(const std::vector<std::pair<double, double>>& times) {
  std::vector<TempoPoint> points;
  for (const auto& [time, bpm] : times) points.push_back({time, bpm, 0, TempoPoint::kSquare, TempoPoint::kPlain});
  return points;
}

TEST(TempoRamps, AStaircaseBecomesALineThroughItsMiddles) {
  const TempoRamps solved = solve_tempo_ramps(steps({{0, 100}, {10, 110}, {11, 120}, {12, 130}, {30, 140}}), 48000);
  EXPECT_EQ(dump(solved.points),
            "0.0000:100.0000/1 9.5000:100.0000/0 10.5000:110.0000/0 11.5000:120.0000/0 11.7500:115.0000/0 "
            "12.0000:130.0000/1 30.0000:140.0000/1 ");
  EXPECT_EQ(solved.written, 1);
  EXPECT_EQ(solved.left, 0);
  EXPECT_LT(solved.point_error, 1e-9);
  EXPECT_NEAR(solved.inner_error, 1.25 / 110, 1e-9);  // at the first step's edge
}

TEST(TempoRamps, WhatIsAStaircase) {
  const struct {
    const char* what;
    std::vector<std::pair<double, double>> steps;
    int written, left;
  } cases[] = {
      {"two steps are none", {{0, 100}, {10, 110}, {11, 120}, {30, 130}}, 0, 0},
      {"steps of two seconds", {{0, 100}, {2, 110}, {4, 120}, {6, 130}}, 1, 0},
      {"longer ones are tempo changes", {{0, 100}, {2.1, 110}, {4.2, 120}, {6.3, 130}}, 0, 0},
      {"up and down", {{0, 100}, {1, 110}, {2, 105}, {3, 115}}, 0, 0},
      {"a tempo that repeats", {{0, 100}, {1, 110}, {2, 110}, {3, 120}}, 0, 0},
      {"two at one moment", {{0, 100}, {1, 110}, {1, 120}, {2, 130}}, 0, 0},
      {"a shorter last step joins", {{0, 100}, {1, 110}, {2, 120}, {2.5, 130}, {3, 140}}, 1, 0},
      {"a last tempo no line can reach", {{0, 100}, {10, 110}, {11, 120}, {12, 400}, {30, 140}}, 0, 1},
      {"up, then down", {{0, 100}, {1, 110}, {2, 120}, {3, 130}, {4, 120}, {5, 110}, {6, 100}}, 2, 0},
  };
  for (const auto& one : cases) {
    const auto input = steps(one.steps);
    const TempoRamps solved = solve_tempo_ramps(input, 48000);
    EXPECT_EQ(solved.written, one.written) << one.what;
    EXPECT_EQ(solved.left, one.left) << one.what;
    if (one.written == 0) {
      EXPECT_EQ(dump(solved.points), dump(input)) << one.what;
    }
  }
}

// Beats up to a moment, counted in small slices.
double beats_until(const std::vector<TempoPoint>& points, double end) {
  double beats = 0;
  for (std::size_t i = 0; i < points.size() && points[i].time < end; ++i) {
    const double next = i + 1 < points.size() ? points[i + 1].time : end;
    const double stop = std::min(next, end);
    const double length = stop - points[i].time;
    if (length <= 0) continue;
    double tempo_at_stop = points[i].bpm;
    if (points[i].shape == TempoPoint::kLinear && i + 1 < points.size()) {
      tempo_at_stop += (points[i + 1].bpm - points[i].bpm) * length / (next - points[i].time);
    }
    beats += (points[i].bpm + tempo_at_stop) / 2 * length / 60;
  }
  return beats;
}

TEST(TempoRamps, PastARampNothingMoves) {
  for (const double last : {0.1, 0.05, 0.003}) {
    std::vector<std::pair<double, double>> drawn = {{0, 90}, {3, 95}};
    for (int i = 0; i < 200; ++i) drawn.push_back({10 + i * 0.1, 100 + i * 0.4 + 3 * std::sin(i * 0.02)});
    drawn.push_back({10 + 199 * 0.1 + last, 185});
    drawn.push_back({60, 100});
    const auto input = steps(drawn);
    const TempoRamps solved = solve_tempo_ramps(input, 48000);
    ASSERT_EQ(solved.written, 1) << last;
    EXPECT_NE(dump(solved.points), dump(input));
    for (const double moment : {1.0, 5.0, 45.0, 60.0, 70.0}) {
      EXPECT_NEAR(beats_until(solved.points, moment), beats_until(input, moment), 1e-6) << last << " " << moment;
    }
    EXPECT_LE(solved.point_error, 1.0 / 48000);
    EXPECT_GT(solved.inner_error, 0);
  }
}

TEST(TempoRamps, AMeterChangeOnARampTakesTheLinesTempo) {
  TempoMap map;
  map.events = {{0, 60}, {10 * kQuarter, 120}, {12 * kQuarter, 130}};
  // Steps of about a second behind 10 s of 60 BPM.
  map.events.push_back({12 * kQuarter + 130.0 / 60 * kQuarter, 140});
  map.index_events();
  EXPECT_EQ(make_tempo_points({map, 48000}, {}, false).counts.ramps_written, 0) << "only if asked for";
  const TempoPoints made = make_tempo_points({map, 48000}, {meter(0, 4, 4), meter(10.5, 3, 4), meter(11, 4, 4)}, true);
  ASSERT_EQ(made.counts.ramps_written, 1);
  // The line runs from 60 at 9.5 s to 120 at 10.5 s; beat 10.5 lies at 10.25 s. Beat 11 is the point at 10.5 s.
  EXPECT_EQ(dump({made.points.begin(), made.points.begin() + 4}),
            "0.0000:60.0000/1(4/4,1) 9.5000:60.0000/0 10.2500:105.0000/0(3/4,3) 10.5000:120.0000/0(4/4,3) ");
}

}  // namespace
}  // namespace frt

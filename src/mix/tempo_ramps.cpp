#include "mix/tempo_ramps.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace frt {
namespace {

constexpr double kLongestStep = 2.0;              // seconds
constexpr double kTooLong = 1.02, kShort = 0.98;  // of the first step's length
constexpr double kRegular = 0.02;                 // of the first step's length
constexpr double kShortestSpan = 1e-9;            // seconds
constexpr double kLeastTempo = 1.0, kMostTempo = 1000.0;
constexpr double kTempoTolerance = 0.25;  // of the staircase's tempo

int sign_of(double x) { return (x > 0.0) - (x < 0.0); }

// The last index of the staircase that begins at `i`; `i` itself if none does.
std::size_t end_of_staircase(const std::vector<TempoPoint>& a, std::size_t i) {
  const std::size_t n = a.size();
  if (i + 2 >= n) return i;
  const double d = a[i + 1].time - a[i].time;
  const int direction = sign_of(a[i + 1].bpm - a[i].bpm);
  if (!(d > 0.0) || d > kLongestStep || direction == 0) return i;
  std::size_t e = i + 1;
  while (e + 1 < n) {
    const double step = a[e + 1].time - a[e].time;
    if (step > kTooLong * d || step <= 0.0 || sign_of(a[e + 1].bpm - a[e].bpm) != direction) break;
    ++e;
    if (step < kShort * d) break;  // one shorter step may end the staircase
  }
  return e;
}

// Beats from the first knot on, along a tempo that holds from knot to knot, or glides between them.
class BeatCount {
 public:
  enum class Between { kHold, kGlide };
  BeatCount(std::size_t knots, Between between) : between_(between) { knots_.reserve(knots); }

  // Knots come in order of time.
  void add(double time, double bpm) {
    double beats = 0.0;
    if (!knots_.empty()) {
      const Knot& last = knots_.back();
      const double mean = between_ == Between::kHold ? last.bpm : (last.bpm + bpm) / 2.0;
      beats = last.beats + (time - last.time) * mean / 60.0;
    }
    knots_.push_back({time, bpm, beats});
  }

  double at(double time) const {
    const auto after = std::upper_bound(knots_.begin(), knots_.end(), time,
                                        [](double position, const Knot& knot) { return position < knot.time; });
    if (after == knots_.begin()) return 0.0;
    const Knot& knot = *(after - 1);
    double mean = knot.bpm;
    if (between_ == Between::kGlide && after != knots_.end()) {
      const double slope = (after->bpm - knot.bpm) / (after->time - knot.time);
      mean = knot.bpm + slope * (time - knot.time) / 2.0;
    }
    return knot.beats + (time - knot.time) * mean / 60.0;
  }

 private:
  struct Knot {
    double time, bpm, beats;
  };
  Between between_;
  std::vector<Knot> knots_;
};

struct Ramp {
  std::vector<TempoPoint> points;
  double point_error = 0, inner_error = 0;
};

// The staircase a[i..e] as linear points that hold its beats; nothing if the tempos needed are no tempos.
std::optional<Ramp> solve_staircase(const std::vector<TempoPoint>& a, std::size_t i, std::size_t e) {
  const double d = a[i + 1].time - a[i].time;
  const TempoPoint& last_step = a[e];

  // A ramp begins half a step ahead of its first step, at the tempo before it, so that the line runs through
  // the middle of the steps.
  TempoPoint start{a[i].time - d / 2.0, a[i > 0 ? i - 1 : 0].bpm, 0, TempoPoint::kLinear, TempoPoint::kPlain};
  if (i > 0 && a[i - 1].time >= start.time) {
    start.time = a[i].time;
    start.bpm = a[i].bpm;
  }

  BeatCount staircase(e - i + 2, BeatCount::Between::kHold);
  staircase.add(start.time, start.bpm);
  for (std::size_t k = i; k <= e; ++k) staircase.add(a[k].time, a[k].bpm);

  std::size_t last_regular = i;
  for (std::size_t k = i; k < e; ++k) {
    if (std::fabs(a[k + 1].time - a[k].time - d) <= kRegular * d) last_regular = k;
  }

  // Each anchor's tempo makes the trapezoid before it hold the staircase's beats.
  Ramp ramp;
  ramp.points.push_back(start);
  double beats_before = 0.0;
  for (std::size_t k = i; k <= last_regular; ++k) {
    const double middle = (a[k].time + a[k + 1].time) / 2.0;
    if (!(middle < last_step.time)) continue;
    const TempoPoint& previous = ramp.points.back();
    const double span = middle - previous.time;
    if (span <= kShortestSpan) return std::nullopt;
    const double beats = staircase.at(middle);
    const double bpm = (beats - beats_before) * 120.0 / span - previous.bpm;
    if (!(bpm >= kLeastTempo && bpm <= kMostTempo)) return std::nullopt;
    if (std::fabs(bpm - a[k].bpm) > kTempoTolerance * a[k].bpm) return std::nullopt;
    ramp.points.push_back({middle, bpm, 0, TempoPoint::kLinear, TempoPoint::kPlain});
    beats_before = beats;
  }

  const TempoPoint last_anchor = ramp.points.back();
  const double half_tail = (last_step.time - last_anchor.time) / 2.0;
  std::size_t tail = 0;  // index of the tail point; 0, where the start stands, for none
  if (half_tail > kShortestSpan) {
    const double beats = staircase.at(last_step.time) - beats_before;
    const double bpm = (beats * 120.0 / half_tail - last_anchor.bpm - last_step.bpm) / 2.0;
    if (!(bpm > kLeastTempo && bpm < kMostTempo)) return std::nullopt;
    tail = ramp.points.size();
    ramp.points.push_back({last_anchor.time + half_tail, bpm, 0, TempoPoint::kLinear, TempoPoint::kPlain});
  }
  ramp.points.push_back({last_step.time, last_step.bpm, 0, TempoPoint::kSquare, TempoPoint::kPlain});

  BeatCount line(ramp.points.size(), BeatCount::Between::kGlide);
  for (const TempoPoint& point : ramp.points) line.add(point.time, point.bpm);
  const auto error_at = [&](double time, double bpm) {
    return std::fabs(line.at(time) - staircase.at(time)) * 60.0 / bpm;
  };
  for (std::size_t k = 0; k < ramp.points.size(); ++k) {
    if (k > 0 && k == tail) continue;
    ramp.point_error = std::max(ramp.point_error, error_at(ramp.points[k].time, ramp.points[k].bpm));
  }
  for (std::size_t k = i; k <= e; ++k) {
    for (const double time : {a[k].time, a[k].time + d / 2.0}) {
      ramp.inner_error = std::max(ramp.inner_error, error_at(std::min(time, last_step.time), a[k].bpm));
    }
  }
  return ramp;
}

}  // namespace

TempoRamps solve_tempo_ramps(const std::vector<TempoPoint>& steps, double sample_rate) {
  const double one_sample = 1.0 / (sample_rate > 0.0 ? sample_rate : 48000.0);
  TempoRamps solved;
  solved.points.reserve(steps.size());
  const auto append = [&solved](std::span<const TempoPoint> points) {
    solved.points.insert(solved.points.end(), points.begin(), points.end());
  };
  for (std::size_t i = 0; i < steps.size();) {
    const std::size_t e = end_of_staircase(steps, i);
    if (e < i + 2) {
      solved.points.push_back(steps[i]);
      ++i;
      continue;
    }
    const auto ramp = solve_staircase(steps, i, e);
    if (ramp && ramp->point_error <= one_sample) {
      solved.point_error = std::max(solved.point_error, ramp->point_error);
      solved.inner_error = std::max(solved.inner_error, ramp->inner_error);
      append(ramp->points);
      ++solved.written;
    } else {
      append(std::span(steps).subspan(i, e - i + 1));
      ++solved.left;
    }
    i = e + 1;
  }
  return solved;
}

}  // namespace frt

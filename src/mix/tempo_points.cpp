#include "mix/tempo_points.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace frt {
namespace {

// A meter change this close to a point (seconds) rides on it.
constexpr double kSameMoment = 1e-7;

std::uint32_t meter_code(const MeterEvent& meter) { return meter.denominator << 16 | meter.numerator; }

double bpm_in_force(const TempoMap& tempo, double tick) {
  if (tempo.events.empty()) return tempo.session_tempo;
  const auto after = std::upper_bound(tempo.events.begin(), tempo.events.end(), tick,
                                      [](double position, const TempoEvent& event) { return position < event.tick; });
  return after == tempo.events.begin() ? tempo.events.front().bpm : (after - 1)->bpm;
}

using Points = std::vector<TempoPoint>;

TempoPoint* point_at(Points& points, double time) {
  const auto found = std::lower_bound(points.begin(), points.end(), time, [](const TempoPoint& point, double moment) {
    return moment - point.time > kSameMoment;
  });
  return found != points.end() && found->time - time <= kSameMoment ? &*found : nullptr;
}

Points::iterator first_later(Points& points, double time) {
  return std::upper_bound(points.begin(), points.end(), time,
                          [](double moment, const TempoPoint& point) { return moment < point.time; });
}

// A new point between two: on a ramp it takes the line's own tempo at its moment, and the line goes on.
void glide(const TempoPoint& before, const TempoPoint& after, TempoPoint& point) {
  if (before.shape != TempoPoint::kLinear) return;
  point.bpm = before.bpm + (after.bpm - before.bpm) * (point.time - before.time) / (after.time - before.time);
  point.shape = TempoPoint::kLinear;
}

// The points on either side of a moment; null where there is none.
struct Neighbours {
  const TempoPoint* before = nullptr;
  const TempoPoint* after = nullptr;

  void consider(Points& points, double time) {
    const auto later = first_later(points, time);
    if (later != points.end() && (!after || later->time < after->time)) after = &*later;
    if (later != points.begin() && (!before || (later - 1)->time > before->time)) before = &*(later - 1);
  }
};

// The point at which bar 1 begins in a session with a song start of its own.
void add_song_start(Points& points, double time, std::uint32_t code) {
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (std::abs(points[i].time - time) > kSameMoment) continue;
    points[i].code = code;
    points[i].flags = TempoPoint::kSongStart;
    return;
  }
  const auto later = first_later(points, time);
  TempoPoint point{time, (later - 1)->bpm, code, TempoPoint::kSquare, TempoPoint::kSongStart};
  if (later != points.end()) glide(*(later - 1), *later, point);
  points.insert(later, point);
}

// New points gather in a list of their own and are merged once: changes are few, tempo points may be many.
Points with_meter_changes(Points points, const std::vector<MeterEvent>& changes, const TempoMap& tempo) {
  Points added;
  for (const MeterEvent& change : changes) {
    const double time = tempo.timeline_seconds(change.position);
    TempoPoint* there = point_at(points, time);
    TempoPoint* added_there = point_at(added, time);
    if (there == nullptr || (added_there != nullptr && added_there->time < there->time)) there = added_there;
    if (there != nullptr) {
      there->code = meter_code(change);
      if (there->flags != TempoPoint::kSongStart) there->flags = TempoPoint::kMeterChange;
      continue;
    }
    TempoPoint point{time, bpm_in_force(tempo, change.position), meter_code(change), TempoPoint::kSquare,
                     TempoPoint::kMeterChange};
    Neighbours neighbours;
    neighbours.consider(points, time);
    neighbours.consider(added, time);
    const TempoPoint *before = neighbours.before, *after = neighbours.after;
    if (before != nullptr && after != nullptr) glide(*before, *after, point);
    added.insert(first_later(added, time), point);
  }
  if (added.empty()) return points;
  Points merged;
  merged.reserve(points.size() + added.size());
  std::merge(points.begin(), points.end(), added.begin(), added.end(), std::back_inserter(merged),
             [](const TempoPoint& a, const TempoPoint& b) { return a.time < b.time; });
  return merged;
}

}  // namespace

TempoPoints make_tempo_points(const Clock& clock, const std::vector<MeterEvent>& meters, bool ramps) {
  const TempoMap& tempo = clock.tempo;
  const std::vector<MeterEvent> changes = sort_meter_events(meters).changes;
  const bool has_map = tempo.events.size() > 1;
  TempoPoints made;
  made.counts.tempo_changes = has_map ? static_cast<int>(tempo.events.size()) : 0;
  made.counts.meter_changes = static_cast<int>(changes.size());
  if (!has_map && changes.empty() && !tempo.has_song_start()) return made;

  Points& points = made.points;
  if (has_map) {
    points.reserve(tempo.events.size());
    for (const TempoEvent& event : tempo.events) {
      points.push_back({clock.of_ticks(event.tick), event.bpm, 0, TempoPoint::kSquare, TempoPoint::kPlain});
    }
    points.front().time = 0.0;  // a song start doesn't move it: what lies before has a tempo as well
  } else {
    const double bpm = tempo.events.empty() ? tempo.session_tempo : tempo.events.front().bpm;
    points.push_back({0.0, bpm, 0, TempoPoint::kSquare, TempoPoint::kPlain});
  }

  if (ramps && points.size() > 2) {
    TempoRamps solved = solve_tempo_ramps(points, clock.rate);
    made.counts.ramps_written = solved.written;
    made.counts.ramps_left = solved.left;
    made.counts.ramp_point_error = solved.point_error;
    made.counts.ramp_inner_error = solved.inner_error;
    points = std::move(solved.points);
  }
  if (changes.empty() && !tempo.has_song_start()) return made;

  points.front().code = meter_code(first_meter(meters));
  points.front().flags = TempoPoint::kFirstMeter;
  if (tempo.has_song_start()) add_song_start(points, tempo.song_start, points.front().code);
  points = with_meter_changes(std::move(points), changes, tempo);
  return made;
}

}  // namespace frt

#include "session/clock.h"

#include <algorithm>

namespace frt {
namespace {

// What `ticks` last at one tempo.
double seconds_at(double ticks, double bpm) { return ticks * 60.0 / (bpm * kTicksPerQuarter); }

// The last event's tempo holds to here.
constexpr double kEndOfTime = 1e18;

}  // namespace

void TempoMap::index_events() {
  event_seconds.resize(events.size());
  double seconds = 0.0;
  for (std::size_t i = 0; i < events.size(); ++i) {
    event_seconds[i] = seconds;
    if (i + 1 < events.size()) seconds += seconds_at(events[i + 1].tick - events[i].tick, events[i].bpm);
  }
}

double TempoMap::seconds_of_ticks(double tick) const {
  if (events.empty()) {
    if (!has_song_start()) return seconds_at(tick, session_tempo);
    return song_start + seconds_at(tick - song_start_tick, session_tempo);
  }
  const TempoEvent& first = events.front();
  if (tick < first.tick) {
    // Without a song start time counts from tick 0 here, not back from the first event.
    if (!has_song_start()) return seconds_at(tick, first.bpm);
    return song_start - seconds_at(first.tick - tick, first.bpm);
  }
  const auto next = std::lower_bound(events.begin(), events.end(), tick,
                                     [](const TempoEvent& event, double position) { return event.tick < position; });
  if (next == events.begin()) return song_start;
  const auto in_force = static_cast<std::size_t>(next - events.begin()) - 1;

  // Sums are taken in the order of the events, here as in index_events: both give the same bits.
  double seconds = 0.0;
  if (event_seconds.size() == events.size()) {
    seconds = event_seconds[in_force];
  } else {
    for (std::size_t i = 0; i < in_force; ++i) {
      seconds += seconds_at(events[i + 1].tick - events[i].tick, events[i].bpm);
    }
  }
  const double span_end = std::min(tick, kEndOfTime);
  seconds += seconds_at(span_end - events[in_force].tick, events[in_force].bpm);
  return song_start + seconds;
}

double TempoMap::timeline_seconds(double tick) const { return std::max(0.0, seconds_of_ticks(tick)); }

double stored_to_ticks(std::uint64_t stored) {
  return static_cast<double>(static_cast<std::int64_t>(stored) - static_cast<std::int64_t>(kTickOrigin));
}

double biased_to_ticks(std::uint32_t raw) {
  constexpr double kOriginLow = static_cast<double>(kTickOrigin & 0xFFFFFFFFu);
  const double ticks = static_cast<double>(raw) - kOriginLow;
  return ticks < 0.0 ? ticks + 4294967296.0 : ticks;
}

}  // namespace frt

// The one way from the session's samples and ticks to seconds.
#pragma once

#include <cstdint>
#include <vector>

namespace frt {

inline constexpr double kTicksPerQuarter = 960000.0;
// Positions in ticks are stored with this bias.
inline constexpr std::uint64_t kTickOrigin = 1000000000000;

struct TempoEvent {
  double tick = 0;
  double bpm = 0;
};

struct TempoMap {
  double session_tempo = 120.0;    // BPM
  std::vector<TempoEvent> events;  // empty or at least two; ticks never go down
  // Where the song starts on the timeline, in seconds; 0 in all but sessions with a song start of their own.
  double song_start = 0.0;
  // With a song start and no map: the tick that lies at the song start.
  double song_start_tick = 0.0;

  // Seconds from the first event to each event, so that a conversion needs no walk; made by index_events.
  // While it doesn't match `events` (a map put together by hand), conversions walk.
  std::vector<double> event_seconds;
  void index_events();

  // The tick's place in seconds. Before the first event time counts by the first tempo. With a song start a
  // tick before it may give a negative result; callers hold that at 0.
  double seconds_of_ticks(double tick) const;
  // The same, held at 0: where something on the timeline can stand.
  double timeline_seconds(double tick) const;
  bool has_song_start() const { return song_start > 0.0; }
};

struct Clock {
  TempoMap tempo;
  double rate = 48000.0;  // Hz, never 0

  double of_samples(double samples) const { return samples / rate; }
  // Ticks held at 0 seconds: where something on the timeline can stand.
  double of_ticks(double ticks) const { return tempo.timeline_seconds(ticks); }
  double of(double at, bool in_ticks) const { return in_ticks ? of_ticks(at) : of_samples(at); }
};

// A stored position, 40 bits, in ticks from the tick origin; below 0 before it.
double stored_to_ticks(std::uint64_t stored);
// The raw low 32 bits of a position to ticks.
double biased_to_ticks(std::uint32_t raw);

}  // namespace frt

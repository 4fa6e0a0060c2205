// Which playlist belongs to which track, and whether a track counts in ticks or in samples.
#pragma once

#include <cstddef>
#include <vector>

#include "model/placed_clips.h"
#include "run/counters.h"
#include "session/playlists.h"
#include "session/tables.h"

namespace frt {

// Which playlist each track is bound to, by track: an index into the playlists, -1 for none.
struct TrackPairing {
  std::vector<std::int64_t> playlist_of;
  // The session's own numbers bound them, so that a record counts for its track even if neither bears a name.
  bool by_number = false;
};

// Binds the tracks, in order of their numbers and with all their placements, to the playlists. `channel_count` is the
// number of distinct track numbers that the session's track list knows.
TrackPairing pair_tracks(const std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                         const std::vector<TrackPlaylist>& track_playlists, std::size_t channel_count);

// Fills each track's playlist, record name, timebase and name from its record, and counts the tracks of each
// timebase. Tracks without a record of their own go by what all records say, or else by the size of their raw
// positions.
void take_records(std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                  const TrackPairing& pairing, RunCounters& counters);

}  // namespace frt

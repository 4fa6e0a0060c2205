// Which playlist belongs to which track, and whether a track counts in ticks or in samples.
#pragma once

#include <cstddef>
#include <vector>

#include "model/clips/placed_clips.h"
#include "session/clips/clip_tables.h"

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

struct PairingCounts {
  int tick_based = 0, sample_based = 0;  // tracks
  int read_that_way = 0;                 // unpaired, every record of the session says the same
  int judged = 0;                        // unpaired, judged by the size of positions
  bool records_exist = false;
  bool all_samples = false;  // records exist and none says ticks
};

// Fills each track's playlist, record name, timebase and name from its record. Tracks without a record of their own go
// by what all records say, or else by the size of their raw positions.
PairingCounts take_records(std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                           const TrackPairing& pairing);

}  // namespace frt

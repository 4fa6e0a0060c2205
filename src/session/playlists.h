// The session's playlists: what stands on a track, as entries that name a clip, a fade or a clip group.
#pragma once

#include <cstdint>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One record per block 0x1052 anywhere in the image, the playlists of clip groups included, by position. A block
// of another shape, or one whose timebase is neither ticks nor samples, gives none. Where an entry is not a block,
// the record holds no entries and says so.
std::vector<PlaylistRecord> read_playlists(const SessionImage& image);

// One playlist of the list that holds the tracks' playlists (root 0x1054).
struct TrackPlaylist {
  std::uint64_t start = 0;  // position of its 0x1052 block
  bool unnamed = false;
};

// The tracks' playlists in file order, whether read_playlists can read them or not.
std::vector<TrackPlaylist> read_track_playlists(const SessionImage& image);

}  // namespace frt

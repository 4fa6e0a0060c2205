// The session's playlists: what stands on a track, as entries that name a clip, a fade or a clip group.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/clip_tables.h"

namespace frt {

// One record per playlist block anywhere in the image, the playlists of clip groups included, by position. A block of
// another shape, or one whose timebase is neither ticks nor samples, gives none. Where an entry is not a block, the
// record holds no entries and says so.
std::vector<PlaylistRecord> read_playlists(const SessionImage& image, Skips& skips);

// The tracks' playlists among the roots in file order, whether read_playlists can read them or not.
std::vector<TrackPlaylist> read_track_playlists(ByteView image, const std::vector<Block>& roots);

}  // namespace frt

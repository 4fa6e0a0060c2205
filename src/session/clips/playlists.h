// The session's playlists: what stands on a track, as entries that name a clip, a fade or a clip group.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/clip_tables.h"

namespace frt {

// One record per playlist block anywhere in the image, the playlists of clip groups included, by position. A block of
// another shape, or one whose timebase is neither ticks nor samples, gives none. Where an entry is not a block, the
// record holds no entries and says so.
std::vector<PlaylistRecord> read_playlists(const SessionImage& image, Skips& skips);

// Name and entries of the playlist block at `start`, which audio and MIDI ones store alike, without its timebase;
// `behind` becomes the position behind the last entry. `steps_left` bounds the steps over entries of all playlists
// together: playlists of a session don't share entries, so they can't take more steps than the image has room for, but
// blocks made to overlap could.
std::optional<PlaylistRecord> read_playlist_entries(ByteView image, std::uint64_t start, std::uint32_t shortest_name,
                                                    std::uint64_t& steps_left, std::uint64_t& behind);

// The tracks' playlists among the roots in file order, whether read_playlists can read them or not.
std::vector<TrackPlaylist> read_track_playlists(ByteView image, const std::vector<Block>& roots);

}  // namespace frt

// Which strip each playlist belongs to: a strip shows one of its playlists, the others are its alternates.
#pragma once

#include <cstddef>
#include <vector>

#include "base/by_name.h"
#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// Playlist name -> index of the strip that holds it, for playlists named otherwise than their strip. From the strip
// wrappers and the track entries they refer to; only strips with mixer data hold playlists.
ByName<std::size_t> read_playlist_owners(const SessionImage& image, const std::vector<StripRecord>& strips,
                                         const std::vector<StripRow>& rows);

}  // namespace frt

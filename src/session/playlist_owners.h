// Which strip each playlist belongs to: a strip shows one of its playlists, the others are its alternates.
#pragma once

#include <cstddef>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// Playlist name -> index of the strip that holds it, for playlists named otherwise than their strip. From the strip
// wrappers (0x261c) and the track entries (0x1014) they refer to; only strips with mixer data hold playlists.
ByName<std::size_t> read_playlist_owners(const SessionImage& image, const std::vector<StripRecord>& strips,
                                         const std::vector<StripRow>& rows);

}  // namespace frt

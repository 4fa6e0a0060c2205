// From the session's per-leg track lists to the tracks of a mix: stereo and surround legs folded, alternate
// playlists as lanes of their owners, freeze renders marked.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "model/tracks.h"
#include "run/counters.h"
#include "run/options.h"

namespace frt {

// Folds the nodes, which stand in the order of their track numbers; their items are moved out.
//   strip_table      the session's track table: a playlist whose record bears another name is an alternate
//   playlist_owners  playlist name -> index in strip_table; an index outside it gives no owner
// Fills the timebase and the widths of `maps`. Lanes without a written owner stand at the end of the result.
std::vector<OutputTrack> fold_tracks(std::vector<TrackNode>&& nodes, const std::vector<std::string_view>& strip_table,
                                     const ByName<std::size_t>& playlist_owners, const ConversionOptions& options,
                                     TrackMaps& maps, RunCounters& counters);

}  // namespace frt

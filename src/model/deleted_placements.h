// Which placements still stand on a track: Pro Tools keeps deleted ones in the file, and placements that stand for
// fades and clip groups among the clips.
#pragma once

#include <vector>

#include "model/tracks.h"
#include "run/counters.h"
#include "run/options.h"
#include "session/tables.h"

namespace frt {

// Takes the items that stand for a clip group, or for a fade beside one, from the tracks that hold clip groups: the
// groups are laid out on their own. Tracks without a playlist keep all.
void take_out_group_items(std::vector<TrackNode>& tracks, const std::vector<PlaylistRecord>& playlists);

// Matches each track's items with the entries of its playlist. Items that stand for fades of `fades` (empty under
// --no-fades) are dropped, unless they are to be kept; those without an entry of their own are deleted placements and
// go to the track's alternates. What stays takes colour, lock and drawing order from its entry. A track that would lose
// every item keeps them all.
void drop_deleted_placements(std::vector<TrackNode>& tracks, const std::vector<PlaylistRecord>& playlists,
                             const std::vector<FadeRecord>& fades, const ConversionOptions& options,
                             RunCounters& counters);

}  // namespace frt

// Which placements still stand on a track: Pro Tools keeps deleted ones in the file, and placements that stand for
// fades and clip groups among the clips.
#pragma once

#include <vector>

#include "model/clips/placed_clips.h"
#include "run/options.h"
#include "session/clips/clip_tables.h"

namespace frt {

// Takes the placements that stand for a clip group, or for a fade beside one, from the tracks that hold clip groups:
// the groups are laid out on their own. Tracks without a playlist keep all.
void take_out_group_placements(std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists);

struct DeletedCounts {
  int fade_clips_dropped = 0;  // placements that stand for fades
  int deleted = 0;
  int colored = 0;  // entries that carry a colour
};

// Matches each track's placements with the entries of its playlist. Those that stand for fades of `fades` (empty
// under --no-fades) are dropped, unless they are to be kept; those without an entry of their own are deleted ones
// and set aside. What stays takes colour, lock and drawing order from its entry. A track that would lose every
// placement keeps them all.
DeletedCounts set_deleted_placements_aside(std::vector<PlacedTrack>& tracks,
                                           const std::vector<PlaylistRecord>& playlists,
                                           const std::vector<FadeRecord>& fades, const ConversionOptions& options);

}  // namespace frt

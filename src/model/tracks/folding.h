// From the session's per-leg track lists to the tracks of a mix: stereo and surround legs folded, alternate
// playlists as lanes of their owners, freeze renders marked.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "model/tracks.h"
#include "run/options.h"

namespace frt {

struct FoldCounts {
  int stereo_merges = 0;
  int surround_folds = 0;
  int owner_matches = 0;        // alternate playlists matched to their parent track
  int alternates_left_out = 0;  // under --drop-alt-takes
  int lanes = 0;
};

struct FoldedTracks {
  std::vector<OutputTrack> tracks;  // lanes without a written owner stand at the end
  TrackFacts facts;
  FoldCounts counts;
};

// Folds the nodes, which stand in the order of their track numbers; their items are moved out.
//   strip_table      the session's track table: a playlist whose record bears another name is an alternate
//   playlist_owners  playlist name -> index in strip_table; an index outside it gives no owner
FoldedTracks fold_tracks(std::vector<TrackNode>&& nodes, const std::vector<std::string_view>& strip_table,
                         const ByName<std::size_t>& playlist_owners, const ConversionOptions& options);

}  // namespace frt

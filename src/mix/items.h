// What only the written list of tracks decides of its items: where their files lie, which gain lines are written, which
// colours stay.
#pragma once

#include <vector>

#include "mix/media_files.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/clock.h"

namespace frt {

struct ItemCounts {
  int clips_written = 0;
  int sync_point_clips = 0;
  int locked_clips = 0;
  int gain_envelopes = 0;
  int clips_elsewhere = 0;           // whose file was not found, or named, by the media folder
  int clips_in_sibling_folders = 0;  // of these, in one of the session's other folders
  int uncolored_by_option = 0;       // clips that would have carried a colour under --no-clip-colors
};

// Finishes the items of the written tracks and of their lanes, in the order in which they are written.
ItemCounts mix_items(std::vector<OutputTrack>& tracks, MediaFiles& media, const Clock& clock,
                     const ConversionOptions& options);

}  // namespace frt

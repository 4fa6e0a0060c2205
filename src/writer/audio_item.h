// Audio clips as REAPER items. What a clip is was decided before; here it is printed.
#pragma once

#include <cstdint>

#include "model/tracks.h"
#include "run/counters.h"
#include "run/options.h"
#include "writer/media_path.h"
#include "writer/rpp_text.h"

namespace frt {

// What the items of a project share.
struct AudioItems {
  const ConversionOptions& options;
  MediaFolders& media;
  double sample_rate = 48000.0;
  std::uint64_t next_item = 0;  // runs over all audio items of the project
  // A clip's gain line is written again for each of its placements. No project comes near this many points; a session
  // made to multiply one long line by thousands of placements ends here, and further lines are left out.
  std::uint64_t gain_points_left = 4'000'000;
};

// Writes a track's own items, then those of each of its lanes, in list order.
void write_audio_items(ProjectText& out, const OutputTrack& track, AudioItems& items, RunCounters& counters);

}  // namespace frt

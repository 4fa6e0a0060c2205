// Audio clips as REAPER items. What a clip is was decided before; here it is printed.
#pragma once

#include "model/tracks.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes a track's own items, then those of each of its lanes, in list order.
void write_audio_items(ProjectText& out, const OutputTrack& track);

}  // namespace frt

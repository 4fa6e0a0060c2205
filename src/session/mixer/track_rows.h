// The track data of each strip: visibility, height, position, comment, solo and automation mode.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// One per strip row. A row for which no track data is found stays at its defaults. `display` are the session's display
// rows: where there are as many of them as track data, and fewer strips, they tell whose data is whose.
std::vector<TrackRow> read_track_rows(const SessionImage& image, const std::vector<StripRow>& rows,
                                      const std::vector<DisplayRow>& display);

}  // namespace frt

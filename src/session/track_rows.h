// The track data of each strip (0x2015): visibility, height, position, comment, solo and automation mode.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One per strip row. A row for which no track data is found stays at its defaults.
std::vector<TrackRow> read_track_rows(const SessionImage& image, const std::vector<StripRow>& rows);

// The track data by track name.
ByName<TrackRow> track_rows_by_name(const std::vector<StripRow>& rows, const std::vector<TrackRow>& track_rows);

// Name and comment of each strip row that has a comment, in row order.
std::vector<std::pair<std::string_view, std::string_view>> track_comments(const std::vector<StripRow>& rows,
                                                                          const std::vector<TrackRow>& track_rows);

}  // namespace frt

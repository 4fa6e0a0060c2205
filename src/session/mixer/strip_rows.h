// The mixer's rows: one block per strip, the names the track table gives them, and which of the two makes the session's
// list of strips.
#pragma once

#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

struct StripRows {
  std::vector<StripRow> rows;  // one per strip, in file order
  bool names_aligned = false;  // the names of the track table line up with the rows and became their current names
};
StripRows read_strip_rows(const SessionImage& image);

// The session's track table: strip names in mixer order.
struct StripTable {
  std::vector<std::string_view> names;
  int name_scan_count = -1;  // how many names the name scan had found, if the rows' labels replaced them
};

// The name scan's list, or the rows' labels where every row has one and no two are equal. known_names are the track
// names of all placements, which tell the scan where the table begins.
StripTable choose_strip_table(const SessionImage& image, const std::vector<std::string_view>& known_names,
                              const std::vector<StripRow>& rows);

}  // namespace frt

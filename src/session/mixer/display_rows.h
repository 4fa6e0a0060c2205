// The rows of the edit window's track list.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The entries of the first track table, up to where it comes round to its first entry. Empty if an entry is not
// understood.
std::vector<DisplayRow> read_display_rows(const SessionImage& image, Skips& skips);

}  // namespace frt

// Keeping a track's items in the order of the timeline.
#pragma once

#include <vector>

#include "model/tracks.h"

namespace frt {

// Sorts by `position`; items at one position keep their order.
void sort_by_position(std::vector<OutputItem>& items);

}  // namespace frt

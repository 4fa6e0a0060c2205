// The session's memory locations: markers, selections, and those without a place on the timeline.
#pragma once

#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// The locations of the blocks 0x2077 in session order, each once: one that repeats name, times and kind of an
// earlier one is left out. Positions in ticks, or in samples where `in_samples` is set. Names are views into
// the image. A block that doesn't hold what it says is passed over.
std::vector<MemoryLocation> read_memory_locations(const SessionImage& image);

}  // namespace frt

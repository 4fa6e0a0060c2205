// The session's memory locations as markers and regions.
#pragma once

#include <vector>

#include "model/tempo.h"
#include "run/counters.h"
#include "session/tables.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes a MARKER line (two for a region) for each location with a place on the timeline, in session order, and
// counts them. `sample_rate` in Hz; 48000 stands in for 0.
void write_markers(ProjectText& project, const std::vector<MemoryLocation>& locations, const TempoMap& tempo,
                   double sample_rate, RunCounters& counters);

}  // namespace frt

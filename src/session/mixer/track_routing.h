// What strip rows tell of their way through the mixer: output, sends and input path; and what follows from the rows
// and the I/O paths alone.
#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// One for each audio and instrument row that has a name.
std::vector<TrackRouting> read_track_routing(const SessionImage& image, const std::vector<StripRow>& rows,
                                             const std::vector<StripRecord>& strips, const std::vector<Route>& routes);

// The routes of kind kLegs whose two ends are known, in their order.
std::vector<LegRoute> find_leg_routes(const SessionImage& image, const std::vector<Route>& routes,
                                      const std::vector<TrackRouting>& routing);

// Which tracks play to one channel of a stereo output: -1 the left or 1 the right, by display name.
std::map<std::string_view, int> find_one_sided(const std::vector<Route>& routes,
                                               const std::vector<TrackRouting>& routing);

}  // namespace frt

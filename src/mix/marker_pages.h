// The session's memory locations as REAPER's markers and regions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/clock.h"
#include "session/headers/memory_locations.h"

namespace frt {

// Marker or region; numbered from 1 in the order of the list.
struct MarkerPage {
  double start = 0;           // seconds
  std::optional<double> end;  // a region's
  std::string_view name;
  std::uint32_t color = 0;  // REAPER's value, 0 for none
};

struct MarkerCounts {
  int markers = 0, regions = 0, colored = 0;
  int without_time = 0;                      // locations without a place on the timeline, not written
  std::vector<std::string> unmapped_colors;  // names of markers with a colour that nobody measured
};

struct MarkerPages {
  std::vector<MarkerPage> pages;
  MarkerCounts counts;
};

MarkerPages make_marker_pages(const std::vector<MemoryLocation>& locations, const Clock& clock);

}  // namespace frt

// The session's memory locations: markers, selections, and those without a place on the timeline.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"

namespace frt {

enum class LocationKind : std::uint8_t { kNoTime, kMarker, kSelection };

struct MemoryLocation {
  std::string_view name;
  std::uint8_t flags = 0;
  LocationKind kind = LocationKind::kNoTime;
  double start = 0, end = 0;  // ticks, or samples if in_samples
  std::int32_t palette = -2;
  std::int32_t marker_color = -1;
  std::int64_t stored_rgb = -1;
  bool in_samples = false;
};

// The locations in session order, each once: one that repeats name, times and kind of an earlier one is left out. A
// block that doesn't hold what it says is passed over.
std::vector<MemoryLocation> read_memory_locations(const SessionImage& image, Skips& skips);

}  // namespace frt

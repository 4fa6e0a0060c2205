#include "mix/marker_pages.h"

#include <string>

#include "model/palette.h"

namespace frt {
namespace {

// What Pro Tools gives a marker whose colour nobody chose.
constexpr std::int64_t kUnchosenRgb = 0xFFB300;

// Marker colour indices whose shade was measured, as REAPER's colour values.
struct MeasuredColor {
  std::int32_t index;
  std::uint32_t color;
};
constexpr MeasuredColor kMeasuredColors[] = {
    {2, 0x1FE0066}, {3, 0x1DD0292}, {5, 0x1D57CFE}, {12, 0x100DFDF}, {13, 0x102E78D}, {17, 0x132DA00},
};
// The index of a marker left without a colour.
constexpr std::int32_t kUnsetIndex = 11;

std::uint32_t reaper_color_of_rgb(std::int64_t rgb) {
  const auto value = static_cast<std::uint32_t>(rgb);
  return (value & 0xFF) << 16 | (value & 0xFF00) | (value >> 16 & 0xFF) | 0x1000000;
}

// The location's colour as REAPER's value; 0 for none.
std::uint32_t color_of(const MemoryLocation& location, MarkerCounts& counts) {
  std::uint32_t color = 0;
  if (location.palette >= 25 && location.palette <= 95 && location.palette % 24 != 0) {
    color = palette_color(location.palette).color;
    ++counts.colored;
  }
  if (location.marker_color < 0) return color;
  if (location.stored_rgb >= 0) {
    if (location.stored_rgb == kUnchosenRgb) return color;
    ++counts.colored;
    return reaper_color_of_rgb(location.stored_rgb);
  }
  for (const MeasuredColor& measured : kMeasuredColors) {
    if (measured.index != location.marker_color) continue;
    ++counts.colored;
    return measured.color;
  }
  if (location.marker_color != kUnsetIndex) counts.unmapped_colors.emplace_back(location.name);
  return color;
}

}  // namespace

MarkerPages make_marker_pages(const std::vector<MemoryLocation>& locations, const Clock& clock) {
  MarkerPages made;
  MarkerCounts& counts = made.counts;
  for (const MemoryLocation& location : locations) {
    if (location.kind == LocationKind::kNoTime) {
      ++counts.without_time;
      continue;
    }
    const bool region = location.kind == LocationKind::kSelection && location.end > location.start;
    ++(region ? counts.regions : counts.markers);
    MarkerPage& page = made.pages.emplace_back();
    page.start = clock.of(location.start, !location.in_samples);
    if (region) page.end = clock.of(location.end, !location.in_samples);
    page.name = location.name;
    page.color = color_of(location, counts);
  }
  return made;
}

}  // namespace frt

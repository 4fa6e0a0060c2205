#include "writer/markers.h"

#include <string>

#include "model/palette.h"

namespace frt {
namespace {

constexpr std::int32_t kNoTimeProperty = 0, kSelection = 2;

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
std::uint32_t color_of(const MemoryLocation& location, RunCounters& counters) {
  std::uint32_t color = 0;
  if (location.palette >= 25 && location.palette <= 95 && location.palette % 24 != 0) {
    color = palette_color(location.palette).color;
    ++counters.colored_markers;
  }
  if (location.marker_color < 0) return color;
  if (location.stored_rgb >= 0) {
    if (location.stored_rgb == kUnchosenRgb) return color;
    ++counters.colored_markers;
    return reaper_color_of_rgb(location.stored_rgb);
  }
  for (const MeasuredColor& measured : kMeasuredColors) {
    if (measured.index != location.marker_color) continue;
    ++counters.colored_markers;
    return measured.color;
  }
  if (location.marker_color != kUnsetIndex) counters.unmapped_marker_colors.emplace_back(location.name);
  return color;
}

}  // namespace

void write_markers(ProjectText& project, const std::vector<MemoryLocation>& locations, const TempoMap& tempo,
                   double sample_rate, RunCounters& counters) {
  const double rate = sample_rate > 0.0 ? sample_rate : 48000.0;
  std::uint32_t number = 0;
  for (const MemoryLocation& location : locations) {
    if (location.kind == kNoTimeProperty) {
      ++counters.markers_without_time;
      continue;
    }
    ++number;
    const auto seconds = [&](double position) {
      return location.in_samples ? position / rate : tempo.timeline_seconds(position);
    };
    const bool region = location.kind == kSelection && location.end > location.start;
    ++(region ? counters.regions : counters.markers);
    project.text("  MARKER ").integer(number).text(" ").fixed(seconds(location.start), 10).text(" ");
    project.quoted(location.name).text(region ? " 1 " : " 0 ").integer(color_of(location, counters)).text(" 1 R ");
    project.text(make_guid(guid_seed::kMarker + number)).text(" 0\n");
    if (region) {
      project.text("  MARKER ").integer(number).text(" ").fixed(seconds(location.end), 10).text(" \"\" 1\n");
    }
  }
}

}  // namespace frt

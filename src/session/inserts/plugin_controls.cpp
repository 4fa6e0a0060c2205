#include "session/inserts/plugin_controls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "image/content_types.h"

namespace frt {
namespace {

// Points of a control, from the block's mark
//   + 25       u16  point count n
//   + 27       5    any byte not 0: times are session ticks, else samples
//   + 35       i32  value at the session's start
//   + 39 + 8i  u32  time of point i
//   + 43 + 8i  i32  value of point i
namespace points_layout {
constexpr std::uint64_t kCount = 25, kTicks = 27, kInitial = 35, kPoints = 39, kValue = 4, kPointSize = 8;
constexpr unsigned kTicksBytes = 5;
constexpr std::uint64_t kTail = 41;  // 8n + 41 bytes hold n points
}  // namespace points_layout

// Behind the block of the points, from its end
//   + 0       u32  name length n, 1 to 128, then the name
//   + 4 + n   u32  number of the parameter
//   + 16 + n  u32  label length m, 1 to 127, then the label
namespace names_layout {
constexpr std::uint64_t kName = 4, kNumber = 4, kLabelLength = 16, kLabel = 20;
constexpr std::uint32_t kMostName = 128, kMostLabel = 127;
}  // namespace names_layout

// Half of the number's range, around its middle, is the control's 0 to 1.
double value_of(std::int32_t stored) { return stored * 0x1p-31 + 0.5; }

// A text of 1 to `most` printable bytes whose length stands at `count` and which itself stands at `at`.
std::optional<std::string_view> text_of(ByteView image, std::uint64_t count, std::uint64_t at, std::uint32_t most) {
  const auto length = image.u32(count);
  if (!length || *length < 1 || *length > most) return std::nullopt;
  const auto text = image.text(at, *length);
  return text && ascii_ok(*text) ? text : std::nullopt;
}

bool read_points(ByteView image, const FlatBlock& block, AutomatedControl& control) {
  namespace at = points_layout;
  if (block.start + at::kPoints > image.size()) return false;
  const std::uint64_t count = image.u16_or(block.start + at::kCount, 0);
  if (block.size + std::uint64_t{7} < count * at::kPointSize + at::kTail) return false;
  control.tick_based = image.unsigned_of(block.start + at::kTicks, at::kTicksBytes).value_or(0) != 0;
  control.initial_value = value_of(image.i32(block.start + at::kInitial).value_or(0));
  control.points.reserve(count);
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t point = block.start + at::kPoints + at::kPointSize * i;
    control.points.emplace_back(image.u32_or(point, 0), value_of(image.i32(point + at::kValue).value_or(0)));
  }
  return true;
}

// A label that doesn't read leaves the control without one.
bool read_names(ByteView image, std::uint64_t end, AutomatedControl& control) {
  namespace at = names_layout;
  const auto name = text_of(image, end, end + at::kName, at::kMostName);
  if (!name || !image.has(end, at::kName + at::kNumber + name->size())) return false;
  control.name = *name;
  const std::uint64_t behind = end + name->size();
  control.param_number = image.u32_or(behind + at::kNumber, 0);
  control.label = text_of(image, behind + at::kLabelLength, behind + at::kLabel, at::kMostLabel).value_or("");
  return true;
}

}  // namespace

void read_plugin_controls(const SessionImage& image, std::vector<InsertRecord>& inserts) {
  // Holders of an image made to nest would read the same points again and again: what all controls together may read is
  // bounded by what the image can hold.
  std::size_t points_left = image.size() / 2 + 65536;
  for (const std::uint32_t i : image.of_type(content::kControl)) {
    const FlatBlock& holder = image.block(i);
    const FlatBlock* points = image.first_of_type(content::kControlPoints, holder.start + 1, holder.end());
    if (!points) continue;
    const auto behind = std::lower_bound(inserts.begin(), inserts.end(), holder.start,
                                         [](const InsertRecord& insert, std::uint64_t p) { return insert.start < p; });
    AutomatedControl control;
    if (behind == inserts.begin() || !read_names(image.bytes(), points->end(), control)) continue;
    if (points_left < image.bytes().u16_or(points->start + points_layout::kCount, 0)) continue;
    if (!read_points(image.bytes(), *points, control)) continue;
    points_left -= control.points.size();
    (behind - 1)->automated.push_back(std::move(control));
  }
}

}  // namespace frt

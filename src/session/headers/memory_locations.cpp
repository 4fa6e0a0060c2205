#include "session/headers/memory_locations.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <tuple>

#include "image/content_types.h"
#include "session/clock.h"

namespace frt {
namespace {

constexpr std::uint64_t kLeastImage = 48;

// Memory location block, n the length of its name
//   p + 11        u8   flags
//   p + 12        u8   kind
//   p + 15        u32  n
//   p + 19             name
//   p + n + 19    u40  start
//   p + n + 27    u40  end
// and, in the long form (264 bytes of size behind the name):
//   p + n + 139   u16  marker colour
//   p + n + 223        0, red, 0, green, 0, blue of a colour of its own
// in the other:
//   p + n + 145   i16  palette index
namespace location_layout {
constexpr std::uint64_t kFlags = 11, kKind = 12, kName = 15, kText = 19;
constexpr std::uint64_t kStart = 19, kEnd = 27, kLeastSize = 35;
constexpr std::uint64_t kMarkerColor = 139, kPalette = 145;
constexpr std::uint64_t kRed = 224, kGreen = 226, kBlue = 228;
constexpr std::uint32_t kMostName = 128;
constexpr std::uint64_t kLongForm = 264;
}  // namespace location_layout

constexpr std::uint8_t kOnTimeline = 2;                   // flag: positions may be in samples
constexpr std::uint8_t kLastKind = 2, kMarkerStored = 9;  // an older way to say "marker"

std::int64_t stored_rgb(ByteView bytes, std::uint64_t behind_name) {
  using namespace location_layout;
  for (const std::uint64_t at : {kRed, kGreen, kBlue}) {
    if (bytes.u8_or(behind_name + at - 1, 1) != 0) return -1;
  }
  return bytes.u8_or(behind_name + kRed, 0) * 65536 + bytes.u8_or(behind_name + kGreen, 0) * 256 +
         bytes.u8_or(behind_name + kBlue, 0);
}

std::optional<MemoryLocation> read_location(ByteView bytes, const FlatBlock& block) {
  using namespace location_layout;
  const std::uint64_t p = block.start;
  const std::uint64_t whole = block.end() - p;  // the block with its head
  const auto n = bytes.u32(p + kName);
  if (!n || *n > kMostName || *n + kLeastSize > whole) return std::nullopt;
  const auto name = bytes.text(p + kText, *n);
  if (!name || !text_ok(*name)) return std::nullopt;

  MemoryLocation location;
  location.name = *name;
  location.flags = bytes.u8_or(p + kFlags, 0);
  const std::uint8_t kind = bytes.u8_or(p + kKind, 0);
  if (kind > kLastKind && kind != kMarkerStored) return std::nullopt;
  location.kind = kind == kMarkerStored ? LocationKind::kMarker : LocationKind{kind};

  const std::uint64_t behind_name = p + *n;
  const std::uint64_t start = bytes.u40(behind_name + kStart).value_or(0);
  const std::uint64_t end = bytes.u40(behind_name + kEnd).value_or(0);
  if (start < kTickOrigin || end < kTickOrigin) {
    if ((location.flags & kOnTimeline) == 0 || start > end) return std::nullopt;
    location.in_samples = true;
    location.start = static_cast<double>(start);
    location.end = static_cast<double>(end);
  } else {
    location.start = static_cast<double>(start - kTickOrigin);
    location.end = static_cast<double>(end - kTickOrigin);
  }

  if (block.size == *n + kText + kLongForm) {
    location.marker_color = bytes.u16_or(behind_name + kMarkerColor, 0);
    location.stored_rgb = stored_rgb(bytes, behind_name);
  } else if (*n + kPalette + 2 <= whole) {
    location.palette = bytes.i16(behind_name + kPalette).value_or(-2);
  }
  return location;
}

// What makes two locations the same one.
auto identity(const MemoryLocation& location) {
  return std::tie(location.start, location.end, location.kind, location.name);
}

// Leaves the first of the locations that share an identity, in their order.
void drop_repeats(std::vector<MemoryLocation>& locations) {
  std::vector<std::uint32_t> order(locations.size());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    const auto left = identity(locations[a]), right = identity(locations[b]);
    return left != right ? left < right : a < b;
  });
  std::vector<bool> repeats(locations.size(), false);
  for (std::size_t i = 1; i < order.size(); ++i) {
    repeats[order[i]] = identity(locations[order[i]]) == identity(locations[order[i - 1]]);
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < locations.size(); ++i) {
    if (!repeats[i]) locations[kept++] = locations[i];
  }
  locations.resize(kept);
}

}  // namespace

std::vector<MemoryLocation> read_memory_locations(const SessionImage& image, Skips& skips) {
  std::vector<MemoryLocation> locations;
  if (image.size() < kLeastImage) return locations;
  for (const std::uint32_t index : image.of_type(content::kMemoryLocation)) {
    if (auto location = read_location(image.bytes(), image.block(index))) {
      locations.push_back(*location);
    } else {
      skips.add(content::kMemoryLocation, image.block(index).start, "name, kind or times");
    }
  }
  drop_repeats(locations);
  return locations;
}

}  // namespace frt

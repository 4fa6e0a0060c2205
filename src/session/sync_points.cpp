#include "session/sync_points.h"

#include <array>

namespace frt {
namespace {

constexpr std::array<std::uint16_t, 2> kClipLists = {0x262a, 0x100b};
constexpr std::array<std::uint16_t, 2> kClipEntries = {0x2629, 0x1008};

// Clip entry, offsets from the block's start:
//   +18  counted name, up to 255 bytes
// and from the name's end the packed head of the clip's numbers:
//   +1  u8  high nibble: bytes of the source offset, which stands at +5
//   +2  u8  low nibble: bytes of the sync point, which follows it
namespace layout {
constexpr std::uint64_t kName = 18, kNameText = 22;
constexpr std::uint32_t kLongestName = 255;
constexpr std::uint64_t kOffsetWidth = 1, kSyncWidth = 2, kValues = 5;
constexpr std::uint8_t kOffsetWidthLimit = 96;
constexpr unsigned kMostSyncBytes = 5;
}  // namespace layout

SyncPoint read_sync_point(ByteView image, const FlatBlock& block) {
  using namespace layout;
  SyncPoint point;
  const std::uint32_t length = image.u32_or(block.start + kName, kLongestName + 1);
  if (length > kLongestName) return point;
  const auto name = image.text(block.start + kNameText, length);
  if (!name) return point;
  point.clip_name = *name;
  const std::uint64_t e = block.start + kNameText + length;
  const std::uint8_t offset_width = image.u8_or(e + kOffsetWidth, 0xFF);
  const unsigned bytes = image.u8_or(e + kSyncWidth, 0) & 15u;
  if (offset_width >= kOffsetWidthLimit || bytes == 0 || bytes > kMostSyncBytes) return point;
  const std::uint64_t at = e + kValues + (offset_width >> 4u);
  if (at + bytes <= block.end()) point.samples = static_cast<std::int64_t>(image.unsigned_of(at, bytes).value_or(0));
  return point;
}

}  // namespace

std::vector<SyncPoint> read_sync_points(const SessionImage& image) {
  std::vector<SyncPoint> points;
  // A list inside a list, or an entry inside an entry, is a payload that looks like one.
  std::uint64_t lists_end = 0;
  for (const std::uint32_t list_index : blocks_of_types(image, kClipLists)) {
    const FlatBlock& list = image.block(list_index);
    if (list.start < lists_end) continue;
    lists_end = list.end();
    const auto newer = image.of_type(kClipEntries[0], list.start, list.end());
    const auto older = image.of_type(kClipEntries[1], list.start, list.end());
    points.reserve(points.size() + newer.size());
    std::uint64_t entries_end = list.start;
    for (std::size_t i = 0, k = 0; i < newer.size() || k < older.size();) {
      const bool take_newer = k == older.size() || (i < newer.size() && newer[i] < older[k]);
      const FlatBlock& entry = image.block(take_newer ? newer[i++] : older[k++]);
      if (entry.start < entries_end || entry.end() > list.end()) continue;
      entries_end = entry.end();
      points.push_back(read_sync_point(image.bytes(), entry));
    }
  }
  return points;
}

}  // namespace frt

#include "session/clips/sync_points.h"

#include <array>

#include "image/content_types.h"
#include "session/clips/clip_entry.h"
#include "session/clips/packed_numbers.h"

namespace frt {
namespace {

constexpr std::array<std::uint16_t, 2> kClipLists = {content::kClipList, content::kOldClipList};
constexpr std::array<std::uint16_t, 2> kClipEntries = {content::kClip, content::kOldClip};
constexpr std::uint32_t kLongestName = 255;
constexpr unsigned kMostSyncBytes = 5;

SyncPoint read_sync_point(ByteView image, const FlatBlock& block) {
  using namespace clip_entry;
  SyncPoint point;
  const std::uint32_t length = image.u32_or(block.start + kName, kLongestName + 1);
  if (length > kLongestName) return point;
  const auto name = image.text(block.start + kNameText, length);
  if (!name) return point;
  point.clip_name = *name;
  const PackedNumbers numbers(image, block.start + kNameText + length);
  const unsigned bytes = numbers.sync_width();
  if (!numbers.width_known(0) || bytes == 0 || bytes > kMostSyncBytes) return point;
  if (numbers.sync_place() + bytes <= block.end())
    point.samples = static_cast<std::int64_t>(image.unsigned_of(numbers.sync_place(), bytes).value_or(0));
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

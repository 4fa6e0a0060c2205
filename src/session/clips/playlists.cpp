#include "session/clips/playlists.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "image/content_types.h"

namespace frt {
namespace {

// Playlist, from its mark
//   +9       counted name, 0 to 64 bytes
//   +13 + n  u32 entry count
//   then     the entries, each a block; behind the last one the timebase byte
namespace playlist_layout {
constexpr std::uint64_t kName = 9, kNameText = 13;
constexpr std::uint32_t kLongestName = 64, kMostEntries = 20000;
constexpr std::uint8_t kInTicks = 2, kInSamples = 1;
}  // namespace playlist_layout

// Entry with a placement block at +9, from the entry's mark
//   +12  u32  size of the placement block, counted from +16; the byte behind it is the trailing byte
//   +16  u16  the placement block's content type
//   +18  u8   a group entry: the group is muted
//   +19  u8   time lock
//   +20  u32  number of the clip, the fade or the group
//   +25  u40  position: samples, or ticks biased by 1e12
//   +33  u8   kind
//   +34  i16  palette index
//   +36  u8   1 for a clip group
//   +38       a loop record kClipLoop, or nothing
//   +48  u8   edit lock, behind the loop record if there is one
namespace entry_layout {
constexpr std::uint64_t kNestedSize = 12, kNestedType = 16, kGroupMuted = 18, kLockTime = 19, kIndex = 20,
                        kPosition = 25, kKind = 33, kColor = 34, kIsGroup = 36, kLoopRecord = 38, kLockEdit = 48;
constexpr std::uint8_t kFadeKind = 1;
constexpr std::uint32_t kSmallest = 4;
}  // namespace entry_layout

// The edit lock's place: a loop record in front of it moves it back.
std::uint64_t lock_edit_at(ByteView image, std::uint64_t entry) {
  const std::uint64_t loop = entry + entry_layout::kLoopRecord;
  std::uint64_t at = entry + entry_layout::kLockEdit;
  if (image.u8_or(loop, 0) != block_layout::kMark ||
      image.u16_or(loop + block_layout::kContentType, 0) != content::kClipLoop)
    return at;
  const std::uint32_t size = image.u32_or(loop + block_layout::kSize, 0);
  if (size != 0 && image.u8_or(loop + block_layout::kTypeHigh, 1) == 0 && image.has(loop + 7, size))
    at += std::uint64_t{7} + size;
  return at;
}

PlaylistEntry read_entry(ByteView image, std::uint64_t entry, std::uint32_t size) {
  using namespace entry_layout;
  PlaylistEntry read;
  const std::uint64_t end = entry + 7 + size;
  const std::uint64_t trailing = std::min(entry + kNestedType + image.u32_or(entry + kNestedSize, 0), end - 1);
  read.clip_or_fade_index = image.u32_or(entry + kIndex, 0);
  read.position = image.u40(entry + kPosition).value_or(0);
  read.kind = image.u8_or(entry + kKind, 0);
  read.color = image.i16(entry + kColor).value_or(-2);
  read.group_muted = image.u8_or(entry + kGroupMuted, 0) != 0;
  read.is_group = image.u8_or(entry + kIsGroup, 0) == 1;
  read.is_clip = size < kSmallest || image.u8_or(trailing, 0) == 0;
  read.fade = read.kind == kFadeKind && !read.is_clip;
  const std::uint64_t lock_edit = lock_edit_at(image, entry);
  if (lock_edit < end) read.locked = image.u8_or(lock_edit, 0) != 0 || image.u8_or(entry + kLockTime, 0) != 0;
  return read;
}

}  // namespace

std::optional<PlaylistRecord> read_playlist_entries(ByteView image, std::uint64_t start, std::uint32_t shortest_name,
                                                    std::uint64_t& steps_left, std::uint64_t& behind) {
  using namespace playlist_layout;
  const std::string_view name = read_name(image, start + kName, shortest_name, kLongestName);
  if (!name.data()) return std::nullopt;
  const auto count = image.u32(start + kNameText + name.size());
  if (!count || *count > kMostEntries) return std::nullopt;

  PlaylistRecord record;
  record.name = name;
  record.start = start;
  record.entry_count = *count;
  record.entries_read = true;
  std::uint64_t p = start + kNameText + name.size() + 4;
  for (std::uint32_t i = 0; i < *count; ++i) {
    const auto size = image.u32(p + block_layout::kSize);
    if (!size || !image.has(p + 7, *size) || steps_left == 0) return std::nullopt;
    --steps_left;
    if (*image.u8(p) != block_layout::kMark || *image.u8(p + block_layout::kTypeHigh) != 0) record.entries_read = false;
    if (record.entries_read && image.u16(p + entry_layout::kNestedType) == content::kPlacement) {
      if (record.entries.empty())
        record.entries.reserve(std::min<std::uint64_t>(*count - i, (image.size() - p) / (std::uint64_t{7} + *size)));
      record.entries.push_back(read_entry(image, p, *size));
    }
    p += std::uint64_t{7} + *size;
  }
  if (!record.entries_read) record.entries.clear();
  behind = p;
  return record;
}

namespace {

std::optional<PlaylistRecord> read_playlist(ByteView image, std::uint64_t start, std::uint64_t& steps_left) {
  using namespace playlist_layout;
  std::uint64_t behind = 0;
  auto record = read_playlist_entries(image, start, 0, steps_left, behind);
  if (!record) return record;
  const std::uint8_t timebase = image.u8_or(behind, 0);
  if (timebase != kInTicks && timebase != kInSamples) return std::nullopt;
  record->ticks = timebase == kInTicks;
  return record;
}

}  // namespace

std::vector<PlaylistRecord> read_playlists(const SessionImage& image, Skips& skips) {
  std::vector<PlaylistRecord> records;
  const auto blocks = image.of_type(content::kPlaylist);
  records.reserve(blocks.size());
  std::uint64_t steps_left = image.size() / 7;
  for (const std::uint32_t index : blocks) {
    const std::uint64_t start = image.block(index).start;
    if (auto record = read_playlist(image.bytes(), start, steps_left)) {
      records.push_back(std::move(*record));
    } else {
      skips.add(content::kPlaylist, start, "name, entries or timebase");
    }
  }
  return records;
}

std::vector<TrackPlaylist> read_track_playlists(ByteView bytes, const std::vector<Block>& roots) {
  std::vector<TrackPlaylist> playlists;
  for (const Block& root : roots) {
    if (root.content_type != content::kPlaylists) continue;
    for (const Block& child : children_of(bytes, root, content::kPlaylist)) {
      playlists.push_back({child.start, bytes.u32_or(child.start + playlist_layout::kName, 1) == 0});
    }
  }
  return playlists;
}

}  // namespace frt

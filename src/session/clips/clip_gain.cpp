#include "session/clips/clip_gain.h"

#include <algorithm>
#include <optional>

#include "image/content_types.h"
#include "session/clips/clip_entry.h"

namespace frt {
namespace {

// Gain table, from its mark: u32 count at +9, entries from +13. An entry:
//   +4   u32  size s: at least 14, s modulo 8 is 6; the entry is s + 8 bytes long
//   +10  u32  stated point count
//   +22  the points, 8 bytes each: u32 position (samples), f32 gain (dB)
namespace table_layout {
constexpr std::uint64_t kCount = 9, kEntries = 13;
constexpr std::uint32_t kMostEntries = 100000;
constexpr std::uint64_t kSize = 4, kStatedCount = 10, kPoints = 22, kPoint = 8, kPointDb = 4;
constexpr std::uint32_t kSmallestSize = 14;
constexpr float kLowestDb = -145.0f, kHighestDb = 37.0f;  // both out of range themselves
}  // namespace table_layout

// Name block kClipHeader: counted name at +9. The gain index stands at the block's end, or is found from the last
// trailer mark p: at p + 27, or, where a block with a size s stands at p + 10, at p + s + 34.
namespace name_layout {
using namespace clip_header;
constexpr std::uint32_t kLongestName = 128;
constexpr std::string_view kTrailer("\xff\xff\x04\x00\x04\x00", 6);
constexpr std::uint64_t kSmallestWithTrailer = 40, kTrailerFromEnd = 5, kDefaultFromEnd = 4;
constexpr std::uint64_t kPlainIndex = 27, kBlockMark = 10, kBlockTypeHigh = 12, kBlockSize = 13, kBlockContent = 17,
                        kBehindBlock = 34;
}  // namespace name_layout

GainPoint read_point(ByteView image, std::uint64_t at) {
  using namespace table_layout;
  GainPoint point;
  point.position = image.u32_or(at, 0);
  const float db = image.f32(at + kPointDb).value_or(0.0f);
  if (db > kLowestDb && db < kHighestDb) point.db = static_cast<double>(db);
  return point;
}

void read_table(ByteView image, const FlatBlock& block, ClipGain& gain, Skips& skips) {
  using namespace table_layout;
  const std::uint32_t count = image.u32_or(block.start + kCount, 0);
  if (count > kMostEntries) return skips.add(content::kGainTable, block.start, "count");
  std::uint64_t p = block.start + kEntries;
  gain.entries.reserve(std::min<std::uint64_t>(count, block.size / (kSmallestSize + 8)));
  for (std::uint32_t i = 0; i < count && p < block.end(); ++i) {
    const std::uint32_t size = image.u32_or(p + kSize, 0);
    if (size < kSmallestSize || size % 8 != 6 || p + 8 + size > block.end()) {
      skips.add(content::kGainTable, p, "size of an entry");
      break;
    }
    const std::uint32_t points = (size - kSmallestSize) / 8;
    if (image.u32_or(p + kStatedCount, points) != points) ++gain.stated_counts_wrong;
    ClipGainEntry entry;
    if (points > 0) entry.db = read_point(image, p + kPoints).db;
    if (points > 1) {
      entry.points.reserve(points);
      for (std::uint32_t k = 0; k < points; ++k) entry.points.push_back(read_point(image, p + kPoints + kPoint * k));
    }
    gain.entries.push_back(std::move(entry));
    p += std::uint64_t{8} + size;
  }
}

// Finds the last trailer mark of each block, for blocks asked about in the order of their starts. Every byte is
// searched once, also where blocks overlap.
class TrailerSearch {
 public:
  explicit TrailerSearch(ByteView image) : image_(image) {}

  // The last mark that begins in [start, last]; nothing if there is none.
  std::optional<std::uint64_t> last_mark(std::uint64_t start, std::uint64_t last) {
    const std::uint64_t from = std::max(start, searched_to_);
    const std::uint64_t to = last + 1;  // marks may begin before it
    if (from < to) {
      const ByteView span = image_.clamped(from, to - from + name_layout::kTrailer.size() - 1);
      const std::string_view bytes = span.text(0, span.size()).value_or(std::string_view{});
      for (std::size_t at = bytes.find(name_layout::kTrailer); at != bytes.npos;
           at = bytes.find(name_layout::kTrailer, at + 1))
        marks_.push_back(from + at);
      searched_to_ = to;
    }
    const auto behind = std::upper_bound(marks_.begin(), marks_.end(), last);
    if (behind == marks_.begin() || *(behind - 1) < start) return std::nullopt;
    return *(behind - 1);
  }

 private:
  ByteView image_;
  std::uint64_t searched_to_ = 0;
  std::vector<std::uint64_t> marks_;
};

}  // namespace

const ClipGainEntry* ClipGain::find(std::string_view clip_name) const {
  const auto found = index_of.find(clip_name);
  return found == index_of.end() ? nullptr : &entries[found->second];
}

std::uint64_t gain_index_offset(ByteView image, std::uint64_t end, std::uint64_t trailer) {
  using namespace name_layout;
  std::uint64_t index = end - kDefaultFromEnd;
  if (trailer + kPlainIndex + 4 < end) index = trailer + kPlainIndex;
  if (trailer + kBlockContent < end && image.u8_or(trailer + kBlockMark, 0) == block_layout::kMark &&
      image.u8_or(trailer + kBlockTypeHigh, 1) == 0) {
    const std::uint32_t size = image.u32_or(trailer + kBlockSize, 0);
    if (size != 0 && trailer + size + kBehindBlock + 4 <= end) index = trailer + size + kBehindBlock;
  }
  return index;
}

ClipGain read_clip_gain(const SessionImage& image, Skips& skips) {
  using namespace name_layout;
  const ByteView bytes = image.bytes();
  ClipGain gain;
  const FlatBlock* table = image.first_of_type(content::kGainTable);
  if (table) read_table(bytes, *table, gain, skips);
  if (gain.entries.empty()) return gain;

  TrailerSearch trailers(bytes);
  const auto blocks = image.of_type(content::kClipHeader);
  gain.index_of.reserve(std::min(blocks.size(), gain.entries.size()));
  for (const std::uint32_t block_index : blocks) {
    const FlatBlock& block = image.block(block_index);
    const std::uint64_t end = block.end();
    const std::uint32_t length = bytes.u32_or(block.start + kName, 0);
    if (length == 0 || length > kLongestName || block.start + kNameText + length > end) continue;
    std::uint64_t trailer = end;
    if (end - block.start >= kSmallestWithTrailer)
      trailer = trailers.last_mark(block.start, end - kTrailerFromEnd).value_or(end);
    const auto index = bytes.u32(gain_index_offset(bytes, end, trailer));
    if (index && *index < gain.entries.size())
      gain.index_of.insert_or_assign(*bytes.text(block.start + kNameText, length), *index);
  }
  return gain;
}

}  // namespace frt

#include "session/mixer/display_rows.h"

#include <algorithm>
#include <array>

#include "image/content_types.h"
#include "session/mixer/id_mark.h"

namespace frt {
namespace {

// One entry of the track table, from its mark q, with n the name's length
//   q + 9        u16  row type, 11 for a Basic folder
//   q + 11       u32  name length n, 1 to 200
//   q + 15       n    name
//   q + 15 + n   u8   width
//   q + 21 + n   4    42, 0, 0, 0 where an id follows
//   q + 25 + n   u64  display id
//   q + 68 + n   u8   1 for a row with a track
// Its size is n + 72 in the newest sessions; those before end earlier, down to n + 31, with the same offsets.
namespace entry_layout {
constexpr std::uint64_t kRowType = 9, kNameLength = 11, kName = 15;
constexpr std::uint64_t kWidth = 15, kBeforeId = 21, kId = 25, kHasTrack = 68;  // from q + n
constexpr std::uint32_t kLeastSize = 8, kMostName = 200;
constexpr std::array<std::uint64_t, 6> kSizes = {31, 61, 62, 63, 65, 72};  // less n
constexpr std::uint64_t kLeastSizeWithTrack = 62;                          // less n
}  // namespace entry_layout

}  // namespace

std::vector<DisplayRow> read_display_rows(const SessionImage& image, Skips& skips) {
  namespace at = entry_layout;
  const ByteView bytes = image.bytes();
  std::vector<DisplayRow> rows;
  const FlatBlock* table = image.first_of_type(content::kTrackTable);
  if (!table) return rows;
  const std::uint64_t limit = table->end();
  std::uint64_t q = table->start + block_layout::kContent;
  for (q = bytes.find(block_layout::kMark, q, limit); q < limit; q = bytes.find(block_layout::kMark, q, limit)) {
    if (bytes.u16(q + block_layout::kContentType) != content::kTrackTableEntry) {
      ++q;
      continue;
    }
    const std::uint64_t size = bytes.u32_or(q + block_layout::kSize, 0);
    if (size < at::kLeastSize || q + 7 + size > limit) break;
    const std::uint64_t n = bytes.u32_or(q + at::kNameLength, 0);
    if (n < 1 || n > at::kMostName || size < n ||
        std::find(at::kSizes.begin(), at::kSizes.end(), size - n) == at::kSizes.end()) {
      skips.add(content::kTrackTableEntry, q, "name or size");
      return {};
    }
    DisplayRow row;
    row.row_type = bytes.u16_or(q + at::kRowType, 0);
    row.name = bytes.text(q + at::kName, n).value_or("");
    if (!rows.empty() && rows.front().name == row.name && rows.front().row_type == row.row_type) break;
    row.width = bytes.u8_or(q + n + at::kWidth, 0);
    row.has_track = row.row_type == DisplayRow::kBasicFolder ||
                    (size - n >= at::kLeastSizeWithTrack && bytes.u8(q + n + at::kHasTrack) == std::uint8_t{1});
    if (bytes.u32(q + n + at::kBeforeId) == kIdMark) row.display_id = bytes.u64(q + n + at::kId).value_or(0);
    rows.push_back(row);
    q += 7 + size;
  }
  return rows;
}

}  // namespace frt

#include "session/clip_groups.h"

#include "model/tempo.h"

namespace frt {
namespace {

constexpr std::uint16_t kGroupList = 0x262c, kGroup = 0x262b, kHeader = 0x2628;

// Group 0x262b, offsets from the block's start: a header block 0x2628 at +9, a counted name at +18. From the name's
// end e:
//   e      u8  not 0 for a trim of another group
//   e + 1  u8  high nibble a: bytes of the source position
//   e + 2  u8  high nibble b: bytes of the length; low nibble c: bytes in front of it
//   e + 3  u8  high nibble d: bytes of the start
//   e + 5  the three values, packed
// and behind the header block six bytes with a flag and a number.
namespace layout {
constexpr std::uint64_t kFirstGroup = 13, kHeaderBlock = 9, kName = 18, kNameText = 22;
constexpr std::uint32_t kLongestName = 255;
constexpr std::uint64_t kSourceWidth = 1, kLengthWidth = 2, kStartWidth = 3, kValues = 5;
constexpr std::uint8_t kWidthLimit = 96;
constexpr std::uint64_t kTrailer = 6, kTrailerByte = 5;
}  // namespace layout

ClipGroupRow read_row(const SessionImage& session, const FlatBlock& group) {
  using namespace layout;
  const ByteView image = session.bytes();
  ClipGroupRow row;
  const FlatBlock* header = session.at(group.start + kHeaderBlock);
  if (!header || header->content_type != kHeader || header->end() > group.end()) return row;
  const std::string_view name = image.text(group.start + kNameText, image.u32_or(group.start + kName, 0)).value_or("");
  if (name.size() > kLongestName) return row;
  row.name = name;

  const std::uint64_t e = group.start + kNameText + name.size();
  row.is_trim = image.u8_or(e, 0) != 0;
  const std::uint8_t first = image.u8_or(e + kSourceWidth, 0xFF), second = image.u8_or(e + kLengthWidth, 0xFF),
                     third = image.u8_or(e + kStartWidth, 0xFF);
  if (first < kWidthLimit && second < kWidthLimit && third < kWidthLimit) {
    const unsigned a = first >> 4u, b = second >> 4u, c = second & 15u, d = third >> 4u;
    const auto source = image.unsigned_of(e + kValues, a);
    const auto length = image.unsigned_of(e + kValues + a + c, b);
    const auto start = image.unsigned_of(e + kValues + a + c + b, d);
    if (source && length && start) {
      row.source = static_cast<std::int64_t>(*source);
      row.length = static_cast<std::int64_t>(*length);
      row.start = static_cast<std::int64_t>(*start);
      if (*source >= kTickOrigin) {
        row.source -= static_cast<std::int64_t>(kTickOrigin);
        row.valid = true;
      }
    }
  }
  if (header->end() + kTrailer <= group.end()) {
    row.trailer_flag = image.u8_or(header->end(), 0) != 0;
    row.trailer_byte = image.u8_or(header->end() + kTrailerByte, 0);
  }
  return row;
}

}  // namespace

std::vector<ClipGroupRow> read_clip_group_rows(const SessionImage& image) {
  std::vector<ClipGroupRow> rows;
  const FlatBlock* list = image.first_of_type(kGroupList);
  if (!list) return rows;
  std::uint64_t groups_end = 0;
  for (const std::uint32_t index : image.of_type(kGroup, list->start + layout::kFirstGroup, list->end())) {
    const FlatBlock& group = image.block(index);
    if (group.start < groups_end) continue;
    groups_end = group.end();
    rows.push_back(read_row(image, group));
  }
  return rows;
}

}  // namespace frt

#include "session/clips/clip_groups.h"

#include "image/content_types.h"
#include "session/clips/clip_entry.h"
#include "session/clips/packed_numbers.h"
#include "session/clock.h"

namespace frt {
namespace {

// Group, from its mark
//   + 9   a block kClipHeader with a counted name; e is the name's end
//     e   u8  not 0 for a trim of another group; then the packed numbers: source position, length, start
// and behind the header block six bytes with a flag and a number.
namespace group_layout {
constexpr std::uint64_t kFirstGroup = 13;  // in the list
constexpr std::uint32_t kLongestName = 255;
constexpr std::uint64_t kTrailer = 6, kTrailerByte = 5;
}  // namespace group_layout

ClipGroupRow read_row(const SessionImage& session, const FlatBlock& group) {
  using namespace group_layout;
  using namespace clip_entry;
  const ByteView image = session.bytes();
  ClipGroupRow row;
  const FlatBlock* header = session.at(group.start + kHeader);
  if (!header || header->content_type != content::kClipHeader || header->end() > group.end()) return row;
  const std::string_view name = image.text(group.start + kNameText, image.u32_or(group.start + kName, 0)).value_or("");
  if (name.size() > kLongestName) return row;
  row.name = name;

  const std::uint64_t e = group.start + kNameText + name.size();
  row.is_trim = image.u8_or(e, 0) != 0;
  const PackedNumbers numbers(image, e);
  if (numbers.width_known(0) && numbers.width_known(1) && numbers.width_known(2)) {
    const auto source = numbers.value(0), length = numbers.value(1), start = numbers.value(2);
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

std::vector<ClipGroupRow> read_clip_group_rows(const SessionImage& image, Skips& skips) {
  std::vector<ClipGroupRow> rows;
  const FlatBlock* list = image.first_of_type(content::kClipGroupList);
  if (!list) return rows;
  std::uint64_t groups_end = 0;
  for (const std::uint32_t index :
       image.of_type(content::kClipGroup, list->start + group_layout::kFirstGroup, list->end())) {
    const FlatBlock& group = image.block(index);
    if (group.start < groups_end) continue;
    groups_end = group.end();
    rows.push_back(read_row(image, group));
    if (!rows.back().valid) skips.add(content::kClipGroup, group.start, "header, name or numbers");
  }
  return rows;
}

}  // namespace frt

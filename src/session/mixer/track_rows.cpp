#include "session/mixer/track_rows.h"

#include <unordered_map>

#include "image/content_types.h"
#include "image/first_fit.h"

namespace frt {
namespace {

// Track data, from its mark to `end`
//   end - 4      u32  display position, unless a block kDisplayPosition in it is followed by another
//   end          u8   solo safe, 0 or 1
// With e the end of the first block inside it:
//   e + 1        u8   not 0 for a visible row
//   e + 6        u16  height, pixels
//   e + 8        u32  comment length n
//   e + 12       n    comment
namespace data_layout {
constexpr std::uint32_t kLeastSizeWithPosition = 8;
constexpr std::uint64_t kPosition = 4;  // before the end
constexpr std::uint64_t kHeads = 18;    // two block heads: less has no child
constexpr std::uint64_t kVisible = 1, kHeight = 6, kCommentLength = 8, kComment = 12;  // from e
constexpr std::uint32_t kCommentLimit = 4096;
}  // namespace data_layout

// A strip row at p begins with a block kRowHead at p + 9. Behind the end e of the kStripName in it stand
//   e            u8   solo, 0 or 1
//   e + 1        u8   automation mode, 0 to 5
namespace row_layout {
constexpr std::uint64_t kHead = 9, kInHead = 18, kAutomationMode = 1;
constexpr std::uint8_t kSoloValues = 2, kAutomationModes = 6;
}  // namespace row_layout

TrackRow read_data(const SessionImage& image, const FlatBlock& block, FirstFit& any_block) {
  namespace at = data_layout;
  const ByteView bytes = image.bytes();
  const std::uint64_t end = block.end(), inside = block.start + block_layout::kContent;
  TrackRow row;
  if (block.size >= at::kLeastSizeWithPosition) {
    row.display_position = bytes.i32(end - at::kPosition).value_or(0);
  }
  if (block.start + at::kHeads < end) {
    const FlatBlock* position = image.first_of_type(content::kDisplayPosition, inside, end);
    if (position && position->end() + 4 < end) row.display_position = bytes.i32(position->end()).value_or(0);
    const FlatBlock* first = any_block.find(inside, end, end);
    if (first && first->end() + at::kComment <= end) {
      const std::uint64_t e = first->end();
      row.visible = bytes.u8_or(e + at::kVisible, 1) != 0;
      row.row_height = bytes.u16_or(e + at::kHeight, 0);
      const std::uint32_t n = bytes.u32_or(e + at::kCommentLength, 0);
      if (n > 0 && n < at::kCommentLimit && e + at::kComment + n <= end) {
        row.comment = bytes.text(e + at::kComment, n).value_or("");
      }
    }
  }
  const auto solo_safe = bytes.u8(end);
  if (solo_safe && *solo_safe < 2) row.solo_safe = Told01{static_cast<std::int8_t>(*solo_safe)};
  return row;
}

void read_solo_and_mode(const SessionImage& image, const StripRow& strip, TrackRow& row) {
  namespace at = row_layout;
  const FlatBlock* head = image.at(strip.start + at::kHead);
  if (!head || head->content_type != content::kRowHead) return;
  const FlatBlock* name = image.first_of_type(content::kStripName, strip.start + at::kInHead, head->end());
  if (!name) return;
  const std::uint64_t e = name->end();
  const auto solo = image.bytes().u8(e);
  if (e < head->end() && solo && *solo < at::kSoloValues) row.solo = Told01{static_cast<std::int8_t>(*solo)};
  const auto mode = image.bytes().u8(e + at::kAutomationMode);
  if (e + at::kAutomationMode + 1 < head->end() && mode && *mode < at::kAutomationModes)
    row.automation_mode = AutomationMode{static_cast<std::int8_t>(*mode)};
}

}  // namespace

std::vector<TrackRow> read_track_rows(const SessionImage& image, const std::vector<StripRow>& rows,
                                      const std::vector<DisplayRow>& display) {
  std::vector<TrackRow> data;
  FirstFit any_block(image);
  for (const std::uint32_t i : image.of_type(content::kTrackData))
    data.push_back(read_data(image, image.block(i), any_block));

  std::vector<TrackRow> result(rows.size());
  const auto give = [&](std::size_t k, std::size_t source) {
    result[k] = data[source];
    read_solo_and_mode(image, rows[k], result[k]);
  };
  if (data.size() == rows.size()) {
    for (std::size_t k = 0; k < rows.size(); ++k) give(k, k);
    return result;
  }
  // The track data stands in the order of the track list then, of which the mixer shows only a part.
  if (display.size() != data.size()) return result;
  std::unordered_map<std::string_view, std::size_t> first_of_name;
  for (std::size_t i = 0; i < display.size(); ++i) first_of_name.try_emplace(display[i].name, i);
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const auto found = first_of_name.find(rows[k].label());
    if (found != first_of_name.end()) give(k, found->second);
  }
  return result;
}

}  // namespace frt

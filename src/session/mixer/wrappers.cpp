#include "session/mixer/wrappers.h"

#include <algorithm>

#include "image/content_types.h"

namespace frt {

const StripRow* row_in(const FlatBlock& wrapper, const std::vector<StripRow>& rows) {
  const auto row = std::upper_bound(rows.begin(), rows.end(), wrapper.start,
                                    [](std::uint64_t start, const StripRow& r) { return start < r.start; });
  return row != rows.end() && row->start < wrapper.end() ? &*row : nullptr;
}

ActivityMarks::ActivityMarks(const SessionImage& image) : marks_(image, content::kActivityMark) {}

const FlatBlock* ActivityMarks::in(const FlatBlock& wrapper) {
  return marks_.find(wrapper.start + block_layout::kContent, wrapper.end(), wrapper.end());
}

std::vector<std::string_view> read_voice_off_names(const SessionImage& image, const std::vector<StripRow>& rows) {
  std::vector<std::string_view> names;
  ActivityMarks marks(image);
  for (const std::uint32_t i : image.of_type(content::kStripWrapper)) {
    const FlatBlock& wrapper = image.block(i);
    const FlatBlock* mark = marks.in(wrapper);
    if (!mark || image.bytes().u16(mark->start - 2) != std::uint16_t{0}) continue;
    const StripRow* row = row_in(wrapper, rows);
    if (!row) continue;
    if (!row->current_name.empty()) names.push_back(row->current_name);
    if (!row->original_name.empty()) names.push_back(row->original_name);
  }
  return names;
}

}  // namespace frt

#include "session/mixer/strip_rows.h"

#include <algorithm>

#include "base/byte_scan.h"
#include "base/text_index.h"
#include "image/content_types.h"
#include "session/mixer/name_table.h"

namespace frt {
namespace {

// A counted name of 1 to 80 bytes: at p + 9 of a strip's name block, at p + 11 of a track table entry.
namespace name_layout {
constexpr std::uint64_t kInNameBlock = 9, kInTableEntry = 11;
constexpr std::uint32_t kLeast = 1, kMost = 80;
}  // namespace name_layout

std::vector<StripRow> rows_without_names(const SessionImage& image) {
  std::vector<StripRow> rows;
  for (const std::uint32_t i : strip_blocks(image)) {
    const FlatBlock& block = image.block(i);
    StripRow row;
    row.start = block.start;
    row.end = block.end();
    row.kind = strip_kind(block.content_type);
    rows.push_back(row);
  }
  return rows;
}

void read_own_name(const SessionImage& image, StripRow& row) {
  const FlatBlock* block = image.first_of_type(content::kStripName, row.start + 1, row.end);
  if (!block) return;
  const std::uint64_t at = block->start + name_layout::kInNameBlock;
  row.has_name_block = true;
  row.name_block_empty = image.bytes().u32(at) == 0u;
  row.original_name = read_name(image.bytes(), at, name_layout::kLeast, name_layout::kMost);
  row.current_name = row.original_name;
}

// The names of the track table become the rows' current names if there is one per row, or two (the table is stored
// twice). Some sessions hold entries without a name; there the entries are counted instead of the names, and such an
// entry leaves its row to its own name.
bool align_names(const SessionImage& image, std::vector<StripRow>& rows) {
  std::vector<std::string_view> entries, names;
  for (const std::uint32_t i : image.of_type(content::kTrackTableEntry)) {
    const std::string_view name = read_name(image.bytes(), image.block(i).start + name_layout::kInTableEntry,
                                            name_layout::kLeast, name_layout::kMost);
    entries.push_back(name);
    if (!name.empty()) names.push_back(name);
  }
  const auto fits = [&rows](std::size_t count) { return count == rows.size() || count == 2 * rows.size(); };
  if (!fits(names.size()) && !fits(entries.size())) return false;
  const auto& source = fits(names.size()) ? names : entries;
  for (std::size_t k = 0; k < rows.size(); ++k) rows[k].current_name = source[k];
  return true;
}

// A row's visibility block follows a byte that is 0 if the row is inactive. The block counts by its mark and
// content type alone, whatever its size says.
void read_row_activity(const SessionImage& image, std::vector<StripRow>& rows) {
  constexpr std::uint64_t kHead = 9;
  const ByteView bytes = image.bytes();
  const auto is_mark = [](const ScanWindow<8>& w, std::size_t i) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == block_layout::kMark) &
                                     static_cast<std::uint8_t>(w[i + 2] == 0) &
                                     static_cast<std::uint8_t>(w[i + 7] == (content::kVisibility & 255)) &
                                     static_cast<std::uint8_t>(w[i + 8] == (content::kVisibility >> 8)));
  };
  std::vector<std::uint64_t> marks;
  std::uint64_t seen = 0;  // rows can overlap: no byte is looked at twice
  for (const StripRow& row : rows) {
    if (row.end < kHead) continue;
    const std::uint64_t from = std::max(row.start, seen), to = row.end - kHead + 1;
    if (from >= to) continue;
    each_position<8>(bytes, from, to, is_mark, [&](std::uint64_t p) {
      marks.push_back(p);
      return true;
    });
    seen = to;
  }
  for (StripRow& row : rows) {
    const auto mark = std::lower_bound(marks.begin(), marks.end(), row.start);
    if (mark == marks.end() || *mark + kHead > row.end || *mark == row.start) continue;
    if (bytes.u8(*mark - 1) == std::uint8_t{0}) row.row_active = false;
  }
}

}  // namespace

StripRows read_strip_rows(const SessionImage& image) {
  StripRows rows{rows_without_names(image), false};
  for (StripRow& row : rows.rows) read_own_name(image, row);
  read_row_activity(image, rows.rows);
  rows.names_aligned = align_names(image, rows.rows);
  return rows;
}

StripTable choose_strip_table(const SessionImage& image, const std::vector<std::string_view>& known_names,
                              const std::vector<StripRow>& rows) {
  StripTable table;
  table.names = read_name_table(image, known_names);
  if (rows.empty()) return table;
  TextIndex labels;
  for (const StripRow& row : rows) {
    if (row.label().empty() || !labels.insert(row.label()).second) return table;
  }
  if (labels.texts() != table.names) {
    table.name_scan_count = static_cast<int>(table.names.size());
    table.names = labels.texts();
  }
  return table;
}

}  // namespace frt

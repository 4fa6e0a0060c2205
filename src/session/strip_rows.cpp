#include "session/strip_rows.h"

#include <algorithm>
#include <array>

#include "base/byte_scan.h"
#include "base/ranges.h"
#include "base/text_index.h"
#include "session/first_fit.h"
#include "session/name_table.h"

namespace frt {
namespace {

constexpr std::uint16_t kAudioRow = 0x261b, kMasterRow = 0x261d;
constexpr std::array<std::uint16_t, 6> kRowTypes = {kAudioRow, kMasterRow, 0x261f, 0x2620, 0x2621, 0x2623};
constexpr std::uint16_t kNameBlock = 0x2619, kVisibilityBlock = 0x2627, kTrackTable = 0x2519, kTableEntry = 0x251a,
                        kWrapper = 0x261c, kActivityMark = 0x200b;

// A counted name of 1 to 80 bytes: at p + 9 of a strip's name block 0x2619, at p + 11 of a table entry 0x251a.
namespace name_layout {
constexpr std::uint64_t kInNameBlock = 9, kInTableEntry = 11;
constexpr std::uint32_t kLeast = 1, kMost = 80;
}  // namespace name_layout

std::vector<StripRow> rows_without_names(const SessionImage& image) {
  std::vector<Range> masters;
  for (const std::uint32_t i : image.of_type(kMasterRow))
    masters.push_back({image.block(i).start, image.block(i).end()});
  const RangeIndex in_master(masters, RangeIndex::Choice::kFirst);
  std::vector<StripRow> rows;
  for (const std::uint32_t i : blocks_of_types(image, kRowTypes)) {
    const FlatBlock& block = image.block(i);
    // A master fader's row is built around an audio row, which is no strip of its own.
    if (block.content_type == kAudioRow && in_master.holding(block.start)) continue;
    StripRow row;
    row.start = block.start;
    row.end = block.end();
    row.content_type = block.content_type;
    rows.push_back(row);
  }
  return rows;
}

void read_own_name(const SessionImage& image, StripRow& row) {
  const FlatBlock* block = image.first_of_type(kNameBlock, row.start + 1, row.end);
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
  for (const std::uint32_t i : image.of_type(kTableEntry)) {
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

// A row's visibility block (0x2627) follows a byte that is 0 if the row is inactive. The block counts by its mark and
// content type alone, whatever its size says.
void read_row_activity(const SessionImage& image, std::vector<StripRow>& rows) {
  constexpr std::uint64_t kHead = 9;
  const ByteView bytes = image.bytes();
  const auto is_mark = [](const ScanWindow<8>& w, std::size_t i) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == block_layout::kMark) &
                                     static_cast<std::uint8_t>(w[i + 2] == 0) &
                                     static_cast<std::uint8_t>(w[i + 7] == (kVisibilityBlock & 255)) &
                                     static_cast<std::uint8_t>(w[i + 8] == (kVisibilityBlock >> 8)));
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

std::vector<StripRow> read_strip_rows(const SessionImage& image, bool* names_aligned) {
  std::vector<StripRow> rows = rows_without_names(image);
  for (StripRow& row : rows) read_own_name(image, row);
  read_row_activity(image, rows);
  const bool aligned = align_names(image, rows);
  if (names_aligned) *names_aligned = aligned;
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

std::vector<std::string_view> read_inactive_names(const SessionImage& image, const std::vector<StripRow>& rows) {
  std::vector<std::string_view> names;
  FirstFit activity_marks(image, kActivityMark);
  for (const std::uint32_t i : image.of_type(kWrapper)) {
    const FlatBlock& wrapper = image.block(i);
    const FlatBlock* mark = activity_marks.find(wrapper.start + block_layout::kContent, wrapper.end(), wrapper.end());
    if (!mark || image.bytes().u16(mark->start - 2) != std::uint16_t{0}) continue;
    const auto row = std::upper_bound(rows.begin(), rows.end(), wrapper.start,
                                      [](std::uint64_t start, const StripRow& r) { return start < r.start; });
    if (row == rows.end() || row->start >= wrapper.end()) continue;
    if (!row->current_name.empty()) names.push_back(row->current_name);
    if (!row->original_name.empty()) names.push_back(row->original_name);
  }
  return names;
}

namespace {

// One entry of the track table, a block 0x251a at q, with n the name's length:
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
constexpr std::uint64_t kWidth = 15, kIdMark = 21, kId = 25, kHasTrack = 68;  // from q + n
constexpr std::uint32_t kLeastSize = 8, kMostName = 200, kIdMarkValue = 42;
constexpr std::array<std::uint64_t, 6> kSizes = {31, 61, 62, 63, 65, 72};  // less n
constexpr std::uint64_t kLeastSizeWithTrack = 62;                          // less n
constexpr std::uint16_t kBasicFolder = 11;
}  // namespace entry_layout

}  // namespace

std::vector<DisplayRow> read_display_rows(const SessionImage& image) {
  namespace at = entry_layout;
  const ByteView bytes = image.bytes();
  std::vector<DisplayRow> rows;
  const FlatBlock* table = image.first_of_type(kTrackTable);
  if (!table) return rows;
  const std::uint64_t limit = table->end();
  std::uint64_t q = table->start + block_layout::kContent;
  for (q = bytes.find(block_layout::kMark, q, limit); q < limit; q = bytes.find(block_layout::kMark, q, limit)) {
    if (bytes.u16(q + block_layout::kContentType) != kTableEntry) {
      ++q;
      continue;
    }
    const std::uint64_t size = bytes.u32_or(q + block_layout::kSize, 0);
    if (size < at::kLeastSize || q + 7 + size > limit) break;
    const std::uint64_t n = bytes.u32_or(q + at::kNameLength, 0);
    if (n < 1 || n > at::kMostName || size < n ||
        std::find(at::kSizes.begin(), at::kSizes.end(), size - n) == at::kSizes.end()) {
      return {};
    }
    DisplayRow row;
    row.row_type = bytes.u16_or(q + at::kRowType, 0);
    row.name = bytes.text(q + at::kName, n).value_or("");
    if (!rows.empty() && rows.front().name == row.name && rows.front().row_type == row.row_type) break;
    row.width = bytes.u8_or(q + n + at::kWidth, 0);
    row.has_track = row.row_type == at::kBasicFolder ||
                    (size - n >= at::kLeastSizeWithTrack && bytes.u8(q + n + at::kHasTrack) == std::uint8_t{1});
    if (bytes.u32(q + n + at::kIdMark) == at::kIdMarkValue) row.display_id = bytes.u64(q + n + at::kId).value_or(0);
    rows.push_back(row);
    q += 7 + size;
  }
  return rows;
}

}  // namespace frt

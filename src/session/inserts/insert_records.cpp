#include "session/inserts/insert_records.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/ranges.h"
#include "image/content_types.h"
#include "session/inserts/plugin_controls.h"
#include "session/inserts/state_scan.h"

namespace frt {
namespace {

// Insert, from its mark
//   + 9   u8   channels of the insert
//   + 13  u32  length of what it holds, without the zeros that fill it up: it ends at + 17 + this
//   + 17       first of its chunks
//   + 25  8    signature: maker code, then plug-in code
//   + 33       a text of up to 64 characters, or none
namespace insert_layout {
constexpr std::uint64_t kChannels = 9, kInnerLength = 13, kInner = 17, kSignature = 25, kText = 33;
constexpr std::uint64_t kSignatureLength = 8, kMostText = 64;
}  // namespace insert_layout

// Behind an insert: the slot that names its key input, and a mark ahead of which a byte says "bypassed".
constexpr std::uint64_t kKeyId = 9;
constexpr std::uint16_t kNoKey = 0xFFFF;

bool is_printable(char c) { return c >= 32 && c <= 126; }

std::string signature_of(ByteView image, std::uint64_t start) {
  std::string signature(image.text(start + insert_layout::kSignature, insert_layout::kSignatureLength).value_or(""));
  for (char& c : signature) {
    if (!is_printable(c)) c = '.';
  }
  return signature;
}

std::string_view text_of(ByteView image, std::uint64_t start) {
  const ByteView there = image.clamped(start + insert_layout::kText, insert_layout::kMostText);
  const std::string_view text = there.text(0, there.size()).value_or("");
  const auto end = std::find_if_not(text.begin(), text.end(), is_printable);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::uint64_t trimmed_end(ByteView image, const FlatBlock& block) {
  namespace at = insert_layout;
  const std::uint64_t end = block.end();
  const std::uint64_t inner_end = block.start + at::kInner + image.u32_or(block.start + at::kInnerLength, 0);
  if (inner_end < block.start + at::kText || inner_end > end) return end;
  const std::string_view rest = image.text(inner_end, end - inner_end).value_or("");
  return rest.find_first_not_of('\0') == rest.npos ? inner_end : end;
}

// Inserts are looked through from end to end. Of an image made to nest them without end, those are left unread with
// which all together would come to more than twice the image.
class ScanAllowance {
 public:
  explicit ScanAllowance(ByteView image) : left_(2 * std::uint64_t{image.size()} + (std::uint64_t{1} << 20)) {}
  bool take(const FlatBlock& block) {
    const std::uint64_t length = block.end() - block.start;
    if (length > left_) return false;
    left_ -= length;
    return true;
  }

 private:
  std::uint64_t left_;
};

// The strip rows that an insert can lie in, by block. Other rows hold none.
class RowFinder {
 public:
  explicit RowFinder(const SessionImage& image)
      : audio_(rows_of(image, content::kAudioRow)), instrument_(rows_of(image, content::kInstrumentRow)) {}

  // The smallest audio or aux row around the position, else the smallest instrument row.
  Range around(std::uint64_t position) const {
    for (const Rows* rows : {&audio_, &instrument_}) {
      if (const auto row = rows->index.holding(position)) return rows->ranges[*row];
    }
    return {};
  }

 private:
  struct Rows {
    std::vector<Range> ranges;
    RangeIndex index;
  };
  static Rows rows_of(const SessionImage& image, std::uint16_t content_type) {
    Rows rows;
    for (const std::uint32_t i : image.of_type(content_type)) {
      rows.ranges.push_back({image.block(i).start, image.block(i).end()});
    }
    rows.index = RangeIndex(rows.ranges, RangeIndex::Choice::kSmallest);
    return rows;
  }

  Rows audio_, instrument_;
};

// What stands loose behind the insert's block.
void read_marks(const SessionImage& image, const FlatBlock& block, InsertRecord& insert) {
  const ByteView bytes = image.bytes();
  if (const FlatBlock* slot = image.first_of_type(content::kSlot, insert.end)) {
    const std::uint16_t id = bytes.u16_or(slot->start + kKeyId, kNoKey);
    if (id != kNoKey) insert.key_id = id;
  }
  insert.inactive = bytes.u8(block.end()) == std::uint8_t{0};
  const FlatBlock* mark = image.first_of_type(content::kBypassMark, insert.end);
  insert.bypassed = mark && mark->start > 0 && bytes.u8(mark->start - 1) == std::uint8_t{1};
}

}  // namespace

std::vector<InsertRecord> read_inserts(const SessionImage& image) {
  namespace at = insert_layout;
  const ByteView bytes = image.bytes();
  const RowFinder rows(image);
  ScanAllowance allowance(bytes);
  std::vector<InsertRecord> inserts;
  const auto blocks = image.of_type(content::kInsert);
  inserts.reserve(blocks.size());
  for (const std::uint32_t i : blocks) {
    const FlatBlock& block = image.block(i);
    if (block.start + at::kText > bytes.size()) continue;
    InsertRecord& insert = inserts.emplace_back();
    insert.start = block.start;
    insert.end = block.end();
    insert.channels = bytes.u8_or(block.start + at::kChannels, 1);
    insert.signature = signature_of(bytes, block.start);
    insert.product_text = text_of(bytes, block.start);
    const Range row = rows.around(block.start);
    insert.row_start = row.start;
    insert.row_end = row.end;
    const bool read = allowance.take(block);
    if (read) {
      insert.end = trimmed_end(bytes, block);
      scan_state(bytes, insert);
    }
    read_marks(image, block, insert);
    if (!read) insert.end = block.start + at::kText;  // nothing to look through for whoever comes behind either
  }
  read_plugin_controls(image, inserts);
  return inserts;
}

}  // namespace frt

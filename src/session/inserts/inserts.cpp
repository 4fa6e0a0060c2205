#include "session/inserts/inserts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "base/byte_scan.h"
#include "base/min_tree.h"
#include "image/content_types.h"
#include "session/inserts/insert_records.h"

namespace frt {
namespace {

// ---- the session's own list of plug-ins ----

// Plug-in name, from the block's mark: u32 name length n at + 10 or + 11, the name, then 8 bytes of signature, two
// codes of 4 characters with the last first. `kRest` bytes of the size hold no name.
namespace plugin_name_layout {
struct Form {
  std::uint64_t length;
  std::uint64_t rest;
};
constexpr Form kForms[] = {{10, 13}, {11, 14}};
constexpr std::uint32_t kLeastSize = 14, kMostSize = 4000, kMostName = 60;
constexpr std::uint64_t kSignature = 8, kBehindSize = 9;
}  // namespace plugin_name_layout

std::optional<std::pair<std::string, std::string_view>> plugin_name_at(ByteView image, std::uint64_t p) {
  namespace at = plugin_name_layout;
  const std::uint32_t size = image.u32_or(p + block_layout::kSize, 0);
  if (size < at::kLeastSize || size > at::kMostSize || !image.has(p, size + at::kBehindSize)) return std::nullopt;
  for (const at::Form& form : at::kForms) {
    const std::string_view name = read_name(image, p + form.length, 1, at::kMostName);
    if (name.empty() || name.size() + form.rest > size) continue;
    const std::string_view code = image.text(p + form.length + 4 + name.size(), at::kSignature).value_or("");
    if (code.size() < at::kSignature || !ascii_ok(code)) continue;
    std::string key(code);
    std::reverse(key.begin(), key.begin() + 4);
    std::reverse(key.begin() + 4, key.end());
    return std::pair(std::move(key), name);
  }
  return std::nullopt;
}

// The first name of each plug-in. A block counts by its mark and content type, whatever its block type says.
auto read_session_plugin_names(ByteView image) {
  decltype(Inserts::plugin_names) names;
  const auto is_mark = [](const ScanWindow<8>& w, std::size_t i) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == block_layout::kMark) &
                                     static_cast<std::uint8_t>(w[i + 7] == (content::kPluginName & 255)) &
                                     static_cast<std::uint8_t>(w[i + 8] == (content::kPluginName >> 8)));
  };
  each_position<8>(image, 0, image.size(), is_mark, [&](std::uint64_t p) {
    if (auto found = plugin_name_at(image, p)) names.insert(std::move(*found));
    return true;
  });
  return names;
}

// ---- inserts onto strips ----

// The first strip whose level record lies inside a row.
class StripFinder {
 public:
  explicit StripFinder(const std::vector<StripRecord>& strips) {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> sorted;  // position of the record, strip
    for (std::size_t i = 0; i < strips.size(); ++i) {
      if (strips[i].has_mixer_data) sorted.emplace_back(strips[i].record_position, i);
    }
    std::sort(sorted.begin(), sorted.end());
    std::vector<std::uint64_t> numbers;
    for (const auto& [position, strip] : sorted) {
      positions_.push_back(position);
      numbers.push_back(strip);
    }
    numbers_ = MinTree(numbers);
  }

  std::optional<std::size_t> in_row(std::uint64_t start, std::uint64_t end) const {
    const auto from = std::upper_bound(positions_.begin(), positions_.end(), start);
    const auto to = std::lower_bound(from, positions_.end(), end);
    return numbers_.least(static_cast<std::size_t>(from - positions_.begin()),
                          static_cast<std::size_t>(to - positions_.begin()));
  }

 private:
  std::vector<std::uint64_t> positions_;
  MinTree numbers_;
};

void assemble_strip_inserts(const std::vector<StripRecord>& strips, Inserts& inserts) {
  const StripFinder finder(strips);
  for (std::uint32_t i = 0; i < inserts.records.size(); ++i) {
    const InsertRecord& insert = inserts.records[i];
    const auto strip = finder.in_row(insert.row_start, insert.row_end);
    const std::string_view name = strip ? strips[*strip].name : std::string_view();
    if (strip) inserts.strips[name].push_back(i);
    if (insert.channels > 1) inserts.multi_mono.push_back({i, name});
  }
}

// ---- hardware inserts ----

// Slot of a hardware insert, a block inside it, from its mark: u32 length of its text at + 45, then the text.
namespace slot_layout {
constexpr std::uint64_t kLength = 45, kText = 49;
constexpr std::uint32_t kLeastSize = 46, kMostText = 128;
}  // namespace slot_layout

std::string_view slot_text(const SessionImage& image, const FlatBlock& insert) {
  namespace at = slot_layout;
  const std::uint64_t end = insert.end();
  const FlatBlock* slot = image.first_of_type(content::kSlot, insert.start + block_layout::kContent,
                                              end - std::min(end, block_layout::kContent));
  if (!slot || slot->size < at::kLeastSize) return "<unnamed>";
  const auto length = image.bytes().u32(slot->start + at::kLength);
  if (!length || *length < 1 || *length > at::kMostText) return "<unnamed>";
  const auto text = image.bytes().text(slot->start + at::kText, *length);
  return text && ascii_ok(*text) ? *text : "<unnamed>";
}

std::vector<HardwareInsert> read_hardware_inserts(const SessionImage& image, const std::vector<StripRow>& rows) {
  // The first row that ends at or behind a position is the one with which the greatest end so far gets there.
  std::vector<std::uint64_t> furthest;
  for (const StripRow& row : rows) furthest.push_back(std::max(row.end, furthest.empty() ? 0 : furthest.back()));
  std::vector<HardwareInsert> inserts;
  for (const std::uint32_t i : image.of_type(content::kHardwareInsert)) {
    const FlatBlock& block = image.block(i);
    const auto row =
        static_cast<std::size_t>(std::lower_bound(furthest.begin(), furthest.end(), block.end()) - furthest.begin());
    const bool inside = row < rows.size() && rows[row].start < block.start;
    const std::string_view track = inside ? rows[row].label() : std::string_view();
    inserts.push_back({track.empty() ? "<unknown track>" : track, slot_text(image, block)});
  }
  return inserts;
}

}  // namespace

Inserts read_all_inserts(const SessionImage& image, const std::vector<StripRecord>& strips,
                         const std::vector<StripRow>& rows) {
  Inserts inserts;
  inserts.image = image.bytes();
  inserts.records = read_inserts(image);
  inserts.plugin_names = read_session_plugin_names(image.bytes());
  assemble_strip_inserts(strips, inserts);
  inserts.hardware = read_hardware_inserts(image, rows);
  return inserts;
}

}  // namespace frt

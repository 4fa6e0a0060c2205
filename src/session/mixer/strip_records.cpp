#include "session/mixer/strip_records.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/next_free.h"
#include "base/ranges.h"
#include "base/text_index.h"
#include "image/bus_finder.h"
#include "image/content_types.h"
#include "image/counted_texts.h"
#include "session/mixer/level_record.h"

namespace frt {
namespace {

// Records of one strip that stand this close behind each other belong together: the strip's own, then its sends.
constexpr std::uint64_t kGroupGap = 2700;

struct Level {
  std::uint64_t at = 0;  // position of the fader value
  std::size_t strip = 0;
  std::int32_t fader = 0;
};

// The record opens a mix group that holds no slot behind it: not a strip's own level as a rule, but a further copy.
bool is_plain(const SessionImage& image, const FlatBlock& record) {
  if (record.start < 9) return false;
  const FlatBlock* group = image.at(record.start - 9);
  return group && group->content_type == content::kMixGroup &&
         !image.first_of_type(content::kSlot, record.start + 1, group->end());
}

// Answers which strip's name stood last before a position. The names are only sought when a record needs it: where
// rows and table line up, the rows answer.
class LastNameBefore {
 public:
  LastNameBefore(ByteView bytes, const std::vector<std::string_view>& names) : bytes_(bytes), names_(names) {}

  std::optional<std::size_t> find(std::uint64_t position) {
    if (!searched_) search();
    const auto next = std::lower_bound(found_.begin(), found_.end(), position,
                                       [](const auto& name, std::uint64_t p) { return name.first < p; });
    if (next == found_.begin()) return std::nullopt;
    return (next - 1)->second;
  }

 private:
  void search() {
    searched_ = true;
    TextIndex index;
    std::vector<std::uint32_t> strip_of;  // a name that occurs twice stands for its first strip
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (index.insert(names_[i]).second) strip_of.push_back(static_cast<std::uint32_t>(i));
    }
    each_counted_text<1, 80>(bytes_, 0, bytes_.size(), [&](std::uint64_t p, std::string_view text) {
      if (const auto number = index.find(text)) found_.emplace_back(p, strip_of[*number]);
      return true;
    });
  }

  ByteView bytes_;
  const std::vector<std::string_view>& names_;
  std::vector<std::pair<std::uint64_t, std::uint32_t>> found_;  // by position
  bool searched_ = false;
};

// The level records that count, in file order, with the strip each is for.
std::vector<Level> read_levels(const SessionImage& image, const std::vector<std::string_view>& strip_table,
                               const std::vector<StripRow>& rows, bool aligned) {
  std::vector<Range> row_ranges;
  if (aligned) {
    for (const StripRow& row : rows) row_ranges.push_back({row.start, row.end});
  }
  const RangeIndex row_of(row_ranges, RangeIndex::Choice::kFirst);
  LastNameBefore name_before(image.bytes(), strip_table);
  std::vector<bool> seen(strip_table.size(), false);
  std::vector<Level> levels;
  for (const std::uint32_t i : image.of_type(content::kLevelRecord)) {
    const FlatBlock& block = image.block(i);
    const auto fader = read_level(image.bytes(), block);
    if (!fader) continue;
    const std::uint64_t at = block.start + level_layout::kFader;
    auto strip = row_of.holding(at);
    if (!strip) strip = name_before.find(at);
    if (!strip || (seen[*strip] && is_plain(image, block))) continue;
    seen[*strip] = true;
    levels.push_back({at, *strip, *fader});
  }
  return levels;
}

void set_level(ByteView bytes, const Level& level, StripRecord& strip) {
  namespace at = level_layout;
  const std::uint64_t start = level.at - at::kFader;
  strip.fader_db = level.fader / 10.0;
  strip.muted = bytes.u32(start + at::kMuted) == 1u;
  strip.pan = bytes.i32(start + at::kPan).value_or(0);
  strip.second_pan = bytes.i32(start + at::kSecondPan).value_or(0);
  strip.record_position = level.at;
  strip.has_mixer_data = true;
}

}  // namespace

std::vector<StripRecord> read_strip_records(const SessionImage& image, const std::vector<std::string_view>& strip_table,
                                            const std::vector<std::string_view>& bus_names,
                                            const std::vector<StripRow>& rows) {
  std::vector<StripRecord> strips(strip_table.size());
  for (std::size_t i = 0; i < strips.size(); ++i) strips[i].name = strip_table[i];
  const bool aligned = std::equal(rows.begin(), rows.end(), strip_table.begin(), strip_table.end(),
                                  [](const StripRow& row, std::string_view name) { return row.current_name == name; });
  const std::vector<Level> levels = read_levels(image, strip_table, rows, aligned);
  NearestBus buses(image.bytes(), bus_names);
  NextFree free_strips(strips.size());
  for (std::size_t first = 0, next = 0; first < levels.size(); first = next) {
    next = first + 1;
    while (next < levels.size() && levels[next].strip == levels[first].strip &&
           levels[next].at - levels[next - 1].at <= kGroupGap) {
      ++next;
    }
    std::size_t index = levels[first].strip;
    if (strips[index].has_mixer_data) {
      // Two strips can share a name; the second group is the second strip's. Rows leave no such doubt.
      if (aligned) continue;
      index = free_strips.from(index);
      if (index == strips.size()) continue;
    }
    StripRecord& strip = strips[index];
    set_level(image.bytes(), levels[first], strip);
    free_strips.take(index);
    for (std::size_t i = first + 1; i < next; ++i) {
      const auto bus = buses.near(levels[i].at);
      if (!bus) continue;
      SendRecord send;
      send.bus = *bus;
      send.level_db = levels[i].fader / 10.0;
      strip.sends.push_back(send);
    }
  }
  return strips;
}

}  // namespace frt

#include "session/mixer/playlist_owners.h"

#include <algorithm>
#include <optional>
#include <random>
#include <string_view>
#include <utility>

#include "base/byte_scan.h"
#include "base/min_tree.h"
#include "image/content_types.h"
#include "session/mixer/wrappers.h"

namespace frt {
namespace {

// Track entry, from its mark
//   p + 9       u32  name length n, 1 to 80
//   p + 13      n    name
//   mark        4    42, 0, 0, 0: the last such mark behind the name, at which 12 bytes are left, counts
//   mark + 4    8    the entry's id
namespace entry_layout {
constexpr std::uint64_t kName = 9, kText = 13;
constexpr std::uint32_t kLeastName = 1, kMostName = 80;
constexpr std::uint32_t kMark = 42;
constexpr std::uint64_t kId = 4, kMarkAndId = 12;
constexpr std::uint64_t kLeastLeft = 22;  // bytes from p to the image's end
}  // namespace entry_layout

// Strip wrapper. With e the end of the strip row inside it:
//   e           u32  the current playlist
//   e + 4       u16  count c
//   e + 6       u32  c playlists, each the number of an entry in the track list
//   e + 6 + 4c  u16  stands right before the activity mark
// Sessions of 2014 to 2024 hold this list. Where it does not read so, the ids of the playlists stand somewhere in the
// wrapper.
namespace wrapper_layout {
constexpr std::uint64_t kCount = 4, kNumbers = 6, kWordBeforeMark = 2;
constexpr std::uint64_t kLeastLeft = 18;  // bytes from p to the image's end
}  // namespace wrapper_layout

struct TrackEntry {
  std::uint64_t id = 0;
  std::string_view name;
};

// An entry's mark is found by stepping from the name's end: 12 bytes on from a mark, 1 byte on from anything else, to
// the last mark that leaves 12 bytes of the block. As the step from a mark doesn't depend on where the walk began,
// the walks of all entries share their paths, and entries that overlap cost no more than those that don't: a walk an
// entry took 21.6 s for a session of 1 MB of overlapping entries, this 0.02 s.
class MarkWalks {
 public:
  explicit MarkWalks(ByteView bytes) : bytes_(bytes) {}

  struct Walk {
    std::uint64_t from = 0, end = 0;
    std::optional<std::uint64_t> last_mark;
  };

  // Walks come by the start of their entry. Fills in last_mark.
  void run(std::vector<Walk>& walks) {
    collect_marks(walks);
    ahead_.resize(marks_.size());
    for (std::size_t i = 0; i < marks_.size(); ++i) ahead_[i] = first_mark(marks_[i] + entry_layout::kMarkAndId);
    // By ascending end, every shortcut found for one walk is good for the next.
    std::vector<std::size_t> order(walks.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&walks](std::size_t a, std::size_t b) { return walks[a].end < walks[b].end; });
    for (const std::size_t i : order) {
      const std::size_t first = first_mark(walks[i].from);
      if (fits(first, walks[i].end)) walks[i].last_mark = marks_[last_from(first, walks[i].end)];
    }
  }

 private:
  void collect_marks(const std::vector<Walk>& walks) {
    const auto is_mark = [](const ScanWindow<3>& w, std::size_t i) {
      return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == entry_layout::kMark) &
                                       static_cast<std::uint8_t>((w[i + 1] | w[i + 2] | w[i + 3]) == 0));
    };
    std::vector<std::pair<std::uint64_t, std::uint64_t>> spans;
    for (const Walk& walk : walks) spans.emplace_back(walk.from, walk.end);
    std::sort(spans.begin(), spans.end());
    std::uint64_t seen = 0;
    for (const auto& [from, to] : spans) {
      each_position<3>(bytes_, std::max(from, seen), to, is_mark, [this](std::uint64_t p) {
        if (bytes_.u32(p) == entry_layout::kMark) marks_.push_back(p);
        return true;
      });
      seen = std::max(seen, to);
    }
  }
  std::size_t first_mark(std::uint64_t from) const {
    return static_cast<std::size_t>(std::lower_bound(marks_.begin(), marks_.end(), from) - marks_.begin());
  }
  bool fits(std::size_t mark, std::uint64_t end) const {
    return mark < marks_.size() && marks_[mark] + entry_layout::kMarkAndId <= end;
  }
  std::size_t last_from(std::size_t first, std::uint64_t end) {
    std::size_t last = first;
    while (fits(ahead_[last], end)) last = ahead_[last];
    for (std::size_t i = first; i != last;) i = std::exchange(ahead_[i], last);
    return last;
  }

  ByteView bytes_;
  std::vector<std::uint64_t> marks_;  // by position
  std::vector<std::size_t> ahead_;    // a later mark of the same walk; marks_.size() for none
};

// The entries that carry an id, in file order.
std::vector<TrackEntry> read_entries(const SessionImage& image) {
  namespace at = entry_layout;
  const ByteView bytes = image.bytes();
  std::vector<std::string_view> names;
  std::vector<MarkWalks::Walk> walks;
  for (const std::uint32_t i : image.of_type(content::kTrackEntry)) {
    const FlatBlock& block = image.block(i);
    if (!bytes.has(block.start, at::kLeastLeft)) continue;
    const std::string_view name = read_name(bytes, block.start + at::kName, at::kLeastName, at::kMostName);
    const std::uint64_t behind = block.start + at::kText + name.size();
    if (name.empty() || behind + at::kMarkAndId > block.end()) continue;
    names.push_back(name);
    walks.push_back({behind, block.end(), {}});
  }
  MarkWalks(bytes).run(walks);
  std::vector<TrackEntry> entries;
  for (std::size_t i = 0; i < walks.size(); ++i) {
    if (!walks[i].last_mark) continue;
    if (const auto id = bytes.u64(*walks[i].last_mark + at::kId)) entries.push_back({*id, names[i]});
  }
  return entries;
}

// The names of the track list's entries by number, empty for a name that does not read.
std::vector<std::string_view> read_entry_names(const SessionImage& image) {
  std::vector<std::string_view> names;
  const FlatBlock* list = image.first_of_type(content::kTrackEntries);
  if (!list) return names;
  std::uint64_t behind_child = list->start + block_layout::kContent;
  for (const FlatBlock& block : image.blocks_in(behind_child, list->end())) {
    if (block.start < behind_child || block.end() > list->end()) continue;
    behind_child = block.end();
    if (block.content_type != content::kTrackEntry) continue;
    // By number, so of any length that the entry holds.
    names.push_back(
        read_name(image.bytes(), block.start + entry_layout::kName, entry_layout::kLeastName, UINT32_MAX, block.end()));
  }
  return names;
}

// The numbers of a wrapper's playlist list, each below entry_count; nothing if the wrapper holds no such list.
std::optional<std::vector<std::uint32_t>> read_listed(ByteView bytes, const StripRow& row, std::uint64_t activity_mark,
                                                      std::size_t entry_count) {
  namespace at = wrapper_layout;
  const auto count = bytes.u16(row.end + at::kCount);
  if (!count || row.end + at::kNumbers + 4 * std::uint64_t{*count} + at::kWordBeforeMark != activity_mark) {
    return std::nullopt;
  }
  std::vector<std::uint32_t> numbers;
  for (std::uint64_t k = 0; k < *count; ++k) {
    const auto number = bytes.u32(row.end + at::kNumbers + 4 * k);
    if (!number || *number >= entry_count) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

// Where ids stand: for each distinct id the entries that carry it, found by the 8 bytes. A std::unordered_map, asked at
// every byte of every wrapper, took 0.60 s for a session of 64 MiB whose playlists go by ids, this 0.21 s. Ids made to
// fall into one place are no danger: where the search begins differs from run to run.
class IdIndex {
 public:
  explicit IdIndex(const std::vector<TrackEntry>& entries) : slots_(64) {
    while (slots_.size() < entries.size() * 4) slots_.resize(slots_.size() * 2);
    filter_.resize(slots_.size() * 8);
    for (const TrackEntry& entry : entries) add(entry.id);
  }

  // The number of the id, ids counted in the order of their first entry.
  std::optional<std::uint32_t> find(std::uint64_t id) const {
    const std::uint64_t mixed = mix(id);
    if (!filter_[mixed & (filter_.size() - 1)]) return std::nullopt;
    for (std::size_t slot = home(mixed); slots_[slot] != 0; slot = (slot + 1) & (slots_.size() - 1)) {
      if (ids_[slots_[slot] - 1] == id) return slots_[slot] - 1;
    }
    return std::nullopt;
  }
  std::size_t size() const { return ids_.size(); }
  // The number of each entry's id.
  const std::vector<std::uint32_t>& id_of_entry() const { return id_of_entry_; }

 private:
  std::uint64_t mix(std::uint64_t id) const {
    id ^= seed_;
    id = (id ^ (id >> 31)) * 0x9E3779B97F4A7C15u;
    id = (id ^ (id >> 29)) * 0xBF58476D1CE4E5B9u;
    return id >> 24;
  }
  std::size_t home(std::uint64_t mixed) const { return static_cast<std::size_t>(mixed >> 8) & (slots_.size() - 1); }
  void add(std::uint64_t id) {
    const std::uint64_t mixed = mix(id);
    filter_[mixed & (filter_.size() - 1)] = 1;
    std::size_t slot = home(mixed);
    while (slots_[slot] != 0 && ids_[slots_[slot] - 1] != id) slot = (slot + 1) & (slots_.size() - 1);
    if (slots_[slot] == 0) {
      ids_.push_back(id);
      slots_[slot] = static_cast<std::uint32_t>(ids_.size());
    }
    id_of_entry_.push_back(slots_[slot] - 1);
  }

  const std::uint64_t seed_ = std::random_device{}() * std::uint64_t{0x100000001};
  std::vector<std::uint32_t> slots_;  // number + 1, 0 for free; the size is a power of two
  std::vector<std::uint8_t> filter_;  // 0 where no id can be: most bytes of a wrapper end here
  std::vector<std::uint64_t> ids_;
  std::vector<std::uint32_t> id_of_entry_;
};

// The latest wrapper that holds an entry, and the latest whose strip bears another name than that one's: between them
// they answer for an entry of any name.
struct Holders {
  struct One {
    std::size_t wrapper = 0;  // running number + 1, 0 for none
    std::size_t strip = 0;
  };
  One latest, other;

  void add(std::size_t wrapper, std::size_t strip, const std::vector<StripRecord>& strips) {
    if (latest.wrapper != 0 && strips[latest.strip].name != strips[strip].name) other = latest;
    latest = {wrapper, strip};
  }
  // The latest whose strip is not named so.
  const One& for_name(std::string_view name, const std::vector<StripRecord>& strips) const {
    return latest.wrapper == 0 || strips[latest.strip].name != name ? latest : other;
  }
};

}  // namespace

ByName<std::size_t> read_playlist_owners(const SessionImage& image, const std::vector<StripRecord>& strips,
                                         const std::vector<StripRow>& rows) {
  const ByteView bytes = image.bytes();
  // Strips with a level record, by its position.
  std::vector<std::pair<std::uint64_t, std::uint64_t>> records;
  for (std::size_t i = 0; i < strips.size(); ++i) {
    if (strips[i].has_mixer_data) records.emplace_back(strips[i].record_position, i);
  }
  if (records.empty()) return {};
  std::sort(records.begin(), records.end());
  std::vector<std::uint64_t> indices;
  for (const auto& record : records) indices.push_back(record.second);
  const MinTree least_index(indices);
  const auto strip_in = [&](const FlatBlock& wrapper) {
    const auto from = std::upper_bound(records.begin(), records.end(), std::pair(wrapper.start, UINT64_MAX));
    const auto to = std::lower_bound(from, records.end(), std::pair(wrapper.end(), std::uint64_t{0}));
    return least_index.least(static_cast<std::size_t>(from - records.begin()),
                             static_cast<std::size_t>(to - records.begin()));
  };

  const auto wrappers = image.of_type(content::kStripWrapper);
  if (wrappers.empty()) return {};
  const std::vector<TrackEntry> entries = read_entries(image);
  const std::vector<std::string_view> listed_names = read_entry_names(image);
  const IdIndex ids(entries);
  std::vector<Holders> by_number(listed_names.size()), by_id(ids.size());
  ActivityMarks activity_marks(image);

  // Wrappers stand side by side. In an image made to nest them reading ends when they have cost the image's own size
  // several times over.
  std::uint64_t bytes_to_read = image.size() * 4;
  for (std::size_t w = 0; w < wrappers.size(); ++w) {
    const FlatBlock& wrapper = image.block(wrappers[w]);
    if (!bytes.has(wrapper.start, wrapper_layout::kLeastLeft)) continue;
    const auto strip = strip_in(wrapper);
    if (!strip) continue;
    const StripRow* row = row_in(wrapper, rows);
    const FlatBlock* mark = activity_marks.in(wrapper);
    if (mark && row) {
      if (const auto listed = read_listed(bytes, *row, mark->start, listed_names.size())) {
        if (4 * listed->size() > bytes_to_read) break;
        bytes_to_read -= 4 * listed->size();
        for (const std::uint32_t number : *listed) by_number[number].add(w + 1, *strip, strips);
        continue;
      }
    }
    if (entries.empty()) continue;
    if (wrapper.end() - wrapper.start > bytes_to_read) break;
    bytes_to_read -= wrapper.end() - wrapper.start;
    for (std::uint64_t q = wrapper.start; q + 8 <= wrapper.end(); ++q) {
      const auto id = ids.find(bytes.u64(q).value_or(0));
      if (id && by_id[*id].latest.wrapper != w + 1) by_id[*id].add(w + 1, *strip, strips);
    }
  }

  // Of all that claim a name the latest wrapper has it.
  ByName<Holders::One> owners;
  const auto claim = [&](std::string_view name, const Holders& holders) {
    const Holders::One& holder = holders.for_name(name, strips);
    if (name.empty() || holder.wrapper == 0) return;
    auto& owner = owners.try_emplace(std::string(name)).first->second;
    if (holder.wrapper > owner.wrapper) owner = holder;
  };
  for (std::size_t i = 0; i < listed_names.size(); ++i) claim(listed_names[i], by_number[i]);
  for (std::size_t i = 0; i < entries.size(); ++i) claim(entries[i].name, by_id[ids.id_of_entry()[i]]);
  ByName<std::size_t> result;
  for (const auto& [name, owner] : owners) result.emplace_hint(result.end(), name, owner.strip);
  return result;
}

}  // namespace frt

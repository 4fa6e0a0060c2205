#include "session/mixer/track_routing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "base/byte_scan.h"
#include "base/min_tree.h"
#include "base/ranges.h"
#include "image/content_types.h"
#include "image/counted_texts.h"
#include "image/first_fit.h"
#include "session/mixer/id_mark.h"
#include "session/mixer/lanes.h"
#include "session/mixer/level_record.h"

namespace frt {
namespace {

// A row holds mixes; the first is the strip's own, each later one a send's. A mix at q holds
//   q + 9   a level record
// and a slot, at p: the first counted text of 1 to 80 bytes from p + 11 on is what the mix plays to.
namespace mix_layout {
constexpr std::uint64_t kLevel = 9, kInSlot = 11;
}  // namespace mix_layout

// A row's input path, somewhere beside its mixes: a counted text of 1 to 80 bytes; from the text's end
//   + 0   u32  0
//   + 4   u32  42, the mark before ids
//   + 8   u32  id0
//   + 12  u32  id1
//   + 16  u8   0
//   + 17  u8   kind
//   + 18  u16  0
namespace input_layout {
constexpr std::uint64_t kZero = 0, kMark = 4, kId0 = 8, kId1 = 12, kByte = 16, kKind = 17, kWord = 18, kSize = 20;
}  // namespace input_layout

using RouteKey = std::tuple<std::uint32_t, std::uint32_t, std::uint8_t>;

RouteKey key_of(const Route& route) { return {route.id0, route.id1, route.kind}; }

// The bytes of an image made of nested rows and mixes, or of lanes that reach over each other, would be read again and
// again: what all rows together may read is bounded by what rows beside each other hold.
class Allowance {
 public:
  explicit Allowance(std::uint64_t amount) : left_(amount) {}
  bool take(std::uint64_t amount) {
    if (amount > left_) return false;
    left_ -= amount;
    return true;
  }

 private:
  std::uint64_t left_;
};

// The first strip with mixer data whose level record stands in a range.
class StripsByPlace {
 public:
  explicit StripsByPlace(const std::vector<StripRecord>& strips) : strips_(strips) {
    for (std::size_t i = 0; i < strips.size(); ++i) {
      if (strips[i].has_mixer_data) places_.emplace_back(strips[i].record_position, i);
    }
    std::sort(places_.begin(), places_.end());
    std::vector<std::uint64_t> indices;
    for (const auto& [position, index] : places_) indices.push_back(index);
    first_ = MinTree(indices);
  }

  const StripRecord* first_in(std::uint64_t start, std::uint64_t end) const {
    const auto from = std::lower_bound(places_.begin(), places_.end(), std::pair(start + 1, std::size_t{0}));
    const auto to = std::lower_bound(from, places_.end(), std::pair(end, std::size_t{0}));
    const auto least =
        first_.least(static_cast<std::size_t>(from - places_.begin()), static_cast<std::size_t>(to - places_.begin()));
    return least ? &strips_[static_cast<std::size_t>(*least)] : nullptr;
  }

 private:
  const std::vector<StripRecord>& strips_;
  std::vector<std::pair<std::uint64_t, std::size_t>> places_;
  MinTree first_;
};

class RowReader {
 public:
  RowReader(const SessionImage& image, const std::vector<Route>& routes)
      : image_(image),
        any_block_(image),
        allowance_(kTimes * image.size() + kSlack),
        points_(image.size() / 3 + kSlack) {
    for (const Route& route : routes) known_.push_back(key_of(route));
    std::sort(known_.begin(), known_.end());
  }

  // Fills in what the row's mixes and its input tell. False if the image's rows hold too much.
  bool read(TrackRouting& row) {
    const auto mixes = image_.of_type(content::kMixGroup, row.row_start + 1, row.row_end);
    RowWidth width(image_, row.row_start, row.row_end, any_block_);
    bool own = true;
    std::uint64_t searched = row.row_start;  // for the input
    for (const std::uint32_t i : mixes) {
      const FlatBlock& mix = image_.block(i);
      if (!allowance_.take(7 + std::uint64_t{mix.size}) || !read_mix(mix, own, width, row)) return false;
      own = false;
      if (!find_input(searched, mix.start + 1, row)) return false;
      searched = std::max(searched, mix.end());
    }
    return find_input(searched, row.row_end, row);
  }

 private:
  static constexpr std::uint64_t kTimes = 3, kSlack = 65536;

  bool read_mix(const FlatBlock& mix, bool own, RowWidth& width, TrackRouting& row) {
    const FlatBlock* level = image_.at(mix.start + mix_layout::kLevel);
    if (!level || level->content_type != content::kLevelRecord) return true;
    const auto fader = read_level(image_.bytes(), *level);
    if (!fader) return true;
    const FlatBlock* slot = image_.first_of_type(content::kSlot, mix.start + 1, mix.end());
    std::string_view target;
    if (slot) {
      if (!allowance_.take(7 + std::uint64_t{slot->size})) return false;
      const ByteView inside = image_.bytes().clamped(0, slot->end());
      each_counted_text<1, 80>(inside, slot->start + mix_layout::kInSlot, slot->end(),
                               [&target](std::uint64_t, std::string_view text) {
                                 target = text;
                                 return false;
                               });
    }
    if (own) {
      row.output = target;
      row.no_output = !slot;
    } else if (!target.empty()) {
      SendRecord send;
      send.bus = target;
      send.level_db = *fader / 10.0;
      send.post_fader = image_.bytes().u8(level->start + level_layout::kFlag) == std::uint8_t{1};
      read_send_lanes(image_, mix, width, send);
      std::uint64_t points = 0;
      for (const AutomationLane* lane :
           {&send.volume_lane, &send.mute_lane, &send.first_pan_lane, &send.second_pan_lane}) {
        points += lane->points.size();
      }
      if (!points_.take(points)) return false;
      row.sends.push_back(std::move(send));
    }
    return true;
  }

  // Looks for the input from the one position up to the other, unless it is known.
  bool find_input(std::uint64_t from, std::uint64_t to, TrackRouting& row) {
    namespace at = input_layout;
    if (row.input_kind >= 0 || from >= to) return true;
    if (!allowance_.take(to - from)) return false;
    const ByteView inside = image_.bytes().clamped(0, row.row_end);
    each_counted_text<1, 80>(inside, from, to, [&](std::uint64_t p, std::string_view text) {
      const std::uint64_t t = p + 4 + text.size();
      if (!inside.has(t, at::kSize) || inside.u32(t + at::kZero) != 0U || inside.u32(t + at::kMark) != kIdMark ||
          inside.u8(t + at::kByte) != std::uint8_t{0} || inside.u16(t + at::kWord) != std::uint16_t{0}) {
        return true;
      }
      const RouteKey key = {inside.u32_or(t + at::kId0, 0), inside.u32_or(t + at::kId1, 0),
                            inside.u8_or(t + at::kKind, 0)};
      if (!std::binary_search(known_.begin(), known_.end(), key)) return true;
      row.input_bus = text;
      std::tie(row.input_id0, row.input_id1, row.input_kind) = key;
      row.input_position = p;
      return false;
    });
    return true;
  }

  const SessionImage& image_;
  std::vector<RouteKey> known_;
  FirstFit any_block_;
  Allowance allowance_, points_;  // bytes; points of the sends' lanes
};

}  // namespace

std::vector<TrackRouting> read_track_routing(const SessionImage& image, const std::vector<StripRow>& rows,
                                             const std::vector<StripRecord>& strips, const std::vector<Route>& routes) {
  const StripsByPlace by_place(strips);
  RowReader reader(image, routes);
  std::vector<TrackRouting> routing;
  for (const StripRow& strip : rows) {
    if (strip.kind != StripKind::kAudio && strip.kind != StripKind::kInstrument) continue;
    TrackRouting row;
    // A row whose name block holds an empty text bears the track table's name: rows of a fifth of the sessions seen.
    row.name = strip.name_block_empty ? strip.current_name : strip.original_name;
    if (row.name.empty()) continue;
    row.row_start = strip.start;
    row.row_end = strip.end;
    const StripRecord* own = by_place.first_in(row.row_start, row.row_end);
    row.display_name = own ? own->name : row.name;
    if (!reader.read(row)) break;
    routing.push_back(std::move(row));
  }
  return routing;
}

std::vector<LegRoute> find_leg_routes(const SessionImage& image, const std::vector<Route>& routes,
                                      const std::vector<TrackRouting>& routing) {
  struct Ends {
    std::size_t source = 0;
    std::optional<std::size_t> target;
  };
  constexpr std::uint64_t kId0 = 4, kId1 = 8;  // from the mark
  const auto pair_of = [](std::uint32_t id0, std::uint32_t id1) { return std::uint64_t{id1} << 32 | id0; };
  std::unordered_map<std::uint64_t, Ends> ends;  // by the routes' ids
  for (std::size_t i = 0; i < routing.size(); ++i) {
    if (routing[i].input_kind == Route::kLegs)
      ends.try_emplace(pair_of(routing[i].input_id0, routing[i].input_id1), Ends{i, {}});
  }
  if (ends.empty()) return {};

  std::vector<Range> ranges;
  for (const TrackRouting& row : routing) ranges.push_back({row.row_start, row.row_end});
  // Where rows nest, another than the source can hold the place as well.
  const RangeIndex first_row(ranges, RangeIndex::Choice::kFirst), inner_row(ranges, RangeIndex::Choice::kSmallest);
  const ByteView bytes = image.bytes();
  const auto is_mark = [](const ScanWindow<4>& w, std::size_t i) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == kIdMarkByte) &
                                     static_cast<std::uint8_t>((w[i + 1] | w[i + 2] | w[i + 3]) == 0));
  };
  std::size_t open = ends.size();
  each_position<4>(bytes, 0, bytes.size(), is_mark, [&](std::uint64_t p) {
    const auto id0 = bytes.u32(p + kId0), id1 = bytes.u32(p + kId1);
    if (!id0 || !id1) return false;
    const auto found = ends.find(pair_of(*id0, *id1));
    if (found == ends.end() || found->second.target) return true;
    for (const RangeIndex* index : {&first_row, &inner_row}) {
      const auto row = index->holding(p);
      if (!row || *row == found->second.source) continue;
      found->second.target = row;
      --open;
      break;
    }
    return open > 0;
  });

  std::vector<LegRoute> legs;
  for (const Route& route : routes) {
    if (route.kind != Route::kLegs || route.channels.empty() || route.channels.front() == 0) continue;
    const auto found = ends.find(pair_of(route.id0, route.id1));
    if (found == ends.end() || !found->second.target) continue;
    legs.push_back({found->second.source, *found->second.target, route.channels.front()});
  }
  return legs;
}

std::map<std::string_view, int> find_one_sided(const std::vector<Route>& routes,
                                               const std::vector<TrackRouting>& routing) {
  // The path of an output, up to and with the first " / " of its text.
  const auto head_of = [](std::string_view text) {
    constexpr std::string_view kBetween = " / ";
    const std::size_t at = text.find(kBetween);
    return at == text.npos ? std::string_view() : text.substr(0, at + kBetween.size());
  };
  std::unordered_map<std::string_view, std::uint64_t> channel_of;     // of paths of one channel
  std::map<std::pair<std::string_view, std::uint64_t>, int> side_of;  // by head and channel
  for (const Route& route : routes) {
    const auto& channels = route.channels;
    if (channels.size() == 1) channel_of.try_emplace(route.name, channels[0]);
    const std::string_view head = head_of(route.name);
    if (channels.size() != 2 || head.empty()) continue;
    side_of.try_emplace({head, channels[0]}, -1);
    side_of.try_emplace({head, channels[1]}, 1);
  }
  std::map<std::string_view, int> sides;
  for (const TrackRouting& row : routing) {
    const std::string_view head = head_of(row.output), tail = row.output.substr(head.size());
    if (head.empty()) continue;
    std::uint64_t channel = 0;
    if (const auto known = channel_of.find(row.output); known != channel_of.end()) {
      channel = known->second;
    } else {
      const auto [end, error] = std::from_chars(tail.data(), tail.data() + tail.size(), channel);
      if (error != std::errc() || end != tail.data() + tail.size()) continue;
    }
    if (const auto side = side_of.find({head, channel}); side != side_of.end())
      sides.insert_or_assign(row.display_name, side->second);
  }
  return sides;
}

}  // namespace frt

#include "session/mixer/lanes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <iterator>
#include <unordered_map>

#include "base/ranges.h"
#include "image/content_types.h"
#include "image/first_fit.h"

namespace frt {
namespace {

constexpr std::array<std::uint16_t, 4> kRowsWithLanes = {content::kAudioRow, content::kMasterRow, content::kMidiRow,
                                                         content::kInstrumentRow};

// Lane, from its mark, of a size of at least 32
//   p + 25       u16  point count n
//   p + 27       5    any byte not 0: positions are session ticks, else samples
//   p + 35       i16  value before the first point
//   p + 37 + 6i  u32  position of point i
//   p + 41 + 6i  i16  value of point i
// Volume and trim count tenths of a dB, mute 0 or 1 with 1 for muted, pan -100 to 100.
namespace lane_layout {
constexpr std::uint64_t kCount = 25, kTicks = 27, kInitial = 35, kPoints = 37, kValue = 4, kPointSize = 6;
constexpr unsigned kTicksBytes = 5;
constexpr std::uint64_t kTail = 39;  // 6n + 39 bytes hold n points
constexpr std::uint32_t kLeastSize = 32;
}  // namespace lane_layout

// The byte behind the end of a row's first inner block: the number of channels less 1, or 0 where the lanes tell.
constexpr std::uint64_t kFirstInRow = 9;

struct LaneCost {
  std::size_t lanes = 0;
  std::size_t points = 0;
};

// Lanes are read once per strip. Strips of an image made to share their rows would read the same lanes again and
// again: what all strips together may read is bounded by what the image can hold.
LaneCost lane_allowance(const SessionImage& image) {
  constexpr std::size_t kSlack = 65536;
  return {4 * (image.of_type(content::kLane).size() + image.of_type(content::kLaneGroup).size()) + kSlack,
          static_cast<std::size_t>(image.size()) / 3 + kSlack};
}

std::size_t lanes_in(const SessionImage& image, std::uint64_t start, std::uint64_t end) {
  return image.of_type(content::kLane, start, end).size() + image.of_type(content::kLaneGroup, start, end).size();
}

// A block that is too small for a lane, or passes the image's end, is a lane that holds nothing.
bool holds_lane(ByteView image, std::uint64_t position) {
  const std::uint64_t size = image.u32_or(position + block_layout::kSize, 0);
  return size >= lane_layout::kLeastSize && image.has(position, size + 7);
}

double initial_of(ByteView image, std::uint64_t position) {
  return holds_lane(image, position) ? image.i16(position + lane_layout::kInitial).value_or(0) : 0;
}

bool moves_from(const AutomationLane& lane, double value) {
  return std::any_of(lane.points.begin(), lane.points.end(), [value](const auto& p) { return p.second != value; });
}

// The lanes by which a strip is judged, in the order that gives each its role.
std::vector<std::uint64_t> lanes_by_place(LaneSet& lanes, int width) {
  if (!lanes.grouped || lanes.free.size() < 2) return std::move(lanes.flat);
  std::vector<std::uint64_t> flat = {lanes.free[0], lanes.free[1]};
  const std::size_t panned = width == 1 ? 2 : width == 0 ? 1 : 0;
  for (std::size_t g = 0; g < panned && g < lanes.groups.size(); ++g) {
    if (!lanes.groups[g].empty()) flat.push_back(lanes.groups[g].front());
  }
  if (width >= 0 && lanes.free.size() >= 3) flat.push_back(lanes.free.back());
  return flat;
}

void read_panner(ByteView bytes, const LaneSet& lanes, StripRecord& strip) {
  constexpr std::size_t kPannerLanes = 7;
  if (!lanes.grouped) return;
  if (lanes.free.size() >= 3) {
    strip.panner_level_lane = read_lane(bytes, lanes.free[2]);
    strip.has_panner_level = true;
  }
  for (std::size_t side = 0; side < 2 && side < lanes.groups.size(); ++side) {
    if (lanes.groups[side].size() < kPannerLanes) continue;
    for (std::size_t i = 0; i < kPannerLanes; ++i) {
      strip.panner_lanes[side].push_back(read_lane(bytes, lanes.groups[side][i]));
    }
  }
}

void read_lanes(ByteView bytes, const std::vector<std::uint64_t>& positions,
                std::initializer_list<AutomationLane StripRecord::*> roles, StripRecord& strip) {
  std::size_t i = 0;
  for (AutomationLane StripRecord::*const role : roles) {
    if (i < positions.size()) strip.*role = read_lane(bytes, positions[i++]);
  }
}

void assign_by_place(ByteView bytes, const std::vector<std::uint64_t>& flat, StripRecord& strip) {
  using S = StripRecord;
  strip.lane_count = static_cast<std::uint32_t>(flat.size());
  strip.is_stereo = flat.size() == 5;
  if (strip.is_stereo) {
    read_lanes(bytes, flat, {&S::volume_lane, &S::mute_lane, &S::pan_lane, &S::right_pan_lane, &S::trim_lane}, strip);
  } else if (flat.size() > 5) {  // of six and more only the first three are known
    read_lanes(bytes, flat, {&S::volume_lane, &S::mute_lane, &S::pan_lane}, strip);
  } else {
    read_lanes(bytes, flat, {&S::volume_lane, &S::mute_lane, &S::pan_lane, &S::trim_lane}, strip);
  }
}

// Where no group holds more than one lane, each is a channel's pan; all other lanes stand free. Read by place, a stereo
// strip without a trim lane (Pro Tools of 2018 to 2021) would be a mono one, hard left.
void assign_by_groups(ByteView bytes, const LaneSet& lanes, StripRecord& strip) {
  const std::vector<std::uint64_t> pans = lanes.channel_pans();
  strip.lane_count = static_cast<std::uint32_t>(lanes.free.size() + pans.size());
  strip.pan_groups = static_cast<std::uint32_t>(pans.size());
  strip.is_stereo = pans.size() == 2;
  read_lanes(bytes, lanes.free, {&StripRecord::volume_lane, &StripRecord::mute_lane, &StripRecord::trim_lane}, strip);
  read_lanes(bytes, pans, {&StripRecord::pan_lane}, strip);
  if (strip.is_stereo) strip.right_pan_lane = read_lane(bytes, pans[1]);
}

// A stereo strip pans its two sides apart unless they rest hard left and hard right.
void derive_dual_pan(StripRecord& strip) {
  constexpr double kHardLeft = -100, kHardRight = 100;
  AutomationLane& left = strip.pan_lane;
  AutomationLane& right = strip.right_pan_lane;
  if (left.points.empty() && right.points.empty()) {
    strip.dual_pan = left.initial == kHardLeft && right.initial == kHardRight ? 0 : 2;
  } else if (!moves_from(left, kHardLeft) && !moves_from(right, kHardRight)) {
    left.points.clear();
    right.points.clear();
  } else {
    strip.dual_pan = static_cast<std::int32_t>(left.points.size() + right.points.size());
    strip.dual_left_lane = std::move(left);
    left = {{}, strip.dual_left_lane.initial, strip.dual_left_lane.in_ticks};
  }
}

void rest_fader(StripRecord& strip) {
  constexpr double kLimit = 60;  // tenths of a dB
  if (!strip.volume_lane.points.empty()) return;
  // A volume lane can rest above what the fader of such a session reaches; its gain is then limited to +6 dB, as the
  // level record says. Seen in sessions of 2014 to 2024.
  if (strip.volume_lane.initial > kLimit && strip.fader_db == kLimit / 10.0) return;
  strip.fader_db = strip.volume_lane.initial / 10.0;
}

std::size_t point_count(const StripRecord& strip) {
  std::size_t count = strip.panner_level_lane.points.size();
  for (const AutomationLane* lane : {&strip.volume_lane, &strip.mute_lane, &strip.pan_lane, &strip.trim_lane,
                                     &strip.right_pan_lane, &strip.dual_left_lane}) {
    count += lane->points.size();
  }
  for (const auto& side : strip.panner_lanes) {
    for (const AutomationLane& lane : side) count += lane.points.size();
  }
  return count;
}

}  // namespace

std::vector<std::uint64_t> LaneSet::channel_pans() const {
  std::vector<std::uint64_t> pans;
  for (const auto& group : groups) {
    if (!group.empty()) pans.push_back(group.front());
  }
  return pans;
}

AutomationLane read_lane(ByteView image, std::uint64_t position) {
  namespace at = lane_layout;
  AutomationLane lane;
  if (!holds_lane(image, position)) return lane;
  lane.in_ticks = image.unsigned_of(position + at::kTicks, at::kTicksBytes).value_or(0) != 0;
  lane.initial = initial_of(image, position);
  const std::uint64_t size = image.u32_or(position + block_layout::kSize, 0);
  const std::uint64_t count = image.u16_or(position + at::kCount, 0);
  if (at::kPointSize * count + at::kTail > size + 7) return lane;
  lane.points.reserve(count);
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t point = position + at::kPoints + at::kPointSize * i;
    lane.points.emplace_back(image.u32_or(point, 0), image.i16(point + at::kValue).value_or(0));
  }
  return lane;
}

LaneSet collect_lanes(const SessionImage& image, std::uint64_t start, std::uint64_t end) {
  LaneSet lanes;
  const auto groups = image.of_type(content::kLaneGroup, start, end);
  lanes.groups.resize(groups.size());
  // The first group that holds a lane is the first whose end, or that of one before it, lies behind the lane: the
  // greatest end so far only grows.
  std::vector<std::uint64_t> furthest;
  for (const std::uint32_t i : groups) {
    furthest.push_back(std::max(image.block(i).end(), furthest.empty() ? 0 : furthest.back()));
  }
  for (const std::uint32_t i : image.of_type(content::kLane, start, end)) {
    const std::uint64_t lane = image.block(i).start;
    lanes.flat.push_back(lane);
    const auto group =
        static_cast<std::size_t>(std::upper_bound(furthest.begin(), furthest.end(), lane) - furthest.begin());
    if (group < groups.size() && image.block(groups[group]).start < lane) {
      lanes.groups[group].push_back(lane);
      lanes.grouped = lanes.grouped || lanes.groups[group].size() >= 2;
    } else {
      lanes.free.push_back(lane);
    }
  }
  return lanes;
}

int strip_width_code(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end, FirstFit& any_block) {
  if (row_end == 0) return 1;
  const FlatBlock* first = any_block.find(row_start + kFirstInRow, row_end, row_end - 1);
  if (!first) return 1;
  const std::uint8_t wide = image.bytes().u8_or(first->end(), 0);
  if (wide != 0) return wide > 1 ? 2 : 1;
  const FlatBlock* mix = image.first_of_type(content::kMixGroup, row_start + 1, row_end);
  if (!mix || mix->end() > row_end) return 0;
  const LaneSet lanes = collect_lanes(image, mix->start, mix->end());
  if (lanes.groups.size() < 2 || lanes.groups[1].empty()) return 0;
  return initial_of(image.bytes(), lanes.groups[1].front()) != 0 ? 1 : 0;
}

// Volume and mute stand first, or free. Of the groups of a stereo strip's send, each of which can hold a panner, the
// first lane is the channel's pan; a second that rests elsewhere than hard left and right makes the send a single one.
void read_send_lanes(const SessionImage& image, const FlatBlock& mix, RowWidth& row, SendRecord& send) {
  constexpr double kHardLeft = -100, kHardRight = 100;
  const ByteView bytes = image.bytes();
  const LaneSet lanes = collect_lanes(image, mix.start, mix.end());
  const bool by_place = !lanes.grouped && !lanes.pans_by_group();
  const std::vector<std::uint64_t>& levels = by_place ? lanes.flat : lanes.free;
  if (!levels.empty()) send.volume_lane = read_lane(bytes, levels[0]);
  if (levels.size() > 1) send.mute_lane = read_lane(bytes, levels[1]);
  const auto first_pan = [&](std::uint64_t lane) {
    send.first_pan_lane = read_lane(bytes, lane);
    send.left_pan = static_cast<std::int32_t>(send.first_pan_lane.initial);
    send.pan_count = 1;
  };
  const auto second_pan = [&](std::uint64_t lane) {
    send.second_pan_lane = read_lane(bytes, lane);
    send.right_pan = static_cast<std::int32_t>(send.second_pan_lane.initial);
    send.pan_count = 2;
  };
  if (!lanes.grouped) {
    std::vector<std::uint64_t> pans = lanes.channel_pans();
    if (by_place)
      pans.assign(lanes.flat.begin() + std::min<std::ptrdiff_t>(2, std::ssize(lanes.flat)), lanes.flat.end());
    if (!pans.empty()) first_pan(pans[0]);
    if (pans.size() > 1) second_pan(pans[1]);
    return;
  }
  const auto& groups = lanes.groups;
  const bool pair = groups.size() > 1;
  bool default_pair = true;
  if (pair && groups[0].size() > 1 && groups[1].size() > 1)
    default_pair = initial_of(bytes, groups[0][1]) == kHardLeft && initial_of(bytes, groups[1][1]) == kHardRight;
  if (!groups[0].empty()) first_pan(groups[0].front());
  const int width = row.code();
  if (width == 1 && !default_pair) return;
  if (width == 1 && pair && !groups[1].empty()) {
    second_pan(groups[1].front());
  } else if (send.pan_count == 1 && lanes.free.size() > 2) {
    send.pan_count = 2;
  }
}

void read_strip_lanes(const SessionImage& image, std::vector<StripRecord>& strips) {
  const std::vector<std::uint32_t> rows = blocks_of_types(image, kRowsWithLanes);
  std::vector<Range> ranges;
  for (const std::uint32_t i : rows) ranges.push_back({image.block(i).start, image.block(i).end()});
  const RangeIndex row_of(ranges, RangeIndex::Choice::kSmallest);
  FirstFit mix_groups(image, content::kMixGroup), any_block(image);
  LaneCost left = lane_allowance(image);
  for (StripRecord& strip : strips) {
    if (!strip.has_mixer_data || strip.record_position == 0) continue;
    const auto found = row_of.holding(strip.record_position);
    if (!found) continue;
    const FlatBlock& row = image.block(rows[*found]);
    const FlatBlock* mix = mix_groups.find(row.start + 1, row.end(), row.end());
    const FlatBlock& scope = mix ? *mix : row;
    const std::size_t cost = 2 * lanes_in(image, row.start, row.end());
    if (cost > left.lanes) return;
    left.lanes -= cost;

    LaneSet lanes = collect_lanes(image, scope.start, scope.end());
    read_panner(image.bytes(), lanes, strip);
    bool has_volume = !lanes.flat.empty();
    if (lanes.pans_by_group()) {
      has_volume = !lanes.free.empty();
      assign_by_groups(image.bytes(), lanes, strip);
    } else {
      const bool by_width = lanes.grouped && row.content_type != content::kMasterRow;
      const int width = by_width ? strip_width_code(image, row.start, row.end(), any_block) : -1;
      assign_by_place(image.bytes(), lanes_by_place(lanes, width), strip);
    }
    const std::size_t points = point_count(strip);
    if (strip.is_stereo) derive_dual_pan(strip);
    if (has_volume) rest_fader(strip);
    if (points > left.points) return;
    left.points -= points;
  }
}

std::vector<UnusualStrip> strips_of_unusual_width(const std::vector<StripRecord>& strips,
                                                  const std::vector<DisplayRow>& display_rows,
                                                  const std::map<std::string_view, int>& one_sided) {
  std::unordered_map<std::string_view, std::uint8_t> widths;
  for (const DisplayRow& row : display_rows) widths.try_emplace(row.name, row.width);
  std::vector<UnusualStrip> found;
  for (const StripRecord& strip : strips) {
    const std::uint32_t lanes = strip.lane_count;
    if (!strip.has_mixer_data || lanes == 0 || one_sided.contains(strip.name)) continue;
    bool unusual = lanes != 2 && lanes != 4 && lanes != 5;
    if (strip.pan_groups) {
      const auto width = widths.find(strip.name);
      unusual = *strip.pan_groups > 2 || (width != widths.end() && width->second > 1);
    }
    if (unusual) found.push_back({strip.name, lanes});
  }
  return found;
}

void dump_lanes(const std::vector<StripRecord>& strips) {
  for (const StripRecord& strip : strips) {
    const auto& volume = strip.volume_lane;
    if (volume.points.empty() && strip.mute_lane.points.empty() && strip.pan_lane.points.empty()) continue;
    std::fprintf(stderr, "LANES %s | fader %.1f dB | vol %d pt init %.0f | mute %d pt | pan %d pt\n",
                 std::string(strip.name).c_str(), strip.fader_db, static_cast<int>(volume.points.size()),
                 volume.initial, static_cast<int>(strip.mute_lane.points.size()),
                 static_cast<int>(strip.pan_lane.points.size()));
    for (const auto& [position, value] : volume.points) {
      std::fprintf(stderr, "LANES   vol %14.0f %8.0f\n", position, value);
    }
  }
}

}  // namespace frt

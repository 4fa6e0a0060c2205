#include "session/mixer/lanes.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "base/ranges.h"
#include "base/text.h"
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

// Editions of Pro Tools without trim automation (seen from 2014 to 2020) give a strip two groups, with one pan lane
// alone in a group for each channel; volume and mute stand free, on a master volume alone. Then the lanes are those of
// a strip of so many channels, 0 for a master.
bool lacks_trim(const LaneSet& lanes, std::size_t channels) {
  if (lanes.grouped || lanes.groups.size() != 2 || lanes.free.size() != (channels == 0 ? 1 : 2)) return false;
  return lanes.groups[0].size() == (channels > 0 ? 1 : 0) && lanes.groups[1].size() == (channels > 1 ? 1 : 0);
}

// `pair_without_trim`: four lanes are those of a stereo strip that has no trim.
void assign_by_place(ByteView bytes, const std::vector<std::uint64_t>& flat, bool pair_without_trim,
                     StripRecord& strip) {
  strip.lane_count = static_cast<std::uint32_t>(flat.size());
  const bool stereo = flat.size() == 5 || pair_without_trim;
  const std::size_t count = flat.size() > 5 ? 3 : flat.size();  // of six and more only the first three are known
  AutomationLane StripRecord::*const roles[] = {
      &StripRecord::volume_lane, &StripRecord::mute_lane, &StripRecord::pan_lane,
      stereo ? &StripRecord::right_pan_lane : &StripRecord::trim_lane, &StripRecord::trim_lane};
  for (std::size_t i = 0; i < count; ++i) strip.*roles[i] = read_lane(bytes, flat[i]);
}

StripWidth width_of(std::uint32_t lanes, bool pair_without_trim, bool one_or_master_without_trim) {
  if (lanes == 5 || pair_without_trim) return StripWidth::kStereo;
  if (lanes == 2 || lanes == 4 || one_or_master_without_trim) return StripWidth::kMono;
  return lanes == 0 ? StripWidth::kUntold : StripWidth::kOther;
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
  if (strip.lane_count == 0 || !strip.volume_lane.points.empty()) return;
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

int width_code(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end, FirstFit& any_block) {
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

}  // namespace

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

int strip_width_code(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end) {
  FirstFit any_block(image);
  return width_code(image, row_start, row_end, any_block);
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
    const bool is_master = row.content_type == content::kMasterRow;
    const bool two_without_trim = !is_master && lacks_trim(lanes, 2);
    const bool one_or_master_without_trim = lacks_trim(lanes, 1) || lacks_trim(lanes, 0);
    const bool by_width = two_without_trim || (lanes.grouped && !is_master);
    const int width = by_width ? width_code(image, row.start, row.end(), any_block) : -1;
    const bool pair_without_trim = two_without_trim && width == 1;
    assign_by_place(image.bytes(), lanes_by_place(lanes, width), pair_without_trim, strip);
    strip.width = width_of(strip.lane_count, pair_without_trim, one_or_master_without_trim);
    const std::size_t points = point_count(strip);
    if (strip.is_stereo()) derive_dual_pan(strip);
    rest_fader(strip);
    if (points > left.points) return;
    left.points -= points;
  }
}

std::vector<std::string> strips_of_unknown_width(const std::vector<StripRecord>& strips) {
  std::vector<std::string> names;
  for (const StripRecord& strip : strips) {
    if (!strip.has_mixer_data || strip.width != StripWidth::kOther) continue;
    names.push_back(std::string(strip.name) + format_text(" (%u control slots)", strip.lane_count));
  }
  return names;
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

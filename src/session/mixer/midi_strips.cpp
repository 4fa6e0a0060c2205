#include "session/mixer/midi_strips.h"

#include <algorithm>
#include <string>
#include <utility>

#include "image/content_types.h"
#include "image/counted_texts.h"
#include "session/mixer/lanes.h"

namespace frt {
namespace {

// Controller setup, from its mark; negative values are unset
//   p + 9   i8  fader (controller 7)
//   p + 13  u32 1 for muted, 0 for not
//   p + 17  i8  pan (controller 10)
//   p + 25  i8  program
namespace setup_layout {
constexpr std::uint64_t kFader = 9, kMuted = 13, kPan = 17, kProgram = 25;
constexpr std::uint32_t kLeastSizeWithMute = 10, kLeastSize = 16, kLeastSizeWithProgram = 18;
}  // namespace setup_layout

// Real-Time Properties, from their mark, of a size of at least 153. A child that stands at p + 13 as a rule has a
// size of 59; where it is larger, all that stands from p + 89 on lies as much further back.
//   p + 11   u8   quantize on
//   p + 89   u8   duration on
//   p + 133  u8   delay on
//   p + 134  u8   not 0 for a negative delay
//   p + 136  u32  delay, thousandths of a tick
//   p + 148  u8   velocity on
//   p + 149  u8   velocity, percent
//   p + 151  i8   velocity offset
//   p + 156  u8   transpose on
//   p + 158  i8   octaves
//   p + 159  i8   semitones
namespace properties_layout {
constexpr std::uint32_t kLeastSize = 153;
constexpr std::uint64_t kQuantizeOn = 11, kChild = 13, kDurationOn = 89, kDelayOn = 133, kDelayNegative = 134,
                        kDelay = 136, kVelocityOn = 148, kVelocityPercent = 149, kVelocityOffset = 151,
                        kTransposeOn = 156, kOctaves = 158, kSemitones = 159;
constexpr std::uint64_t kUsualChild = 59;    // size of the child
constexpr std::uint64_t kBehindChild = 101;  // a child of size n reaches, with all behind it, n + 101 bytes from p
constexpr std::uint32_t kThousandths = 1000;
}  // namespace properties_layout

RealTimeProperties properties_of(ByteView bytes, const FlatBlock& block) {
  namespace at = properties_layout;
  const std::uint64_t p = block.start;
  std::uint64_t shift = 0;
  if (bytes.u8(p + at::kChild) == block_layout::kMark &&
      bytes.u16(p + at::kChild + block_layout::kContentType) == content::kPropertiesChild) {
    const std::uint64_t n = bytes.u32_or(p + at::kChild + block_layout::kSize, 0);
    if (n >= at::kUsualChild && n + at::kBehindChild <= std::uint64_t{block.size} + 7) shift = n - at::kUsualChild;
  }
  const auto on = [&](std::uint64_t offset) { return bytes.u8(p + offset) == std::uint8_t{1}; };
  const auto signed_byte = [&](std::uint64_t offset) { return int{bytes.i8(p + offset + shift).value_or(0)}; };
  RealTimeProperties found;
  found.quantize_on = on(at::kQuantizeOn);
  found.duration_on = on(at::kDurationOn + shift);
  found.delay_on = on(at::kDelayOn + shift);
  found.delay_ticks = static_cast<int>(bytes.u32_or(p + at::kDelay + shift, 0) / at::kThousandths);
  if (bytes.u8_or(p + at::kDelayNegative + shift, 0) != 0) found.delay_ticks = -found.delay_ticks;
  found.velocity_on = on(at::kVelocityOn + shift);
  found.velocity_percent = bytes.u8_or(p + at::kVelocityPercent + shift, 100);
  found.velocity_offset = signed_byte(at::kVelocityOffset);
  found.transpose_on = on(at::kTransposeOn + shift);
  found.octaves = signed_byte(at::kOctaves);
  found.semitones = signed_byte(at::kSemitones);
  return found;
}

}  // namespace

const FlatBlock* setup_block(const SessionImage& image, const StripRow& row, FirstFit& blocks) {
  const std::uint64_t limit = std::min(row.end, image.size());
  if (limit < block_layout::kContent) return nullptr;
  return blocks.find(row.start, limit - block_layout::kContent, limit);
}

std::vector<MidiStripSetup> read_midi_setups(const SessionImage& image, const std::vector<StripRow>& rows) {
  namespace at = setup_layout;
  std::vector<MidiStripSetup> setups(rows.size());
  FirstFit blocks(image, content::kMidiSetup);
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (!plays_midi(rows[k].kind)) continue;
    const FlatBlock* block = setup_block(image, rows[k], blocks);
    if (!block || block->size < at::kLeastSize) continue;
    const auto value = [&](std::uint64_t offset) { return int{image.bytes().i8(block->start + offset).value_or(-1)}; };
    if (value(at::kFader) >= 0 && value(at::kPan) >= 0) {
      setups[k].cc7 = value(at::kFader);
      setups[k].cc10 = value(at::kPan);
    }
    if (block->size >= at::kLeastSizeWithProgram && value(at::kProgram) >= 0) setups[k].program = value(at::kProgram);
  }
  return setups;
}

ByName<MidiTrackState> read_midi_track_states(const SessionImage& image, const std::vector<StripRow>& rows) {
  namespace at = setup_layout;
  constexpr std::uint32_t kLeastMixSize = 2;
  std::vector<std::uint64_t> setups;  // those that tell the mute
  const auto mute_of = [&image](std::uint64_t setup) { return image.bytes().u32_or(setup + at::kMuted, 2); };
  for (const std::uint32_t i : image.of_type(content::kMidiSetup)) {
    const FlatBlock& block = image.block(i);
    if (block.size >= at::kLeastSizeWithMute && mute_of(block.start) <= 1) setups.push_back(block.start);
  }
  ByName<MidiTrackState> states;
  // Rows and mixes of an image made to nest would read the same lanes again and again.
  std::size_t mixes_left = 4 * image.of_type(content::kMidiMix).size() + 65536;
  std::size_t points_left = static_cast<std::size_t>(image.size()) / 3 + 65536;
  for (const StripRow& row : rows) {
    if (row.kind != StripKind::kMidi) continue;
    MidiTrackState state;
    bool told = false;
    const auto mixes = image.of_type(content::kMidiMix, row.start + 1, row.end);
    if (mixes.size() > mixes_left) break;
    mixes_left -= mixes.size();
    for (const std::uint32_t i : mixes) {
      const FlatBlock& mix = image.block(i);
      if (mix.size < kLeastMixSize) continue;
      const auto setup = std::upper_bound(setups.begin(), setups.end(), mix.start);
      if (!told && setup != setups.end() && *setup < mix.end()) {
        told = true;
        state.muted = mute_of(*setup) == 1;
      }
      const auto lanes = image.of_type(content::kLane, mix.start + 1, mix.end());
      if (lanes.size() != 1) continue;
      AutomationLane lane = read_lane(image.bytes(), image.block(lanes[0]).start);
      if (lane.points.size() > points_left) return states;
      points_left -= lane.points.size();
      const auto is_switch = [](double value) { return value == 0 || value == 1; };
      if (is_switch(lane.initial) && std::all_of(lane.points.begin(), lane.points.end(),
                                                 [&](const auto& point) { return is_switch(point.second); })) {
        state.mute_lane = std::move(lane);
        state.has_mute_lane = true;
      } else if (lane.moves()) {
        state.other_lanes = true;
      }
    }
    if (!row.label().empty() && (told || state.has_mute_lane || state.other_lanes))
      states.insert_or_assign(std::string(row.label()), std::move(state));
  }
  return states;
}

std::vector<RealTimeProperties> read_realtime_properties(const SessionImage& image, const std::vector<StripRow>& rows) {
  std::vector<const FlatBlock*> blocks;
  for (const std::uint32_t i : image.of_type(content::kRealTimeProperties)) {
    if (image.block(i).size >= properties_layout::kLeastSize) blocks.push_back(&image.block(i));
  }
  std::vector<RealTimeProperties> properties(rows.size());
  // The list's last block is the session's own, not a strip's.
  std::size_t next = 0;
  for (std::size_t k = 0; k < rows.size() && next + 1 < blocks.size(); ++k) {
    if (plays_midi(rows[k].kind)) properties[k] = properties_of(image.bytes(), *blocks[next++]);
  }
  return properties;
}

// Slot, from its mark: u16 key id at p + 9 (65535 for none), then the first counted text of 1 to 80 printable
// ASCII bytes from p + 11 on whose bytes begin inside the block.
std::map<std::uint16_t, std::string_view> read_key_buses(const SessionImage& image) {
  constexpr std::uint64_t kKeyId = 9, kNames = 11;
  constexpr std::uint16_t kNoKey = 65535;
  const ByteView bytes = image.bytes();
  std::map<std::uint16_t, std::string_view> names;
  // Slots wait until a text turns up and then are all answered by it, so slots nested in slots cost no second look.
  std::vector<const FlatBlock*> waiting;
  std::uint64_t searched = 0, furthest = 0;  // furthest: the greatest end of a waiting slot
  const auto slots = image.of_type(content::kSlot);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const FlatBlock& slot = image.block(slots[i]);
    waiting.push_back(&slot);
    furthest = std::max(furthest, slot.end());
    searched = std::max(searched, slot.start + kNames);
    // Where the next slot joins the wait; and no further than the bytes that a waiting slot can claim.
    const std::uint64_t next = i + 1 < slots.size() ? image.block(slots[i + 1]).start + kNames : UINT64_MAX;
    const std::uint64_t to = std::min(next, furthest < 4 ? 0 : furthest - 4);
    std::uint64_t at = 0;
    std::string_view name;
    each_counted_text<1, 80>(bytes, searched, to, [&](std::uint64_t p, std::string_view text) {
      if (!ascii_ok(text)) return true;
      at = p;
      name = text;
      return false;
    });
    searched = std::max(searched, to);
    if (name.empty() && to == next) continue;
    for (const FlatBlock* w : waiting) {
      const auto id = bytes.u16(w->start + kKeyId);
      if (!name.empty() && id && *id != kNoKey && at + 4 < w->end()) names.insert_or_assign(*id, name);
    }
    waiting.clear();
    furthest = 0;
  }
  return names;
}

}  // namespace frt

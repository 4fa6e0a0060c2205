#include "session/clips/midi_streams.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "base/byte_scan.h"
#include "image/content_types.h"

namespace frt {
namespace {

// Sections of the MIDI data, each from its own mark. The mark of a run of notes opens a chunk; sections of controllers
// and of SysEx behind it belong to it.
//
// Notes
//   + 11  u32  count
//   + 15  u40  the chunk's zero: the first note's position
//   + 20       must lie inside the image
namespace notes_layout {
constexpr std::string_view kMark = "MdNLB";
constexpr std::uint64_t kCount = 11, kZero = 15, kLast = 20;
}  // namespace notes_layout

// SysEx
//   + 10       "MdTE", + 14 "L"
//   + 17  u32  size of what stands from + 21 on
//   + 21  u32  event count
//   + 25       events, each
//     + 0   u40  position
//     + 8   u8   1
//     + 10  u32  payload + 5
//     + 15  u32  payload
//     + 19       the payload
namespace sysex_layout {
constexpr std::string_view kMark = "MdES", kSecondMark = "MdTEL";
constexpr std::uint64_t kSecond = 10, kSize = 17, kCount = 21, kEvents = 25;
constexpr std::uint64_t kOne = 8, kPayloadAnd5 = 10, kPayloadSize = 15, kPayload = 19;
}  // namespace sysex_layout

// One stream of controllers
//   + 11           "Mdss"
//   + 17      u32  s, at least 2: size of what stands from + 21 on
//   + 21      u8   kind
//   + 22      u8   number of the controller
//   + 21 + s       "MdCD"
//   + 31 + s  u32  event count
//   + 35 + s       events, each of 12 bytes: u40 position, i32 value at + 8
namespace controllers_layout {
constexpr std::string_view kMark = "MdCDS", kSecondMark = "Mdss", kEventsMark = "MdCD";
constexpr std::uint64_t kSecond = 11, kSize = 17, kKind = 21, kController = 22, kBehindSize = 21, kCount = 31,
                        kEvents = 35;
constexpr std::uint64_t kValue = 8, kEventSize = 12;
constexpr std::uint32_t kLeastSize = 2;
}  // namespace controllers_layout

// Sections of a session don't share bytes, so all of them together hold no more events than the image has room for;
// sections made to overlap could claim each other's over and over.
struct Room {
  std::uint64_t sysex, controllers;
};

std::optional<std::vector<SysExEvent>> read_sysex(ByteView image, std::uint64_t section, Room& room) {
  namespace at = sysex_layout;
  const auto size = image.u32(section + at::kSize);
  const auto count = image.u32(section + at::kCount);
  if (!size || !count) return std::nullopt;
  const std::uint64_t end = section + at::kCount + *size;
  std::vector<SysExEvent> events;
  std::uint64_t p = section + at::kEvents;
  for (std::uint32_t i = 0; i < *count; ++i) {
    if (p >= end || room.sysex == 0) return std::nullopt;
    --room.sysex;
    const auto payload = image.u32(p + at::kPayloadSize);
    if (!payload || image.u8(p + at::kOne) != std::uint8_t{1} ||
        *image.u32(p + at::kPayloadAnd5) != std::uint64_t{*payload} + 5)
      return std::nullopt;
    const auto bytes = image.text(p + at::kPayload, *payload);
    if (!bytes) return std::nullopt;
    events.push_back({*image.u40(p), *bytes});
    p += at::kPayload + *payload;
  }
  if (p != end) return std::nullopt;
  return events;
}

std::optional<MidiControllerStream> read_controllers(ByteView image, std::uint64_t section, Room& room) {
  namespace at = controllers_layout;
  const auto size = image.u32(section + at::kSize);
  const auto kind = image.u8(section + at::kKind), controller = image.u8(section + at::kController);
  if (!size || *size < at::kLeastSize || !controller) return std::nullopt;
  if (*kind != MidiControllerStream::kPitchBend && *kind != MidiControllerStream::kController &&
      *kind != MidiControllerStream::kAftertouch)
    return std::nullopt;
  if (!image.equals(section + at::kBehindSize + *size, at::kEventsMark)) return std::nullopt;
  const auto count = image.u32(section + at::kCount + *size);
  const std::uint64_t first = section + at::kEvents + *size;
  if (!count || !image.has(first, *count * at::kEventSize) || *count > room.controllers) return std::nullopt;
  room.controllers -= *count;
  return MidiControllerStream(image.clamped(first, *count * at::kEventSize), *count, *kind, *controller);
}

struct Range {
  std::uint64_t from, to;
};

// Where the sections' marks can stand: strictly inside a block of MIDI data.
std::vector<Range> ranges_of_midi_data(const SessionImage& image) {
  std::vector<Range> ranges;
  for (const std::uint32_t i : image.of_type(content::kMidiData)) {
    const FlatBlock& block = image.block(i);
    if (ranges.empty() || block.start + 1 > ranges.back().to) {
      ranges.push_back({block.start + 1, block.end()});
    } else {
      ranges.back().to = std::max(ranges.back().to, block.end());
    }
  }
  return ranges;
}

MidiChunk open_chunk(ByteView image, std::uint64_t mark) {
  namespace at = notes_layout;
  MidiChunk chunk;
  chunk.note_count = image.u32_or(mark + at::kCount, 0);
  if (chunk.note_count != 0 && image.has(mark + at::kLast, 1)) chunk.origin = *image.u40(mark + at::kZero);
  return chunk;
}

}  // namespace

MidiControllerEvent MidiControllerStream::operator[](std::uint32_t i) const {
  namespace at = controllers_layout;
  const std::uint64_t e = i * at::kEventSize;
  if (i >= count_ || !events_.has(e, at::kEventSize)) return {};
  return {*events_.u40(e), *events_.i32(e + at::kValue)};
}

std::vector<MidiChunk> read_midi_chunks(const SessionImage& session, Skips& skips) {
  namespace sysex = sysex_layout;
  namespace controllers = controllers_layout;
  const ByteView image = session.bytes();
  std::vector<MidiChunk> chunks;
  // Marks of notes on marks of notes would cost more memory than the session.
  const std::uint64_t most = image.size() / notes_layout::kLast;
  bool full = false;
  Room room{image.size() / sysex::kPayload, image.size() / controllers::kEventSize};
  const auto is_mark = [](ScanWindow<1> bytes, std::size_t i) {
    return static_cast<std::uint8_t>(int{bytes[i] == 'M'} & int{bytes[i + 1] == 'd'});
  };
  for (const Range& range : ranges_of_midi_data(session)) {
    each_position<1>(image, range.from, range.to, is_mark, [&](std::uint64_t p) {
      if (image.equals(p, notes_layout::kMark)) {
        full = chunks.size() == most;
        if (!full) chunks.push_back(open_chunk(image, p));
      } else if (chunks.empty() || full) {
        return true;
      } else if (image.equals(p, controllers::kMark) &&
                 image.equals(p + controllers::kSecond, controllers::kSecondMark)) {
        if (const auto stream = read_controllers(image, p, room)) {
          chunks.back().streams.push_back(*stream);
        } else {
          skips.add(content::kMidiData, p, "controller stream");
        }
      } else if (image.equals(p, sysex::kMark) && image.equals(p + sysex::kSecond, sysex::kSecondMark)) {
        if (const auto events = read_sysex(image, p, room)) {
          chunks.back().sysex.insert(chunks.back().sysex.end(), events->begin(), events->end());
        } else {
          skips.add(content::kMidiData, p, "SysEx section");
        }
      }
      return true;
    });
  }
  return chunks;
}

}  // namespace frt

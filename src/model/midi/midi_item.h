// One MIDI clip as REAPER's item holds it: where it stands, and its events at 960 ticks to the quarter note.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace frt {

// Small on purpose: a session can hold millions.
struct MidiEvent {
  enum Status : std::uint8_t {
    kNoteOff = 0x80,
    kNoteOn = 0x90,
    kController = 0xb0,
    kAftertouch = 0xd0,
    kPitchBend = 0xe0,
    kSysEx = 0xf0,
  };

  std::uint64_t tick = 0;   // from the item's source start, 960 to the quarter note
  std::uint32_t sysex = 0;  // of a SysEx event: its bytes' place in MidiItem::sysex
  std::uint8_t status = 0;
  std::uint8_t data1 = 0, data2 = 0;
  std::uint8_t size : 2 = 0;  // data bytes, 1 or 2
  bool muted : 1 = false;     // kept, but silent
};

struct MidiItem {
  double position = 0, length = 0;  // seconds; the length may reach past the clip's end so that its notes ring
  double natural_length = 0;        // seconds, as the clip states it
  double source_offset = 0;         // seconds, above 0 where the clip starts inside its source
  std::string_view name;            // the clip's
  bool muted = false;
  bool locked = false;
  std::int32_t color = -2;              // palette index, -2 for none
  std::vector<MidiEvent> events;        // by tick, equal ticks in their order
  std::vector<std::string_view> sysex;  // bytes of SysEx events, without 0xf0 and 0xf7
};

}  // namespace frt

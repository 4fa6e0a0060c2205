// One MIDI clip as REAPER's item holds it: where it stands, and its events at 960 ticks to the quarter note.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "session/clips/clip_tables.h"
#include "session/clips/midi_tables.h"

namespace frt {

// Small on purpose: a clip can hold millions.
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
  std::uint32_t sysex = 0;  // of a SysEx event: its place in MidiEvents::sysex
  std::uint8_t status = 0;
  std::uint8_t data1 = 0, data2 = 0;
  std::uint8_t size : 2 = 0;  // data bytes, 1 or 2
  bool muted : 1 = false;     // kept, but silent
};

// What an item plays of the session's MIDI data. Its events are made of it when they are asked for (events_of in
// model/midi/midi_events.h): one clip can stand on its track thousands of times, and the events of all items at once
// would take many times the memory of the session.
//
// Raw units are ticks, 960000 to the quarter note, or samples on a sample-based track.
struct MidiContent {
  const NoteChunk* notes = nullptr;
  const MidiChunk* controllers = nullptr;  // null where none belong to the notes
  // Raw units from the clip's start to the notes' zero; below 0 where the clip starts inside its source.
  std::int64_t offset = 0;
  std::int64_t length = 0;      // the clip's, in raw units; 0 where it has no end
  double unit = 0.001;          // item ticks to the raw unit
  bool keep_inaudible = false;  // what lies outside the clip is not muted
};

struct MidiItem {
  double position = 0, length = 0;  // seconds; the length may reach past the clip's end so that its notes ring
  double natural_length = 0;        // seconds, as the clip states it
  double source_offset = 0;         // seconds, above 0 where the clip starts inside its source
  std::string_view name;            // the clip's
  bool muted = false;
  bool locked = false;
  std::int32_t color = -2;  // palette index, -2 for none
  MidiContent content;
  int note_count = 0;  // notes among its events, muted ones included
  int muted_notes = 0, muted_controllers = 0;
  bool notes_in_range = true;  // every note is one that MIDI has
};

}  // namespace frt

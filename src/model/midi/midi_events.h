// What a MIDI clip plays, as events at 960 ticks to the quarter note. Pro Tools plays a note by its start and keeps
// what lies outside a clip silent; REAPER sounds what runs into an item. So what lies outside is muted here.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/midi/midi_item.h"

namespace frt {

struct MidiEvents {
  std::vector<MidiEvent> events;      // by tick; equal ticks: notes, then controllers, then SysEx, each in file order
  std::span<const SysExEvent> sysex;  // what SysEx events refer to
};

MidiEvents events_of(const MidiContent& content);

// What events_of gives, counted without making it.
struct MidiContentCounts {
  int notes = 0;
  int notes_past_end = 0;    // that start inside the clip and ring past its end
  std::int64_t overrun = 0;  // of the one that rings longest, raw units
  int controllers = 0;       // inside the clip
  int sysex = 0, sysex_outside = 0;
  int muted_notes = 0, muted_controllers = 0;
  bool notes_in_range = true;  // every note is one that MIDI has
  int kept_unmuted = 0;        // events outside the clip that keep_inaudible leaves unmuted
};
MidiContentCounts count_content(const MidiContent& content);

}  // namespace frt

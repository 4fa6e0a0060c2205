// The text of --dump-cc: what the session's MIDI data holds beside notes.
#pragma once

#include <span>

#include "session/clips/midi_tables.h"

namespace frt {

void print_midi_statistics(std::span<const MidiChunk> chunks);

}  // namespace frt

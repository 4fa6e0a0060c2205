// Which clips the session's MIDI playlists place, with colour, lock and what lies on top of what.
#pragma once

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/midi_tables.h"

namespace frt {

MidiPlaylists read_midi_playlists(const SessionImage& image, Skips& skips);

}  // namespace frt

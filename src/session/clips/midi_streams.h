// Controllers, pitch bend, aftertouch and SysEx of the session's MIDI clips.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/midi_tables.h"

namespace frt {

// What the MIDI data holds beside its notes, one record per run of notes in file order. A section of a bad
// shape gives nothing and is left out.
std::vector<MidiChunk> read_midi_chunks(const SessionImage& image, Skips& skips);

}  // namespace frt

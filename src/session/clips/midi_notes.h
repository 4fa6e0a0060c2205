// The notes of the session's MIDI clips.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/clips/clip_tables.h"

namespace frt {

// The runs of notes in the MIDI data among the roots, in file order; MIDI clips refer to them by number.
std::vector<NoteChunk> read_note_chunks(ByteView image, const std::vector<Block>& roots);

}  // namespace frt

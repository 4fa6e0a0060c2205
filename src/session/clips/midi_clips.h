// The session's MIDI clips and where they stand.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/clips/clip_tables.h"

namespace frt {

// The clips of the MIDI clip lists, then those of the compound form, whose number is their chunk's.
std::vector<ClipRecord> read_midi_clips(ByteView image, const std::vector<Block>& roots,
                                        const std::vector<NoteChunk>& chunks);

// Their placements in file order. With `keep_sign` (sessions with a song start of their own) a placement before the
// tick origin keeps a negative start; otherwise the distance to the origin counts.
std::vector<Placement> read_midi_placements(const SessionImage& image, const std::vector<Block>& roots,
                                            const std::vector<ClipRecord>& clips, bool keep_sign);

}  // namespace frt

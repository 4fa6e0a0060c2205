// The session's core tables: which clips exist, which tracks, and where each clip stands on which track.
#pragma once

#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One walk over the block tree. With `keep_sign` (sessions with a song start of their own) a MIDI placement before
// the tick origin keeps a negative start; otherwise the distance to the origin counts. An image under 65 bytes, or
// one of a big-endian session (byte 17), gives empty tables with `walked` false.
ClipTables walk_clips(const SessionImage& image, const std::vector<AudioFileEntry>& files, bool keep_sign);

// The notes of a chunk, read from the image.
std::vector<MidiNote> chunk_events(ByteView image, const NoteChunk& chunk);

// The names of all audio placements, then of all MIDI placements, repeats kept.
std::vector<std::string_view> placement_names(const ClipTables& tables);

}  // namespace frt

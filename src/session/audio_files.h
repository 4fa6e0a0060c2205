// In which of the session's folders each audio file lies, from the file lists (0x103a).
#pragma once

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// Reads all file lists of the session. A list that doesn't read ends where it stops making sense; a name's first
// folder stays.
AudioFileFolders read_audio_file_folders(const SessionImage& image);

}  // namespace frt

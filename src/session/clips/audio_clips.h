// The session's audio clips: name, file, and which part of the file each one plays.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "ptf/ptf_format.h"
#include "session/clips/clip_tables.h"

namespace frt {

// One per entry of the audio clip lists among the roots, in file order; a clip's index is its place here. `files` gives
// the names of the audio files, `facts` their channels, by number.
std::vector<ClipRecord> read_audio_clips(const SessionImage& image, const std::vector<Block>& roots,
                                         const std::vector<AudioFileEntry>& files,
                                         const std::vector<AudioFileFacts>& facts);

}  // namespace frt

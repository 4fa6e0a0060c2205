// How long a sound file says it is.
#pragma once

#include <cstdint>
#include <optional>

#include "base/file.h"

namespace frt {

// The number of frames that the file's own header states: WAV (also RF64 and BW64) by its format and data chunks, AIFF
// and AIFC by their common chunk. Nothing for any other file or form, and for a header that is cut.
std::optional<std::uint64_t> stated_frames(const RegularFile& file);

}  // namespace frt

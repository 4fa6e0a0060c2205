// Timecode as people read it.
#pragma once

#include <cstdint>
#include <string>

#include "session/headers/session_settings.h"

namespace frt {

// A frame count as "hh:mm:ss:ff", with ";" before the frames if `drop` is set. `rate` is frames per second; from
// 101 on the frames take three digits. A rate of 0 gives an empty text.
std::string timecode_text(std::uint32_t frames, std::uint32_t rate, bool drop);

// Where the session starts.
std::string session_start_text(const TimecodeSettings& timecode);

}  // namespace frt

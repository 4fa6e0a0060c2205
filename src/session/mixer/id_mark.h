// The mark before ids of tracks, playlists and I/O paths: the bytes 42, 0, 0, 0.
#pragma once

#include <cstdint>

namespace frt {

constexpr std::uint32_t kIdMark = 42;
constexpr std::uint8_t kIdMarkByte = 42;  // its first

}  // namespace frt

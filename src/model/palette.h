// Pro Tools' palette as REAPER colours.
#pragma once

#include <cstdint>

namespace frt {

// REAPER's default colour of a track.
inline constexpr std::uint32_t kDefaultTrackColor = 16576;

struct PaletteColor {
  std::uint32_t color = 0;  // REAPER's form, with the bit that says "this is a colour"
  int kind = 0;             // 1 measured, 2 derived, 3 invented
};

// The colour of a palette index. An index off the known grid gets an invented colour, the same for the same index.
PaletteColor palette_color(std::int32_t index);

}  // namespace frt

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

// What Pro Tools' MIDI clips without a colour of their own bear under the coding by tracks and MIDI channels.
inline constexpr std::uint32_t kMidiClipColor = 0x1D7C090, kMidiClipColorDark = 0x1AF956A;

// A clip's colour.
struct ClipColor {
  enum class Shade : std::uint8_t { kClassic, kDarkMeasured, kDarkDerived };

  std::uint32_t color = 0;  // REAPER's form; 0: the clip stays in its track's colour
  int kind = 0;             // as above, or kAutoAssigned
  Shade shade = Shade::kClassic;

  // Given by Pro Tools itself, in a shade that nobody has measured.
  static constexpr int kAutoAssigned = 9;
};

// The colour that a clip of a palette index bears in Pro Tools' Classic or Dark theme.
ClipColor clip_color(std::int32_t index, bool dark);

// The colour of a palette index. An index off the known grid gets an invented colour, the same for the same index.
PaletteColor palette_color(std::int32_t index);

}  // namespace frt

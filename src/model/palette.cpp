#include "model/palette.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace frt {
namespace {

// REAPER's mark of "this is a colour".
constexpr std::uint32_t kIsColor = 0x1000000;

constexpr int kRowStep = 24;  // palette indices from row to row; the multiples of it don't exist
constexpr std::size_t kColumns = 23;

// Pro Tools' track swatches: rows for the palette indices 25 to 47, 49 to 71 and 73 to 95.
constexpr std::array<std::array<std::uint32_t, kColumns>, 3> kPalette = {{
    {0xFC002C, 0xFC0056, 0xFC0088, 0xFC00BF, 0xC000BE, 0x8800BD, 0x5400BD, 0x0D00BC,
     0x0D1EBD, 0x0E52BD, 0x1189BE, 0x14C5C0, 0x11C589, 0x10C657, 0x0FC62E, 0x0EC61C,
     0x54C61E, 0x88C420, 0xC1C323, 0xFDC127, 0xFC8421, 0xFC4A1C, 0xFC0019},
    {0xA3001E, 0xA30037, 0xA30055, 0xA40074, 0x89007C, 0x66007B, 0x46007A, 0x0B007A,
     0x0B127A, 0x0C317A, 0x0D517B, 0x108089, 0x0E8066, 0x0D8048, 0x0C802D, 0x0C8018,
     0x338015, 0x517F16, 0x7E8C1A, 0xA48D1D, 0xA46919, 0xA34616, 0xA32314},
    {0x5F0014, 0x5F0021, 0x5F0031, 0x5F0041, 0x57004B, 0x420047, 0x310047, 0x0B0047,
     0x0B0C47, 0x0B1C47, 0x0C2C47, 0x0F4D57, 0x0C4A42, 0x0C4A32, 0x0C4A23, 0x0B4B15,
     0x1D4A0F, 0x2C4A0F, 0x4C5914, 0x5F5916, 0x5F4714, 0x5F3513, 0x5F2211},
}};

// Swatches above the first row (indices 1 to 23) that were measured: a clip's body, paler than its swatch.
constexpr std::int32_t kMeasuredPaleA = 1, kMeasuredPaleB = 3;
constexpr std::uint32_t kPaleA = 0xECB4BE, kPaleB = 0xECB4D2;

// Bodies of clips coloured by hand, by every second column.
constexpr std::array<std::uint32_t, 12> kClipSwatches = {0xECB4BE, 0xECB4D2, 0xDBB1DA, 0xC3B0DA, 0xABB1E4, 0xADD3E4,
                                                         0xADE7D3, 0xACE6B5, 0xC3E7B1, 0xE5E6B3, 0xFAD3B3, 0xF9A8B1};

// Bodies under the Dark theme that were measured, by column.
struct DarkShade {
  std::size_t column;
  std::uint32_t color;
};
constexpr DarkShade kDarkShades[] = {{0, 0x5A242F}, {2, 0x592541}, {6, 0x382651}, {10, 0x254551}};

// A fifth of the way to white and then the same again: how the measured pale swatches follow from their row.
constexpr std::uint32_t paler(std::uint32_t byte) { return byte + (510 - 2 * byte) / 5; }

template <typename Change>
std::uint32_t change_bytes(std::uint32_t color, Change change) {
  std::uint32_t made = 0;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const double byte = change(static_cast<double>(color >> shift & 0xFF)) + 0.5;
    made |= static_cast<std::uint32_t>(std::clamp(byte, 0.0, 255.0)) << shift;
  }
  return made;
}

// REAPER draws a clip's body darker than its colour: the colour that comes out as `body`.
std::uint32_t color_of_body(std::uint32_t body) {
  return change_bytes(body, [](double byte) { return (byte - 18.9) / 0.275; }) | kIsColor;
}

// The body of a clip of that index under the Dark theme; none off the known grid.
std::optional<ClipColor> dark_shade(std::int32_t index) {
  if (index < 1 || index >= 4 * kRowStep || index % kRowStep == 0) return std::nullopt;
  const auto column = static_cast<std::size_t>((index - 1) % kRowStep);
  for (const DarkShade& shade : kDarkShades) {
    if (shade.column == column) return ClipColor{color_of_body(shade.color), 1, ClipColor::Shade::kDarkMeasured};
  }
  const std::uint32_t body = change_bytes(kPalette[0][column], [](double byte) { return byte * 0.22 + 36.0; });
  return ClipColor{color_of_body(body), 1, ClipColor::Shade::kDarkDerived};
}

}  // namespace

ClipColor clip_color(std::int32_t index, bool dark) {
  ClipColor made;
  const std::int32_t position = index < kRowStep + 1 ? index - 1 : index - kRowStep - 1;
  if (index >= 1 && index < 2 * kRowStep && position % 2 == 0) {
    made = {kClipSwatches[static_cast<std::size_t>(position / 2)] | kIsColor, 1};
  } else if (index >= 1 && index < kRowStep) {
    return {0, ClipColor::kAutoAssigned};
  } else {
    const PaletteColor swatch = palette_color(index);
    made = {swatch.color, swatch.kind};
  }
  return dark ? dark_shade(index).value_or(made) : made;
}

PaletteColor palette_color(std::int32_t index) {
  const bool on_grid = index > 0 && index < 4 * kRowStep && index % kRowStep != 0;
  if (on_grid && index > kRowStep) {
    const auto row = static_cast<std::size_t>(index / kRowStep - 1);
    const auto column = static_cast<std::size_t>(index % kRowStep - 1);
    return {kPalette[row][column] | kIsColor, 1};
  }
  if (on_grid) {
    if (index == kMeasuredPaleA) return {kPaleA | kIsColor, 1};
    if (index == kMeasuredPaleB) return {kPaleB | kIsColor, 1};
    const std::uint32_t base = kPalette[0][static_cast<std::size_t>(index - 1)];
    return {paler(base >> 16) << 16 | paler(base >> 8 & 0xFF) << 8 | paler(base & 0xFF) | kIsColor, 2};
  }
  const std::int64_t wide = index;
  const auto v = static_cast<std::uint64_t>(wide < 0 ? -wide : wide);
  const auto shade = [v](std::uint64_t factor) { return static_cast<std::uint32_t>(v * factor % 200 + 40); };
  return {shade(211) << 16 | shade(149) << 8 | shade(73) | kIsColor, 3};
}

}  // namespace frt

#include "session/clips/fades.h"

#include "image/content_types.h"

namespace frt {
namespace {

// Fade, from its mark
//   +14          u8  low nibble a (0 to 4), high nibble b (0 to 4): byte counts of the two values
//   +17          a bytes: how much of the fade lies before its position
//   +17 + a      b bytes: its whole length
//   +17 + a + b  u8  1 crossfade, 2 fade-out, 3 fade-in
// and if at least 10 bytes of the block are left behind the values:
//   +18 + a + b  u8  shape
//   +23 + a + b, +26 + a + b  u8, u8  both 1 for an S curve
namespace layout {
constexpr std::uint64_t kWidths = 14, kValues = 17;
constexpr unsigned kMostBefore = 4;
constexpr std::uint8_t kWidthsLimit = 80;
// From the end of the values:
constexpr std::uint64_t kKind = 0, kShape = 1, kCurveA = 6, kCurveB = 9, kLongForm = 10;
}  // namespace layout

FadeRecord read_fade(ByteView image, const FlatBlock& block) {
  using namespace layout;
  FadeRecord fade;
  const std::uint8_t widths = image.u8_or(block.start + kWidths, 0xFF);
  const unsigned a = widths & 15u, b = widths >> 4u;
  if (widths >= kWidthsLimit || a > kMostBefore) return fade;
  const std::uint64_t values = block.start + kValues, behind = values + a + b;
  const auto before = image.unsigned_of(values, a);
  const auto length = image.unsigned_of(values + a, b);
  if (!before || !length) return fade;
  fade.before = static_cast<double>(*before);
  fade.length = static_cast<double>(*length);
  const std::uint8_t kind = image.u8_or(behind + kKind, 0);
  if (kind >= 1 && kind <= 3 && *before <= *length) fade.kind = FadeKind{kind};
  if (behind + kLongForm <= block.end()) {
    fade.shape = image.u8_or(behind + kShape, 0);
    fade.s_curve = image.u8_or(behind + kCurveA, 0) == 1 && image.u8_or(behind + kCurveB, 0) == 1;
  }
  return fade;
}

}  // namespace

std::vector<FadeRecord> read_fades(const SessionImage& image, Skips& skips) {
  std::vector<FadeRecord> fades;
  const auto blocks = image.of_type(content::kFade);
  fades.reserve(blocks.size());
  for (const std::uint32_t index : blocks) {
    const FlatBlock& block = image.block(index);
    fades.push_back(read_fade(image.bytes(), block));
    if (fades.back().kind == FadeKind::kNotUnderstood) skips.add(content::kFade, block.start, "widths, length or kind");
  }
  return fades;
}

}  // namespace frt

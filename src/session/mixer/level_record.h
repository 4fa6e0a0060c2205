// The level record of a strip or a send.
#pragma once

#include <cstdint>
#include <optional>

#include "image/blocks.h"

namespace frt {

// From its mark, of a size of at least 157
//   p + 9   u8   0 or 1: where it is a send's, 1 for post-fader
//   p + 10  i32  fader, tenths of dB, -1450 to 125; this position is the record's
//   p + 14  u32  1 for muted
//   p + 22  i32  pan, -100 to 100
//   p + 50  i32  second pan, the right one of a stereo strip
namespace level_layout {
constexpr std::uint64_t kFlag = 9, kFader = 10, kMuted = 14, kPan = 22, kSecondPan = 50;
constexpr std::uint32_t kLeastSize = 157;
constexpr std::int32_t kLowest = -1450, kHighest = 125;
}  // namespace level_layout

// The fader of the record, tenths of a dB; nothing for a block that is no level record.
inline std::optional<std::int32_t> read_level(ByteView image, const FlatBlock& block) {
  namespace at = level_layout;
  if (block.size < at::kLeastSize || image.u8_or(block.start + at::kFlag, 255) > 1) return std::nullopt;
  const auto fader = image.i32(block.start + at::kFader);
  if (!fader || *fader < at::kLowest || *fader > at::kHighest) return std::nullopt;
  return fader;
}

}  // namespace frt

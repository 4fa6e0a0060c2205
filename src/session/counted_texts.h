// Counted texts wherever they stand: the search for names in blocks that nobody knows.
#pragma once

#include <cstdint>

#include "base/byte_scan.h"
#include "session/blocks.h"

namespace frt {

// 1 where a u32 count from least to least + span stands before a byte that can begin a text, else 0; a predicate of
// each_position. Most false candidates end at that byte.
inline std::uint8_t begins_counted_text(const ScanWindow<4>& w, std::size_t i, std::uint8_t least, std::uint8_t span) {
  const auto count_in_range = static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] - least) <= span);
  const auto count_is_small = static_cast<std::uint8_t>((w[i + 1] | w[i + 2] | w[i + 3]) == 0);
  // The ranges of text_ok.
  const std::uint8_t c = w[i + 4];
  const auto ascii = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c - 32) <= 126 - 32);
  const auto inner = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c - 0x80) <= 0xBF - 0x80);
  const auto lead = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c - 0xC2) <= 0xF4 - 0xC2);
  return static_cast<std::uint8_t>(count_in_range & count_is_small & (ascii | inner | lead));
}

// Calls take(position, text) for each position of [from, to), in order, at which a u32 count of `least` to `most`
// (1 to 255) stands before a text of that many bytes that lies inside the image and passes text_ok. Every position
// is tried. Stops when take gives false.
template <typename Take>
void each_counted_text(ByteView image, std::uint64_t from, std::uint64_t to, std::uint8_t least, std::uint8_t most,
                       Take take) {
  const auto span = static_cast<std::uint8_t>(most - least);
  const auto test = [least, span](const ScanWindow<4>& w, std::size_t i) {
    return begins_counted_text(w, i, least, span);
  };
  each_position<4>(image, from, to, test, [&](std::uint64_t p) {
    const auto text = image.text(p + 4, image.u8_or(p, 0));
    return !text || !text_ok(*text) || take(p, *text);
  });
}

}  // namespace frt

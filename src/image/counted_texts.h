// Counted texts wherever they stand: the search for names in blocks that nobody knows.
#pragma once

#include <cstdint>

#include "base/byte_scan.h"
#include "image/blocks.h"

namespace frt {

// A predicate of each_position: 1 where a u32 count from Least to Most (1 to 255) stands before bytes that can begin a
// text of that length, else 0. Sizes of small blocks look like counts; the bytes behind them end most of these.
template <std::uint8_t Least, std::uint8_t Most>
std::uint8_t begins_counted_text(const ScanWindow<6>& w, std::size_t i) {
  const auto printable = [](std::uint8_t c) { return static_cast<std::uint8_t>(c >= 32); };
  const auto count_in_range =
      static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] - Least) <= static_cast<std::uint8_t>(Most - Least));
  const auto count_is_small = static_cast<std::uint8_t>((w[i + 1] | w[i + 2] | w[i + 3]) == 0);
  std::uint8_t begins = static_cast<std::uint8_t>(count_in_range & count_is_small & printable(w[i + 4]));
  if constexpr (Least >= 2) begins = static_cast<std::uint8_t>(begins & printable(w[i + 5]));
  if constexpr (Least >= 3) begins = static_cast<std::uint8_t>(begins & printable(w[i + 6]));
  return begins;
}

// Calls take(position, text) for each position of [from, to), in order, at which a u32 count of Least to Most stands
// before a text of that many bytes that lies inside the image and passes text_ok. Every position is tried. Stops when
// take gives false.
template <std::uint8_t Least, std::uint8_t Most, typename Take>
void each_counted_text(ByteView image, std::uint64_t from, std::uint64_t to, Take take) {
  const auto test = [](const ScanWindow<6>& w, std::size_t i) { return begins_counted_text<Least, Most>(w, i); };
  each_position<6>(image, from, to, test, [&](std::uint64_t p) {
    const auto text = image.text(p + 4, image.u8_or(p, 0));
    return !text || !text_ok(*text) || take(p, *text);
  });
}

}  // namespace frt

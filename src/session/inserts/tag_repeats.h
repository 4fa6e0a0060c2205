// Whether a stretch of bytes stands again some way behind, asked many times of one block.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/bytes.h"

namespace frt {

// A block made so that each position compares thousands of bytes took a minute a megabyte. Positions are asked in
// order, so what was found equal at a distance is kept for the next position and no pair of bytes is compared twice.
class TagRepeats {
 public:
  explicit TagRepeats(ByteView bytes) : bytes_(bytes) {}

  // The bytes of [p, p + length) equal those `distance` behind; both lie inside.
  bool repeats(std::uint64_t p, std::uint64_t distance, std::uint64_t length) {
    Known& known = known_[distance * 0x9E3779B97F4A7C15 >> 54];
    if (known.distance != distance || p < known.from || p > known.to) known = {distance, p, p, false};
    if (!known.ends) extend(known, p + length);
    return known.to >= p + length;
  }

 private:
  // [from, to) is equal; at `to` it ends, or nobody looked further.
  struct Known {
    std::uint64_t distance = 0, from = 0, to = 0;
    bool ends = false;
  };

  void extend(Known& known, std::uint64_t limit) const {
    const std::uint8_t *const here = bytes_.data(), *const there = here + known.distance;
    while (known.to + sizeof(std::uint64_t) <= limit &&
           std::memcmp(here + known.to, there + known.to, sizeof(std::uint64_t)) == 0) {
      known.to += sizeof(std::uint64_t);
    }
    while (known.to < limit && here[known.to] == there[known.to]) ++known.to;
    known.ends = known.to < limit;
  }

  ByteView bytes_;
  std::array<Known, 1024> known_{};
};

}  // namespace frt

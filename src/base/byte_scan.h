// Looking at every byte position of an image: the searches that no index of blocks can answer.
//
// Positions are tested 64 at a time by a branch-free predicate, which compilers turn into vector code, so one
// pass costs about as much as touching the memory. Whatever passes the predicate goes to an exact check.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/bytes.h"

namespace frt {

// What a predicate sees: 64 positions and the Reach bytes behind them. Bytes outside the image are 0.
template <std::size_t Reach>
using ScanWindow = std::span<const std::uint8_t, 64 + Reach>;

// Calls take(p) for each p of [from, to), cut to the image, at which test(window, p - window start) gives 1; test
// gives 0 or 1 as a byte, without branches, and looks at no more than Reach bytes behind its position. Stops when
// take gives false.
template <std::size_t Reach, typename Test, typename Take>
void each_position(ByteView bytes, std::uint64_t from, std::uint64_t to, Test test, Take take) {
  constexpr std::size_t kWindow = 64 + Reach;
  to = std::min<std::uint64_t>(to, bytes.size());
  std::array<std::uint8_t, 64> hits;
  std::array<std::uint8_t, kWindow> tail{};
  for (std::uint64_t base = from; base < to; base += 64) {
    const ByteView there = bytes.clamped(base, kWindow);
    const bool whole = there.size() == kWindow;
    if (!whole) {
      tail.fill(0);
      std::memcpy(tail.data(), there.data(), there.size());
    }
    const ScanWindow<Reach> window(whole ? there.data() : tail.data(), kWindow);
    for (std::size_t i = 0; i < 64; ++i) hits[i] = test(window, i);
    std::array<std::uint64_t, 8> eights;
    std::memcpy(eights.data(), hits.data(), hits.size());
    std::uint64_t any = 0;
    for (const std::uint64_t eight : eights) any |= eight;
    if (any == 0) continue;
    const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(64, to - base));
    for (std::size_t i = 0; i < count; ++i) {
      if (eights[i / 8] == 0) {
        i |= 7;
        continue;
      }
      if (hits[i] && !take(base + i)) return;
    }
  }
}

}  // namespace frt

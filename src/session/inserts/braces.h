// Which "}" closes which "{" in text that nobody vouches for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/bytes.h"

namespace frt {

// Counting starts afresh at each "{": "{" counts up, "}" down, anything inside double quotes doesn't count, a backslash
// protects the byte behind it. All are answered by one pass from the end; a count from each "{" on would take a time
// that grows with the square of a block full of them.
class BraceIndex {
 public:
  BraceIndex(ByteView image, std::uint64_t start, std::uint64_t end);

  // The "}" that closes the "{" at `position`.
  std::optional<std::uint64_t> closing(std::uint64_t position) const;

  // Calls take(position, where it closes) for each "{" in order, until take gives false.
  template <typename Take>
  void each(Take take) const {
    for (std::size_t i = 0; i < places_.size(); ++i) {
      if (*image_.u8(start_ + places_[i]) == '{' && !take(start_ + places_[i], closing_at(i))) return;
    }
  }

 private:
  std::optional<std::uint64_t> closing_at(std::size_t i) const {
    if (unopened_[i + 1] == kNone) return std::nullopt;
    return start_ + places_[unopened_[i + 1]];
  }

  static constexpr std::uint32_t kNone = UINT32_MAX;
  ByteView image_;
  std::uint64_t start_;
  std::vector<std::uint32_t> places_;    // of all bytes that matter, from start_
  std::vector<std::uint32_t> unopened_;  // by place: where a count from it on meets a "}" that has no "{"
};

}  // namespace frt

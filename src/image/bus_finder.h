// Which bus name stands nearest to a position.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/text_index.h"

namespace frt {

// Searches the bytes around ascending positions for any of many names, not counted. Where windows overlap, each
// byte is still looked at once.
// A search for each name around each position took 64 s for a session of 1 MB with 300 pairs of buses and 70,000 sends,
// this 0.02 s; with 40 buses and 771 sends in 64 MiB a whole run took 0.29 s against 0.13 s.
class NearestBus {
 public:
  static constexpr std::uint64_t kReach = 1500;  // bytes before and after a position
  static constexpr std::size_t kLeastName = 3, kMostName = 40;

  // Names shorter than kLeastName or longer than kMostName are never found.
  NearestBus(ByteView image, const std::vector<std::string_view>& names);

  // The name that begins nearest to v and lies within reach; of two equally near the longer one. Positions must
  // not descend from call to call.
  std::optional<std::string_view> near(std::uint64_t v);

 private:
  static std::size_t bucket_of(std::string_view text);
  // The longest name that begins at the position and ends at or before `end`.
  std::optional<std::string_view> longest_at(std::uint64_t position, std::uint64_t end) const;

  ByteView image_;
  TextIndex names_;
  std::array<bool, 256> first_bytes_{};  // the names' first bytes: nearly every position ends here
  // By the first three bytes of a name: a bit for each length that occurs.
  std::array<std::uint64_t, 4096> lengths_{};
  std::deque<std::uint64_t> hits_;  // positions within reach at which a name begins
  std::uint64_t searched_ = 0;      // up to where the search went
};

}  // namespace frt

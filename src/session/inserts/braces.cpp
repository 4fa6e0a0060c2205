#include "session/inserts/braces.h"

#include "base/byte_scan.h"

namespace frt {

BraceIndex::BraceIndex(ByteView image, std::uint64_t start, std::uint64_t end) : image_(image), start_(start) {
  const auto matters = [](const ScanWindow<0>& w, std::size_t i) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(w[i] == '{') | static_cast<std::uint8_t>(w[i] == '}') |
                                     static_cast<std::uint8_t>(w[i] == '"') | static_cast<std::uint8_t>(w[i] == '\\'));
  };
  each_position<0>(image, start, end, matters, [&](std::uint64_t p) {
    places_.push_back(static_cast<std::uint32_t>(p - start));
    return true;
  });
  const std::size_t n = places_.size();
  unopened_.assign(n + 2, kNone);
  // The same for a count that begins inside quotes, at the next place and the one behind it.
  std::uint32_t quoted = kNone, quoted_behind = kNone;
  for (std::size_t i = n; i-- > 0;) {
    const std::uint8_t byte = *image.u8(start + places_[i]);
    std::uint32_t plain = unopened_[i + 1], in_quotes = quoted;
    if (byte == '}') {
      plain = static_cast<std::uint32_t>(i);
    } else if (byte == '{') {
      if (plain != kNone) plain = unopened_[plain + 1];
    } else if (byte == '"') {
      std::swap(plain, in_quotes);
    } else if (i + 1 < n && places_[i + 1] == places_[i] + 1) {  // a backslash that protects what matters
      plain = unopened_[i + 2];
      in_quotes = quoted_behind;
    }
    unopened_[i] = plain;
    quoted_behind = quoted;
    quoted = in_quotes;
  }
}

std::optional<std::uint64_t> BraceIndex::closing(std::uint64_t position) const {
  const auto found = std::lower_bound(places_.begin(), places_.end(), position - start_);
  return closing_at(static_cast<std::size_t>(found - places_.begin()));
}

}  // namespace frt

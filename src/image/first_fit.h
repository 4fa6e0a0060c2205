// The first block that begins in one place and ends in another, however the blocks of a hostile image overlap.
#pragma once

#include <cstdint>
#include <optional>

#include "base/min_tree.h"
#include "image/blocks.h"

namespace frt {

// Among all plausible blocks of an image, or those of one content type. In a session the first candidate fits as a
// rule; the search tree is only built for images whose blocks overrun their parents again and again.
class FirstFit {
 public:
  explicit FirstFit(const SessionImage& image) : image_(image) {}
  FirstFit(const SessionImage& image, std::uint16_t content_type) : image_(image), content_type_(content_type) {}

  // The first block that starts at or behind `from`, before `to`, and ends at or before `limit`; null if none.
  const FlatBlock* find(std::uint64_t from, std::uint64_t to, std::uint64_t limit);

 private:
  std::size_t count() const;
  const FlatBlock& block(std::size_t index) const;
  std::size_t first_at(std::uint64_t position) const;

  const SessionImage& image_;
  std::optional<std::uint16_t> content_type_;
  std::optional<MinTree> ends_;
};

}  // namespace frt

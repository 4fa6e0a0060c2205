#include "image/first_fit.h"

#include <algorithm>
#include <vector>

namespace frt {

std::size_t FirstFit::count() const {
  return content_type_ ? image_.of_type(*content_type_).size() : image_.blocks().size();
}

const FlatBlock& FirstFit::block(std::size_t index) const {
  return content_type_ ? image_.block(image_.of_type(*content_type_)[index]) : image_.blocks()[index];
}

std::size_t FirstFit::first_at(std::uint64_t position) const {
  std::size_t low = 0, high = count();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (block(middle).start < position) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

const FlatBlock* FirstFit::find(std::uint64_t from, std::uint64_t to, std::uint64_t limit) {
  constexpr std::size_t kTries = 32;
  std::size_t index = first_at(from);
  const std::size_t all = count();
  for (std::size_t tries = 0; tries < kTries; ++tries, ++index) {
    if (index >= all || block(index).start >= to) return nullptr;
    if (block(index).end() <= limit) return &block(index);
  }
  if (!ends_) {
    std::vector<std::uint64_t> ends(all);
    for (std::size_t i = 0; i < all; ++i) ends[i] = block(i).end();
    ends_.emplace(ends);
  }
  const auto found = ends_->first_at_most(index, first_at(to), limit);
  return found ? &block(*found) : nullptr;
}

}  // namespace frt

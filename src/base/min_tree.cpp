#include "base/min_tree.h"

#include <algorithm>

namespace frt {

MinTree::MinTree(const std::vector<std::uint64_t>& values) : count_(values.size()), leaves_(1) {
  while (leaves_ < count_) leaves_ *= 2;
  least_.assign(leaves_ * 2, UINT64_MAX);
  std::copy(values.begin(), values.end(), least_.begin() + static_cast<std::ptrdiff_t>(leaves_));
  for (std::size_t i = leaves_; i-- > 1;) least_[i] = std::min(least_[2 * i], least_[2 * i + 1]);
}

std::optional<std::uint64_t> MinTree::least(std::size_t from, std::size_t to) const {
  to = std::min(to, count_);
  if (from >= to) return std::nullopt;
  std::uint64_t found = UINT64_MAX;
  for (std::size_t a = from + leaves_, b = to + leaves_; a < b; a /= 2, b /= 2) {
    if (a & 1) found = std::min(found, least_[a++]);
    if (b & 1) found = std::min(found, least_[--b]);
  }
  return found;
}

std::optional<std::size_t> MinTree::first_at_most(std::size_t from, std::size_t to, std::uint64_t limit) const {
  to = std::min(to, count_);
  if (from >= to) return std::nullopt;
  // Climb from the first leaf until a subtree holds such a value, then go down its left edge.
  std::size_t node = from + leaves_;
  while (least_[node] > limit) {
    while (node & 1) node /= 2;  // a right child: what follows hangs on an ancestor
    if (node == 0) return std::nullopt;
    ++node;
  }
  while (node < leaves_) {
    node *= 2;
    if (least_[node] > limit) ++node;
  }
  const std::size_t index = node - leaves_;
  return index < to ? std::optional(index) : std::nullopt;
}

}  // namespace frt

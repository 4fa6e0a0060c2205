#include "model/clips/item_order.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace frt {

void sort_by_position(std::vector<OutputItem>& items) {
  const auto before = [](const OutputItem& a, const OutputItem& b) { return a.position < b.position; };
  if (std::is_sorted(items.begin(), items.end(), before)) return;

  // Items are large: the order is found on small keys, then each item moves once.
  struct Key {
    double position;
    std::size_t from;
  };
  std::vector<Key> order(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) order[i] = {items[i].position, i};
  std::stable_sort(order.begin(), order.end(), [](const Key& a, const Key& b) { return a.position < b.position; });
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (order[i].from == i) continue;
    OutputItem first = std::move(items[i]);
    std::size_t to = i;
    while (order[to].from != i) {
      const std::size_t from = order[to].from;
      items[to] = std::move(items[from]);
      order[to].from = to;
      to = from;
    }
    items[to] = std::move(first);
    order[to].from = to;
  }
}

}  // namespace frt

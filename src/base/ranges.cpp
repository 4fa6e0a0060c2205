#include "base/ranges.h"

#include <algorithm>
#include <set>
#include <utility>

namespace frt {

RangeIndex::RangeIndex(const std::vector<Range>& ranges, Choice choice) {
  // Positions strictly inside are start + 1 .. end - 1, so a range is active on [start + 1, end).
  struct Edge {
    std::uint64_t at;
    bool opens;
    std::size_t range;
  };
  std::vector<Edge> edges;
  edges.reserve(ranges.size() * 2);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    if (ranges[i].end <= ranges[i].start + 1) continue;
    edges.push_back({ranges[i].start + 1, true, i});
    edges.push_back({ranges[i].end, false, i});
  }
  std::sort(edges.begin(), edges.end(),
            [](const Edge& a, const Edge& b) { return std::pair(a.at, a.range) < std::pair(b.at, b.range); });
  const auto rank = [&](std::size_t i) {
    return std::pair(choice == Choice::kSmallest ? ranges[i].end - ranges[i].start : 0, i);
  };
  std::set<std::pair<std::uint64_t, std::size_t>> active;
  for (std::size_t i = 0; i < edges.size();) {
    const std::uint64_t at = edges[i].at;
    for (; i < edges.size() && edges[i].at == at; ++i) {
      if (edges[i].opens)
        active.insert(rank(edges[i].range));
      else
        active.erase(rank(edges[i].range));
    }
    const std::int64_t winner = active.empty() ? -1 : static_cast<std::int64_t>(active.begin()->second);
    if (steps_.empty() || steps_.back().winner != winner) steps_.push_back({at, winner});
  }
}

std::optional<std::size_t> RangeIndex::holding(std::uint64_t v) const {
  auto step = std::upper_bound(steps_.begin(), steps_.end(), v,
                               [](std::uint64_t value, const Step& s) { return value < s.from; });
  if (step == steps_.begin()) return std::nullopt;
  --step;
  if (step->winner < 0) return std::nullopt;
  return static_cast<std::size_t>(step->winner);
}

}  // namespace frt

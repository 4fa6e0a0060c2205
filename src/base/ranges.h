// Which of many ranges holds a position: the question behind every "the row that holds this record".
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace frt {

struct Range {
  std::uint64_t start = 0;
  std::uint64_t end = 0;
};

// Answers in O(log n), however the ranges nest or overlap. A range holds v if start < v < end.
class RangeIndex {
 public:
  enum class Choice {
    kFirst,     // the range of the lowest index
    kSmallest,  // the shortest range; of equal ones the lowest index
  };
  RangeIndex() = default;
  RangeIndex(const std::vector<Range>& ranges, Choice choice);

  // The index (in the list given) of the range that strictly holds v.
  std::optional<std::size_t> holding(std::uint64_t v) const;

 private:
  struct Step {
    std::uint64_t from;  // from this position up to the next step, `winner` holds
    std::int64_t winner;
  };
  std::vector<Step> steps_;
};

}  // namespace frt

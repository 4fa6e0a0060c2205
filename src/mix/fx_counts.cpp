#include "mix/fx_counts.h"

#include <algorithm>

namespace frt {

int FxCounts::instances() const {
  int sum = 0;
  for (const auto& [name, count] : all) sum += count;
  return sum;
}

int FxCounts::rows_of(FxOutcome outcome) const {
  return static_cast<int>(
      std::count_if(rows.begin(), rows.end(), [&](const FxReportRow& row) { return row.outcome == outcome; }));
}

}  // namespace frt

#include "report/plugin_tables.h"

#include <algorithm>

namespace frt {

int PluginTables::instances() const {
  int sum = 0;
  for (const auto& [name, count] : all) sum += count;
  return sum;
}

int PluginTables::rows_of(PluginOutcome outcome) const {
  return static_cast<int>(
      std::count_if(rows.begin(), rows.end(), [&](const PluginRow& row) { return row.outcome == outcome; }));
}

}  // namespace frt

#include "run/session_list.h"

#include <set>
#include <string>

#include "run/text_output.h"

namespace frt {

void print_session_list(double tempo, std::int64_t rate, const std::vector<std::string_view>& strip_table,
                        const std::vector<std::string_view>& bus_names,
                        const std::vector<std::string_view>& placement_names) {
  print_text("\n  tempo %g BPM, %lld Hz\n\n  session track table (%d):\n", tempo, static_cast<long long>(rate),
             static_cast<int>(strip_table.size()));
  int index = 0;
  for (const std::string_view name : strip_table) print_text("    %2d  %s\n", index++, std::string(name).c_str());
  print_text("\n  buses (%d): ", static_cast<int>(bus_names.size()));
  for (const std::string_view bus : bus_names) print_text("%s | ", std::string(bus).c_str());
  print_text("\n\n  libptformat track names (%d unique):\n", static_cast<int>(placement_names.size()));
  const std::set<std::string_view> in_table(strip_table.begin(), strip_table.end());
  for (const std::string_view name : std::set<std::string_view>(placement_names.begin(), placement_names.end()))
    print_text("    %-34s %s\n", std::string(name).c_str(), in_table.contains(name) ? "" : "<- not in table");
}

}  // namespace frt

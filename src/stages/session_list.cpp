#include "stages/session_list.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "run/text_output.h"

namespace frt {

void print_session_list(const Session& session) {
  const std::vector<std::string_view>& table = session.mixer.table.names;
  print_text("\n  tempo %g BPM, %lld Hz\n\n  session track table (%d):\n", session.clock.tempo.session_tempo,
             static_cast<long long>(session.rate), static_cast<int>(table.size()));
  int index = 0;
  for (const std::string_view name : table) print_text("    %2d  %s\n", index++, std::string(name).c_str());
  print_text("\n  buses (%d): ", static_cast<int>(session.mixer.listed_buses.size()));
  for (const std::string_view bus : session.mixer.listed_buses) print_text("%s | ", std::string(bus).c_str());
  const std::vector<std::string_view> placed = placement_names(session.clips, session.midi);
  print_text("\n\n  libptformat track names (%d unique):\n", static_cast<int>(placed.size()));
  const std::set<std::string_view> in_table(table.begin(), table.end());
  for (const std::string_view name : std::set<std::string_view>(placed.begin(), placed.end()))
    print_text("    %-34s %s\n", std::string(name).c_str(), in_table.contains(name) ? "" : "<- not in table");
}

}  // namespace frt

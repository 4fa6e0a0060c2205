// The text of --list: tempo, rate, tracks and buses of a session.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "session/tables.h"

namespace frt {

// Prints tempo (BPM) and rate (Hz), the session's track table, its buses, and the names that placements bear,
// marking those that the table does not hold.
void print_session_list(double tempo, std::int64_t rate, const std::vector<std::string_view>& strip_table,
                        const std::vector<std::string_view>& bus_names,
                        const std::vector<std::string_view>& placement_names);

}  // namespace frt

// The anonymous summary of a run as one JSON object in a file.
#pragma once

#include <string>

namespace frt {

// Writes the summary: result word by the run's status, then `body`, its four members as text ("session", "plugins",
// "not_converted", "warnings"); an empty body stands for four empty ones. False if the file cannot be written.
bool write_usage_file(const std::string& path, int status, const std::string& body);

}  // namespace frt

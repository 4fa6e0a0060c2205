// The help text: one table of option and text.
#pragma once

#include <string>

namespace frt {

// What `--help` prints, whole.
std::string help_text();

}  // namespace frt

// What is known of the session's plug-ins: the side files and REAPER's lists are read, and every insert is matched.
#pragma once

#include <functional>

#include "plugins/plugins.h"
#include "run/options.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// Moves plug-ins to their CLAP builds under --prefer-clap: it knows which settings those take, so it stands in state/.
// It prints its own lines, and is called behind the matching if there was a list to match with.
using ClapStep = std::function<void(Plugins&)>;

// Prints what it read and what it matched.
Plugins load_plugins(const ConversionOptions& options, const Inserts& inserts, const ClapStep& clap_step);

}  // namespace frt

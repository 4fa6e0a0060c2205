// Plug-ins of the session moved to their CLAP builds, where these take the settings.
#pragma once

#include "plugins/plugins.h"
#include "run/options.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// For --prefer-clap, behind the matching. Prints a line for each plug-in that it moved, and for each whose CLAP build
// is there and can't take its settings.
void prefer_clap_builds(Plugins& plugins, const Inserts& inserts, const ConversionOptions& options);

}  // namespace frt

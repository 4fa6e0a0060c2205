// Every plug-in of the session, matched against REAPER's lists.
#pragma once

#include "plugins/plugins.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// Fills the lists of overrides and of matched rows and prints a line for each plug-in that it placed. The cache and
// the learned rows must be there.
void match_inserts(const Inserts& inserts, bool prefer_vst3, Plugins& plugins);

}  // namespace frt

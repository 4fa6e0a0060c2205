// Which controls of the inserts are automated.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// Hangs each automated control of the session on its insert. `inserts` stand by start.
void read_plugin_controls(const SessionImage& image, std::vector<InsertRecord>& inserts);

}  // namespace frt

// Finding the session's plug-in inserts: where each sits, what feeds and automates it, what its block holds.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// By start.
std::vector<InsertRecord> read_inserts(const SessionImage& image);

}  // namespace frt

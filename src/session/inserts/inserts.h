// What the strips' inserts are: which belong to which strip, what the session calls its plug-ins, hardware inserts.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "session/inserts/insert_tables.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// `strips` with their level records.
Inserts read_all_inserts(const SessionImage& image, const std::vector<StripRecord>& strips,
                         const std::vector<StripRow>& rows);

}  // namespace frt

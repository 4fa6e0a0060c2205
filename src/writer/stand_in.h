// Slots of REAPER's own plug-ins, in a track's chain or on an item.
#pragma once

#include <string_view>

#include "standins/slot.h"
#include "writer/rpp_text.h"

namespace frt {

// `first_pair_only`: it hands on channels 1/2 alone.
void write_stand_in_slot(ProjectText& out, const StandInSlot& slot, std::string_view indent, bool first_pair_only);

}  // namespace frt

// Control values, for plug-ins that take them as a list.
#pragma once

#include "state/makers/source.h"

namespace frt {

// As floats alone.
StateBytes raw_floats(const StateSource& source);

// From the block's own chunks: the list, then what stands behind it.
StateBytes chunk_list(const StateSource& source);

}  // namespace frt

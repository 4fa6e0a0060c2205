// Line 6: a chain of sections behind "6SMC".
#pragma once

#include "state/makers/source.h"

namespace frt {

StateBytes line6_state(const StateSource& source);

}  // namespace frt

// A chunk without a mark of its own, as a VST3 takes it.
#pragma once

#include "state/makers/source.h"

namespace frt {

StateBytes chunk_vst3_state(const StateSource& source);

}  // namespace frt

// FabFilter: "FFBS" and "FabF".
#pragma once

#include "state/makers/source.h"

namespace frt {

// The document as a VST3's pair; its other builds take it as it stands.
StateBytes fabfilter_vst3_state(const StateSource& source);

// From the values of a control list.
TransformedState fabfilter_controls(const StateSource& source);

}  // namespace frt

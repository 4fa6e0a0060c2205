// "VC2!": an XML document of a JUCE plug-in, for its VST3 build.
#pragma once

#include "state/makers/source.h"

namespace frt {

StateBytes vc2_state(const StateSource& source);

}  // namespace frt

// A plug-in whose VST3 build wants its own head ahead of the session's chain of entries.
#pragma once

#include "state/makers/source.h"

namespace frt {

StateBytes template_state(const StateSource& source);

}  // namespace frt

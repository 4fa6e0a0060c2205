// Documents that go over whole, each in the wrapping of its plug-in's format.
#pragma once

#include "state/makers/source.h"

namespace frt {

// For the kinds from kMeta to kKontakt.
StateBytes wrapped_state(const StateSource& source);

// As it stands.
StateBytes plain_state(const StateSource& source);

}  // namespace frt

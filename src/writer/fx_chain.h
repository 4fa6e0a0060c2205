// The plug-in chain of a track, of a return track or of the master.
#pragma once

#include "mix/fx_chain.h"
#include "writer/rpp_text.h"

namespace frt {

// Nothing for a chain without slots.
void write_fx_chain(ProjectText& out, const FxChain& chain);

}  // namespace frt

// The one block that the envelopes of tracks, of the master and of sends share.
#pragma once

#include <span>
#include <string_view>

#include "mix/envelopes.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes the envelopes' blocks in order. `indent` stands before each line.
void write_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::string_view indent);

}  // namespace frt

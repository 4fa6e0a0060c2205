// The one block that the envelopes of tracks, of the master and of sends share.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "mix/envelopes.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes the envelopes' blocks in order. `indent` stands before each line.
void write_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::string_view indent);

// The same for those of a receive; `source` is the position of the track that it comes from.
void write_send_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::uint32_t source);

}  // namespace frt

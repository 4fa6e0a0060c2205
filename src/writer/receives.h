// The lines by which a track takes what other tracks give it.
#pragma once

#include <span>

#include "mix/receives.h"
#include "writer/rpp_text.h"

namespace frt {

void write_bus_receives(ProjectText& out, std::span<const BusReceive> receives);
// Each with its envelopes.
void write_send_receives(ProjectText& out, std::span<const SendReceive> receives);

}  // namespace frt

// Dyn3's dynamics as REAPER's: the compressor as ReaComp, the expander/gate as Downward Expander or ReaGate.
#pragma once

#include "session/inserts/insert_tables.h"
#include "standins/slot.h"
#include "state/containers.h"

namespace frt {

// The sizes of their lists of controls; with another, what a value means is not known.
constexpr std::size_t kDyn3CompressorControls = 14, kDyn3ExpanderGateControls = 15;

// `keyed`: something feeds the insert's key input. Controls that are missing or no numbers count as 0.
StandIn dyn3_compressor(const InsertRecord& insert, const StripPins& strip, bool keyed);
StandIn dyn3_expander_gate(const InsertRecord& insert, const StripPins& strip, bool keyed);

}  // namespace frt

// What MIDI and instrument strips hold beside audio ones: controller setup and Real-Time Properties; and the names
// behind key input ids.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "base/by_name.h"
#include "image/blocks.h"
#include "image/first_fit.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The block of a row's controller setup: the first one inside it. `blocks` looks for blocks of that type. Null if none.
const FlatBlock* setup_block(const SessionImage& image, const StripRow& row, FirstFit& blocks);

// One per strip row, unset for all but MIDI and instrument rows.
std::vector<MidiStripSetup> read_midi_setups(const SessionImage& image, const std::vector<StripRow>& rows);

// One per strip row, at rest for all but MIDI and instrument rows.
std::vector<RealTimeProperties> read_realtime_properties(const SessionImage& image, const std::vector<StripRow>& rows);

// By the row's current name, or its original one: the rows of MIDI tracks that tell a state.
ByName<MidiTrackState> read_midi_track_states(const SessionImage& image, const std::vector<StripRow>& rows);

// Bus name by key id, ids 0 to 65534; the last name found for an id.
std::map<std::uint16_t, std::string_view> read_key_buses(const SessionImage& image);

}  // namespace frt

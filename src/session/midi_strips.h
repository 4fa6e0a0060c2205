// What MIDI and instrument strips hold beside audio ones: controller setup (0x2036) and Real-Time Properties (0x2502);
// and the names behind key input ids (0x260e).
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One per strip row, unset for all but MIDI and instrument rows.
std::vector<MidiStripSetup> read_midi_setups(const SessionImage& image, const std::vector<StripRow>& rows);
// By track name, those with a fader value.
ByName<MidiStripSetup> midi_setups_by_name(const std::vector<StripRow>& rows,
                                           const std::vector<MidiStripSetup>& setups);

// One per strip row, at rest for all but MIDI and instrument rows.
std::vector<RealTimeProperties> read_realtime_properties(const SessionImage& image, const std::vector<StripRow>& rows);
// By track name, those with any property switched on.
ByName<RealTimeProperties> realtime_properties_by_name(const std::vector<StripRow>& rows,
                                                       const std::vector<RealTimeProperties>& properties);

// Bus name by key id, ids 0 to 65534; the last name found for an id.
std::map<std::uint16_t, std::string_view> read_key_buses(const SessionImage& image);

}  // namespace frt

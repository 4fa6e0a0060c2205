// What MIDI tracks play to: the session's MIDI devices, and instruments on other tracks.
#pragma once

#include <span>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

std::vector<MidiDevice> read_midi_devices(const SessionImage& image);

// The MIDI rows that play a plug-in: one of the devices, or an instrument row by its id.
std::vector<MidiElsewhere> read_midi_elsewhere(const SessionImage& image, const std::vector<StripRow>& rows,
                                               std::span<const MidiDevice> devices);

}  // namespace frt

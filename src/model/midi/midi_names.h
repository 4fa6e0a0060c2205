// MIDI tracks under the names they bear now.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "model/tracks.h"

namespace frt {

// A MIDI track comes under the name its playlist bears, which can be an old one. The names of the strip table that no
// audio track has are given to the tracks of that name, then to those whose name begins alike, then by place. A track
// that gets another name keeps none by which strips are found.
//   audio  the audio tracks to be written
void bring_midi_names_up_to_date(std::vector<OutputTrack>& midi, std::span<const OutputTrack> audio,
                                 std::span<const std::string_view> strip_table);

}  // namespace frt

// The tracks that MIDI placements stand on, as numbers. A name has no greatest length and thousands of placements share
// it, so it is looked at once a track and not again at every placement.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "session/clips/clip_tables.h"

namespace frt {

struct PlacedMidiTracks {
  struct Track {
    std::uint16_t index = 0;
    std::string_view name;
    std::uint32_t name_number = 0;  // in `names`
  };
  std::vector<Track> tracks;            // by index, then name
  std::vector<std::string_view> names;  // each once
  std::vector<std::uint32_t> track_of;  // by placement: its track

  std::uint32_t name_of(std::size_t placement) const { return tracks[track_of[placement]].name_number; }
};

PlacedMidiTracks number_midi_tracks(const std::vector<Placement>& placements);

}  // namespace frt

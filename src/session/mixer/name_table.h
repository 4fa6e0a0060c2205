// Names that no block is known to hold, found by looking at every byte position: the session's track names and the
// names of its buses.
#pragma once

#include <string_view>
#include <vector>

#include "image/blocks.h"

namespace frt {

// The track table by name scan: the run of counted texts near the image's beginning that starts at the first text
// that is a known name and in which each follows closely on the one before. Each name once; empty if no known name
// stands there. known_names are the track names of all audio, then all MIDI placements.
std::vector<std::string_view> read_name_table(const SessionImage& image,
                                              const std::vector<std::string_view>& known_names);

// The session's stereo buses, sorted by bytes: names that also appear with ".L" and with ".R", and "Bus 1-2" forms
// both of whose sides are named. Track names can be among them. Each is 3 to 40 bytes.
std::vector<std::string_view> read_bus_names(const SessionImage& image);

}  // namespace frt

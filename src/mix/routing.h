// Which written track feeds which. A session names buses, not tracks: here every output, send and key input gets its
// two ends.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "mix/key_inputs.h"
#include "mix/route_ends.h"
#include "mix/sends.h"
#include "model/bus_maps.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/mixer/mixer.h"

namespace frt {

// Taken off one pair of a source's channels.
struct BusLeg {
  TrackIndex source = 0;
  int channel = 0;  // of the source, from 0
};

struct RoutingCounts {
  SendCounts sends;
  std::vector<MultiMonoPair> multi_mono_pairs;
  std::vector<std::string> no_output_names;
  KeyCounts keys;
};

// Names are those by which the session's rows speak of their tracks: track keys. Points into the session and the
// tracks.
struct Routing {
  Sends sends;
  ReturnIndex return_index;                                                 // send targets that are no written track
  std::unordered_set<std::string_view> no_main_send;                        // no output, or an aux alone takes it
  std::unordered_map<std::string_view, std::vector<TrackIndex>> bus_feeds;  // by aux: the outputs that it takes
  std::unordered_map<std::string_view, std::vector<BusLeg>> bus_legs;       // by target
  std::unordered_map<std::string_view, int> leg_channels;                   // channels that legs need of their source
  std::unordered_map<std::string_view, int> aux_width;  // auxes that take a surround bus: its channels
  KeyInputs keys;
  RoutingCounts counts;
};

// `tracks` as they are written, in their order.
Routing route_tracks(const Mixer& mixer, std::span<const OutputTrack> tracks, const ConversionOptions& options);

}  // namespace frt

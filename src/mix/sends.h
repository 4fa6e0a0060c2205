// Pro Tools' sends: which track each of them feeds, and where its pan stands.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mix/route_ends.h"
#include "model/bus_maps.h"
#include "session/mixer/mixer.h"

namespace frt {

// What a target receives from one send.
struct ReceiveRecord {
  TrackIndex source = 0;
  const SendRecord* send = nullptr;  // its level, lanes and tap
  double pan = 0;                    // -1 to 1
};

// By target, in name order: an aux, or a bus that no written track takes.
using Receives = std::map<std::string_view, std::vector<ReceiveRecord>>;

struct SendCounts {
  int to_aux = 0;       // fed to the aux that takes their bus
  int matched_leg = 0;  // of these, found by the channels of the bus
  int split_pair = 0;   // whose bus several auxes take, one part each; only the first is fed
  int panned = 0;       // off centre, carried
  int pan_lanes_left = 0;
  std::vector<std::string> centered;  // stereo tracks with a send panned in a way that has no form here
};

struct Sends {
  Receives receives;
  std::vector<bool> prefader_source;  // by written track: some send of it is taken before its fader
  SendCounts counts;
};

// The result points into the mixer. `tracks` is the number of written tracks.
Sends route_sends(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, std::size_t tracks);

}  // namespace frt

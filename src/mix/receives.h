// What a track takes from other tracks: a line each in its block.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "mix/bind.h"
#include "mix/envelopes.h"
#include "mix/routing.h"
#include "mix/surround_panner.h"
#include "session/clock.h"

namespace frt {

// The point of the source's strip at which it is taken.
enum class Tap : std::uint8_t { kPreFx, kPreFader, kPostFader };

// A key input, a leg or a whole output.
struct BusReceive {
  TrackIndex source = 0;
  Tap tap = Tap::kPostFader;
  int source_channel = 0;  // from 0
  int source_width = 0;    // channels, 0 for a plain pair
  int channel = 0;         // of this track, from 0
};

struct SendReceive {
  TrackIndex source = 0;
  Tap tap = Tap::kPostFader;
  double gain = 1;
  double pan = 0;  // -1 to 1
  bool mute = false;
  std::vector<Envelope> envelopes;
};

struct ReceiveCounts {
  int bus_feeds = 0;  // outputs taken by an aux
  int sends = 0;
  int sends_off = 0;    // written muted
  int send_points = 0;  // of their envelopes
};

class ReceiveMaker {
 public:
  // All must live as long as this, routing and clock as long as the receives.
  ReceiveMaker(const Routing& routing, const Bound& bound, std::span<const OutputTrack> tracks,
               const ByName<SurroundPanner>& panners, const Clock& clock)
      : routing_(routing), bound_(bound), tracks_(tracks), panners_(panners), clock_(clock) {}

  // What the track of this key takes by its keys, legs and bus. `channels` are the track's own.
  std::vector<BusReceive> bus_receives(std::string_view key, TrackIndex index, int channels);
  // What it takes by sends. `active` says whether its envelopes play.
  std::vector<SendReceive> send_receives(std::string_view key, TrackIndex index, bool active);

  ReceiveCounts counts;

 private:
  int feed_width(TrackIndex source, int channels) const;

  const Routing& routing_;
  const Bound& bound_;
  std::span<const OutputTrack> tracks_;
  const ByName<SurroundPanner>& panners_;
  const Clock& clock_;
  std::unordered_set<std::string_view> met_by_bus_, met_by_sends_;  // keys
  Repeats repeats_;
};

}  // namespace frt

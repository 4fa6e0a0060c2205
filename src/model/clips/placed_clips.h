// Placements on their way to becoming items: small, so that those which stand for fades and clip groups, and those
// that were deleted, cost little until they are sorted out.
#pragma once

#include <cstdint>
#include <vector>

#include "model/tracks.h"

namespace frt {

struct PlacedClip {
  double position = 0;             // seconds
  std::uint32_t placement = 0;     // index into the audio placements
  std::uint32_t raw_position = 0;  // as stored, low 32 bits
  std::uint16_t clip_index = 0;
  // What its playlist entry says.
  std::int16_t color = -2;
  bool over_next = false, over_previous = false, locked = false;
};

// A track whose items are not made yet.
struct PlacedTrack {
  TrackNode node;
  std::vector<PlacedClip> clips;
  std::vector<PlacedClip> deleted;  // still in the session, no longer on the track
};

}  // namespace frt

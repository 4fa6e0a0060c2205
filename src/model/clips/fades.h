// Fades and crossfades: the clip edges they belong to.
#pragma once

#include <vector>

#include "model/tracks.h"
#include "session/clips/clip_tables.h"
#include "session/clock.h"

namespace frt {

struct FadeCounts {
  int fade_ins = 0, fade_outs = 0, crossfades = 0;  // attached
  int unbound = 0;                                  // no clip edge within 5 ms
  int not_understood = 0;
  int s_curves = 0;
};

// Gives the items of each track the fades of its playlist, extends clips under crossfades, and sorts the items by
// position again.
FadeCounts attach_fades(std::vector<TrackNode>& tracks, const std::vector<PlaylistRecord>& playlists,
                        const std::vector<FadeRecord>& fades, const Clock& clock);

}  // namespace frt

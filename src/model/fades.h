// Fades and crossfades: which playlist entries stand for one, and the clip edges they belong to.
#pragma once

#include <cstdint>
#include <vector>

#include "model/tempo.h"
#include "model/tracks.h"
#include "run/counters.h"
#include "session/clip_groups.h"
#include "session/tables.h"

namespace frt {

// What tells where the clips of a playlist begin and end.
struct ClipExtents {
  const std::vector<ClipRecord>& clips;
  const std::vector<std::int64_t>& sync_samples;  // by clip; empty if the session's sync points can't be trusted
  const std::vector<ClipGroupRow>& groups;
  const TempoMap& tempo;
  double sample_rate;
};

// Marks as fades those entries that don't say so by their kind but refer to a fade record whose edges, a clip's
// begin, end or both, stand exactly at the entry's position. Newer sessions store all their fades this way.
void mark_fades_on_clip_edges(std::vector<PlaylistRecord>& playlists, const std::vector<FadeRecord>& fades,
                              const ClipExtents& extents);

// Gives the items of each track the fades of its playlist, extends clips under crossfades, and sorts the items by
// position again. Counts what was attached, what found no clip edge within 5 ms, and what could not be read.
void attach_fades(std::vector<TrackNode>& tracks, const std::vector<PlaylistRecord>& playlists,
                  const std::vector<FadeRecord>& fades, const TempoMap& tempo, double sample_rate,
                  RunCounters& counters);

}  // namespace frt

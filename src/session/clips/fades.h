// The session's fade table: the lengths and shapes that playlist entries refer to by number, and which entries do.
#pragma once

#include <cstdint>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/clip_groups.h"
#include "session/clips/clip_tables.h"
#include "session/clock.h"

namespace frt {

// One record per fade block, in file order. A record that can't be made sense of is not understood, and stands in its
// place, so that the numbers of those behind it stay.
std::vector<FadeRecord> read_fades(const SessionImage& image, Skips& skips);

// What tells where the clips of a playlist begin and end.
struct ClipExtents {
  const std::vector<ClipRecord>& clips;
  const std::vector<std::int64_t>& sync_samples;  // by clip; empty if the session's sync points can't be trusted
  const std::vector<ClipGroupRow>& groups;
  const Clock& clock;
};

// Marks as fades those entries that don't say so by their kind but refer to a fade record whose edges, a clip's begin,
// end or both, stand exactly at the entry's position. Newer sessions store all their fades this way.
void mark_fades_on_clip_edges(std::vector<PlaylistRecord>& playlists, const std::vector<FadeRecord>& fades,
                              const ClipExtents& extents);

}  // namespace frt

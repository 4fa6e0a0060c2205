// Fades that don't say so: entries whose fade record stands on the edges of clips.
#include <algorithm>
#include <cmath>
#include <optional>

#include "session/clips/fades.h"

namespace frt {
namespace {

bool may_be_fade(const PlaylistEntry& entry, const std::vector<FadeRecord>& fades) {
  return !entry.is_clip && !entry.is_group && !entry.fade && entry.clip_or_fade_index < fades.size() &&
         fades[entry.clip_or_fade_index].kind != FadeKind::kNotUnderstood;
}

// The edges of the clips and clip groups of one playlist, in samples, each list sorted.
struct PlaylistEdges {
  std::vector<std::int64_t> begins, ends;

  bool meet(FadeKind fade_kind, std::int64_t at) const {
    const bool begin = std::binary_search(begins.begin(), begins.end(), at);
    const bool end = std::binary_search(ends.begin(), ends.end(), at);
    if (fade_kind == FadeKind::kFadeIn) return begin;
    if (fade_kind == FadeKind::kFadeOut) return end;
    return begin && end;
  }
};

// An entry's position in samples; in a playlist of ticks the nearest one.
std::int64_t sample_position(const PlaylistEntry& entry, bool ticks, const ClipExtents& extents) {
  const auto position = static_cast<std::int64_t>(entry.position);
  if (!ticks) return position;
  const double tick = static_cast<double>(position - static_cast<std::int64_t>(kTickOrigin));
  return std::llround(extents.clock.tempo.seconds_of_ticks(tick) * extents.clock.rate);
}

PlaylistEdges edges_of(const PlaylistRecord& playlist, const ClipExtents& extents) {
  PlaylistEdges edges;
  for (const PlaylistEntry& entry : playlist.entries) {
    if (!entry.is_clip) continue;
    const std::size_t index = entry.clip_or_fade_index;
    std::int64_t begin = sample_position(entry, playlist.ticks, extents);
    std::int64_t length = 0;
    if (entry.is_group) {
      if (index >= extents.groups.size() || !extents.groups[index].valid) continue;
      length = extents.groups[index].length;
    } else {
      if (index >= extents.clips.size()) continue;
      if (index < extents.sync_samples.size()) begin -= extents.sync_samples[index];
      length = extents.clips[index].length;
    }
    edges.begins.push_back(begin);
    edges.ends.push_back(begin + length);
  }
  std::sort(edges.begins.begin(), edges.begins.end());
  std::sort(edges.ends.begin(), edges.ends.end());
  return edges;
}

}  // namespace

void mark_fades_on_clip_edges(std::vector<PlaylistRecord>& playlists, const std::vector<FadeRecord>& fades,
                              const ClipExtents& extents) {
  if (fades.empty()) return;
  for (PlaylistRecord& playlist : playlists) {
    std::optional<PlaylistEdges> edges;
    for (PlaylistEntry& entry : playlist.entries) {
      if (!may_be_fade(entry, fades)) continue;
      if (!edges) edges = edges_of(playlist, extents);
      entry.fade = edges->meet(fades[entry.clip_or_fade_index].kind, sample_position(entry, playlist.ticks, extents));
    }
  }
}

}  // namespace frt

#include "model/midi/midi_overlaps.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <tuple>

namespace frt {
namespace {

// Clips that overlap by less are left as they are.
constexpr std::int64_t kLeastOverlap = 960;

std::uint32_t note_count(const MidiSource& midi, const Placement& placement) {
  const std::int32_t chunk = midi.clips[placement.clip].midi_chunk;
  return chunk < 0 ? 0 : midi.chunks[static_cast<std::size_t>(chunk)].size();
}

}  // namespace

std::vector<MidiClipEdges> find_midi_overlaps(const MidiSource& midi, const PlacedMidiTracks& tracks,
                                              const MidiPlaylistIndex& playlists) {
  std::vector<MidiClipEdges> edges(midi.placements.size());
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < midi.placements.size(); ++i)
    if (note_count(midi, midi.placements[i]) > 0) order.push_back(i);
  const std::vector<std::uint32_t>& track_of = tracks.track_of;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return std::tie(track_of[a], midi.placements[a].start) < std::tie(track_of[b], midi.placements[b].start);
  });
  for (std::size_t k = 1; k < order.size(); ++k) {
    if (track_of[order[k - 1]] != track_of[order[k]]) continue;
    const Placement& a = midi.placements[order[k - 1]];
    const Placement& b = midi.placements[order[k]];
    const ClipRecord& clip = midi.clips[a.clip];
    const std::int64_t b_length = midi.clips[b.clip].length;
    const std::int64_t distance = b.start - a.start;
    const std::int64_t overlap = clip.length - distance;
    if (distance == 0 || clip.length <= 0 || overlap <= kLeastOverlap) continue;
    switch (playlists.kind(tracks.name_of(order[k]), clip.index, static_cast<std::uint64_t>(std::abs(a.start)))) {
      case kAboveNext:
        if (b_length == 0 || overlap < b_length) edges[order[k]].head_trim = overlap;
        break;
      case kBelowNext:
      case kBelowNextToo:
        if (!b.muted) edges[order[k - 1]].cut = distance;
        break;
      default:
        break;
    }
  }
  return edges;
}

}  // namespace frt

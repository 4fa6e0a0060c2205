#include "model/midi/playlist_index.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "session/clock.h"

namespace frt {
namespace {

constexpr std::uint64_t kNearTicks = 960;
constexpr std::int16_t kNoColor = -2;
constexpr double kSecondsADay = 86400.0;

// A playlist's entries by clip, and how far the walk through them has come.
struct PositionWalk {
  struct Entry {
    std::uint32_t clip;
    std::size_t place;
    bool operator<(const Entry& other) const { return std::tie(clip, place) < std::tie(other.clip, other.place); }
  };
  const std::vector<MidiPosition>* positions = nullptr;  // null: no such playlist
  std::vector<Entry> by_clip;
  std::size_t cursor = 0;

  explicit PositionWalk(const std::vector<MidiPosition>* list) : positions(list) {
    if (!positions) return;
    by_clip.reserve(positions->size());
    for (std::size_t i = 0; i < positions->size(); ++i) by_clip.push_back({(*positions)[i].clip, i});
    std::sort(by_clip.begin(), by_clip.end());
  }

  // The clip's next entry from the cursor on, else its first.
  std::optional<std::uint64_t> next(std::uint32_t clip) {
    auto entry = std::lower_bound(by_clip.begin(), by_clip.end(), Entry{clip, cursor});
    if (entry == by_clip.end() || entry->clip != clip)
      entry = std::lower_bound(by_clip.begin(), by_clip.end(), Entry{clip, 0});
    if (entry == by_clip.end() || entry->clip != clip) return std::nullopt;
    cursor = std::max(cursor, entry->place + 1);
    return (*positions)[entry->place].position;
  }
};

}  // namespace

MidiPlaylistIndex::MidiPlaylistIndex(const ByName<std::vector<MidiInfoEntry>>& info, const PlacedMidiTracks& tracks)
    : playlists_(tracks.names.size()) {
  for (std::size_t name = 0; name < playlists_.size(); ++name) {
    const auto found = info.find(tracks.names[name]);
    if (found == info.end()) continue;
    Playlist& playlist = playlists_[name];
    for (const MidiInfoEntry& entry : found->second) {
      playlist.by_place.push_back(&entry);
      Look& look = playlist.looks[entry.clip];
      if (entry.color != kNoColor) look.color = entry.color;
      look.locked = entry.locked;
    }
    std::sort(playlist.by_place.begin(), playlist.by_place.end(), [](const MidiInfoEntry* a, const MidiInfoEntry* b) {
      return std::tie(a->clip, a->position, a) < std::tie(b->clip, b->position, b);
    });
  }
}

std::uint8_t MidiPlaylistIndex::kind(std::uint32_t name, std::uint32_t clip, std::uint64_t position) const {
  const std::vector<const MidiInfoEntry*>& entries = playlists_[name].by_place;
  const auto first_from = [&](std::uint64_t place) {
    return std::lower_bound(entries.begin(), entries.end(), place, [&](const MidiInfoEntry* entry, std::uint64_t at) {
      return std::tie(entry->clip, entry->position) < std::tie(clip, at);
    });
  };
  const MidiInfoEntry* best = nullptr;
  std::uint64_t best_distance = kNearTicks + 1;
  const auto after = first_from(position);
  if (after != entries.end() && (*after)->clip == clip && (*after)->position - position <= kNearTicks) {
    best = *after;
    best_distance = best->position - position;
  }
  if (after != entries.begin() && (*std::prev(after))->clip == clip) {
    // The first stored of those that stand at this place.
    const MidiInfoEntry* before = *first_from((*std::prev(after))->position);
    const std::uint64_t distance = position - before->position;
    if (distance < best_distance || (best && distance == best_distance && before < best)) best = before;
  }
  return best ? best->kind : 0;
}

MidiPlaylistIndex::Look MidiPlaylistIndex::look(std::uint32_t name, std::uint32_t clip) const {
  const auto& looks = playlists_[name].looks;
  const auto found = looks.find(clip);
  return found == looks.end() ? Look{} : found->second;
}

std::vector<std::optional<std::uint64_t>> find_sample_positions(const MidiSource& midi, const PlacedMidiTracks& tracks,
                                                                double rate) {
  const auto& positions = midi.playlists.positions;
  std::vector<std::optional<std::uint64_t>> found(midi.placements.size());
  std::vector<PositionWalk> walks;
  for (const std::string_view name : tracks.names) {
    const auto list = positions.find(name);
    walks.emplace_back(list == positions.end() ? nullptr : &list->second);
  }
  for (std::size_t i = 0; i < midi.placements.size(); ++i) {
    const auto position = walks[tracks.name_of(i)].next(midi.clips[midi.placements[i].clip].index);
    // A position in ticks has the tick origin in it; samples of a day don't reach that far.
    if (position && *position < kTickOrigin && static_cast<double>(*position) < kSecondsADay * rate)
      found[i] = position;
  }
  return found;
}

}  // namespace frt

#include "model/clips/deleted_placements.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace frt {
namespace {

// How far from its entry a placement may stand, in the playlist's unit.
constexpr std::int64_t kNearEntry = 64;
constexpr std::int16_t kNoColor = -2;
// Kinds of a clip's entry: drawn over the clip after it, or before it.
constexpr std::uint8_t kOverNext = 1, kOverPrevious = 2;

// (clip or fade number, low 32 bits of the position), in that order.
using Key = std::uint64_t;

constexpr Key key_of(std::uint64_t index, std::uint64_t position) { return (index << 32u) | (position & 0xFFFFFFFFu); }
Key key_of(const PlaylistEntry& entry) { return key_of(entry.clip_or_fade_index, entry.position); }
Key key_of(const PlacedClip& clip) { return key_of(clip.clip_index, clip.raw_position); }
constexpr std::uint64_t index_of(Key key) { return key >> 32u; }
constexpr std::int64_t position_of(Key key) { return static_cast<std::int64_t>(key & 0xFFFFFFFFu); }

// Keys, each of which can be taken once.
class KeySet {
 public:
  void add(Key key) { keys_.emplace_back(key, false); }
  void close() {
    std::sort(keys_.begin(), keys_.end());
    keys_.erase(std::unique(keys_.begin(), keys_.end()), keys_.end());
  }
  bool empty() const { return keys_.empty(); }
  bool has(Key key) const {
    const std::size_t at = find(key);
    return at < keys_.size() && !keys_[at].second;
  }
  // True if the key was there.
  bool take(Key key) {
    const std::size_t at = find(key);
    if (at == keys_.size() || keys_[at].second) return false;
    keys_[at].second = true;
    return true;
  }

 private:
  std::size_t find(Key key) const {
    const auto found = std::lower_bound(keys_.begin(), keys_.end(), std::pair(key, false));
    if (found == keys_.end() || found->first != key) return keys_.size();
    return static_cast<std::size_t>(found - keys_.begin());
  }
  std::vector<std::pair<Key, bool>> keys_;  // with "taken"
};

void take_out_group_placements(std::vector<PlacedClip>& clips, const PlaylistRecord& playlist) {
  KeySet groups, fades, rest;
  for (const PlaylistEntry& entry : playlist.entries) {
    if (entry.is_group) groups.add(key_of(entry));
  }
  groups.close();
  if (groups.empty()) return;
  for (const PlaylistEntry& entry : playlist.entries) {
    if (!entry.is_group) (entry.fade ? fades : rest).add(key_of(entry));
  }
  fades.close();
  rest.close();
  std::erase_if(clips, [&](const PlacedClip& clip) {
    const Key key = key_of(clip);
    return groups.take(key) || (!rest.has(key) && fades.take(key));
  });
}

// The entries of one playlist that stand for clips: one place per key, and per clip what is left to match.
class ClipEntries {
 public:
  // What the entries of one key say together.
  struct Place {
    Key key = 0;
    std::uint32_t left = 0;  // plain entries not matched yet
    std::uint32_t clip = 0;  // where the clip's count stands, if it has one
    std::int16_t color = kNoColor;
    bool over_next = false, over_previous = false, locked = false;
  };

  void reserve(std::size_t entries) { places_.reserve(entries); }

  // Entries must be added in record order: of two colours for one key the last holds.
  void add(const PlaylistEntry& entry) {
    Place place{.key = key_of(entry)};
    if (entry.is_clip) {
      place.left = 1;
      place.color = entry.color;
      place.over_next = entry.kind == kOverNext;
      place.over_previous = entry.kind == kOverPrevious;
      place.locked = entry.locked;
    }
    places_.push_back(place);
  }

  void close() {
    const auto by_key = [](const Place& a, const Place& b) { return a.key < b.key; };
    if (!std::is_sorted(places_.begin(), places_.end(), by_key))
      std::stable_sort(places_.begin(), places_.end(), by_key);
    std::size_t kept = 0;
    for (const Place& place : places_) {
      if (kept > 0 && places_[kept - 1].key == place.key) {
        Place& same = places_[kept - 1];
        same.left += place.left;
        same.over_next |= place.over_next;
        same.over_previous |= place.over_previous;
        same.locked |= place.locked;
        if (place.color != kNoColor) same.color = place.color;
      } else {
        places_[kept++] = place;
      }
    }
    places_.resize(kept);
    for (Place& place : places_) {
      if (place.left == 0) continue;
      if (clips_.empty() || clips_.back().index != index_of(place.key)) clips_.push_back({index_of(place.key), 0});
      clips_.back().left += place.left;
      place.clip = static_cast<std::uint32_t>(clips_.size() - 1);
    }
  }

  // No plain entry at all.
  bool empty() const { return clips_.empty(); }

  // The place of exactly this key; null if no entry bears it.
  Place* find(Key key) {
    const auto place = first_from(key);
    return place != places_.end() && place->key == key ? &*place : nullptr;
  }

  // The nearest place of the same clip that has an entry left; of two at one distance the lower. Null for none
  // in reach.
  Place* nearest(Key key) {
    const std::int64_t position = position_of(key);
    const std::int64_t lowest = std::max<std::int64_t>(position - kNearEntry, 0);
    Place* best = nullptr;
    for (auto place = first_from(key_of(index_of(key), static_cast<std::uint64_t>(lowest)));
         place != places_.end() && index_of(place->key) == index_of(key) &&
         position_of(place->key) <= position + kNearEntry;
         ++place) {
      if (place->left == 0) continue;
      if (!best || std::abs(position_of(place->key) - position) < std::abs(position_of(best->key) - position))
        best = &*place;
    }
    return best;
  }

  // Uses up an entry of the place, which must have one left.
  void use(Place& place) {
    --place.left;
    --clips_[place.clip].left;
  }

  // Uses up an entry of the key's clip, wherever it stands. False if none is left.
  bool use_any(Key key) {
    const auto clip = std::lower_bound(clips_.begin(), clips_.end(), index_of(key),
                                       [](const Clip& c, std::uint64_t index) { return c.index < index; });
    if (clip == clips_.end() || clip->index != index_of(key) || clip->left == 0) return false;
    --clip->left;
    return true;
  }

 private:
  struct Clip {
    std::uint64_t index;
    std::uint32_t left;
  };

  std::vector<Place>::iterator first_from(Key key) {
    return std::lower_bound(places_.begin(), places_.end(), key,
                            [](const Place& place, Key wanted) { return place.key < wanted; });
  }

  std::vector<Place> places_;  // by key
  std::vector<Clip> clips_;    // by index
};

enum class Fate : std::uint8_t { kUnmatched, kMatched, kFadeClip, kDeleted };

class PlacementSorter {
 public:
  PlacementSorter(const PlaylistRecord& playlist, std::size_t fade_count, DeletedCounts& counts) {
    entries_.reserve(playlist.entries.size());
    for (const PlaylistEntry& entry : playlist.entries) {
      if (entry.is_group) continue;
      if (entry.fade && entry.clip_or_fade_index < fade_count) {
        fades_.add(key_of(entry));
        continue;
      }
      if (entry.is_clip && entry.color != kNoColor) ++counts.colored;
      entries_.add(entry);
    }
    fades_.close();
    entries_.close();
  }

  void sort_out(PlacedTrack& track, bool keep_fade_clips, DeletedCounts& counts) {
    if (entries_.empty()) return;
    const std::vector<Fate> fates = decide(track.clips, keep_fade_clips);
    const auto number_of = [&](Fate fate) { return static_cast<int>(std::count(fates.begin(), fates.end(), fate)); };
    const int fade_clips = number_of(Fate::kFadeClip), deleted = number_of(Fate::kDeleted);
    if (fade_clips + deleted == static_cast<int>(fates.size())) return;
    counts.fade_clips_dropped += fade_clips;
    counts.deleted += deleted;

    std::size_t kept = 0;
    for (std::size_t i = 0; i < track.clips.size(); ++i) {
      if (fates[i] == Fate::kFadeClip) continue;
      if (fates[i] == Fate::kDeleted) {
        track.deleted.push_back(track.clips[i]);
        continue;
      }
      track.clips[kept] = track.clips[i];
      take_marks(track.clips[kept++]);
    }
    track.clips.resize(kept);
  }

 private:
  std::vector<Fate> decide(const std::vector<PlacedClip>& clips, bool keep_fade_clips) {
    std::vector<Fate> fates(clips.size(), Fate::kUnmatched);
    for (std::size_t i = 0; i < clips.size(); ++i) {
      const Key key = key_of(clips[i]);
      ClipEntries::Place* place = entries_.find(key);
      if (!place || place->left == 0) {
        // A fade and a clip can bear the same number at the same place: the clip's entries come first, and what is
        // over stands for the fade.
        if (!keep_fade_clips && fades_.has(key)) {
          fates[i] = Fate::kFadeClip;
          continue;
        }
        place = entries_.nearest(key);
      }
      if (!place) continue;
      entries_.use(*place);
      fates[i] = Fate::kMatched;
    }
    for (std::size_t i = 0; i < clips.size(); ++i) {
      if (fates[i] == Fate::kUnmatched && !entries_.use_any(key_of(clips[i]))) fates[i] = Fate::kDeleted;
    }
    return fates;
  }

  // By the placement's own key, also where its entry stands beside it.
  void take_marks(PlacedClip& clip) {
    const ClipEntries::Place* place = entries_.find(key_of(clip));
    if (!place) return;
    clip.over_next = place->over_next;
    clip.over_previous = place->over_previous;
    clip.locked = place->locked;
    clip.color = place->color;
  }

  KeySet fades_;
  ClipEntries entries_;
};

}  // namespace

void take_out_group_placements(std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists) {
  for (PlacedTrack& track : tracks) {
    if (track.node.playlist) take_out_group_placements(track.clips, playlists[*track.node.playlist]);
  }
}

DeletedCounts set_deleted_placements_aside(std::vector<PlacedTrack>& tracks,
                                           const std::vector<PlaylistRecord>& playlists,
                                           const std::vector<FadeRecord>& fades, const ConversionOptions& options) {
  DeletedCounts counts;
  for (PlacedTrack& track : tracks) {
    if (!track.node.playlist) continue;
    PlacementSorter sorter(playlists[*track.node.playlist], fades.size(), counts);
    sorter.sort_out(track, options.keep_fade_clips, counts);
  }
  return counts;
}

}  // namespace frt

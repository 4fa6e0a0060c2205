#include "model/clips/pairing.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace frt {
namespace {

// Positions above this are too large for samples: ticks carry a bias that lifts them there.
constexpr std::uint64_t kLargeRawPosition = 1000000000;

// Playlists under a key each, for "the first of this key at or behind the cursor".
template <typename Key>
class PlaylistsBy {
 public:
  void add(Key key, std::size_t playlist) { keyed_.emplace_back(key, playlist); }
  void sort() { std::sort(keyed_.begin(), keyed_.end()); }
  // -1 for none.
  std::int64_t first_from(Key key, std::size_t cursor) const {
    const auto found = std::lower_bound(keyed_.begin(), keyed_.end(), std::pair(key, cursor));
    if (found == keyed_.end() || found->first != key) return -1;
    return static_cast<std::int64_t>(found->second);
  }

 private:
  std::vector<std::pair<Key, std::size_t>> keyed_;
};

bool has_group(const PlaylistRecord& playlist) {
  return std::any_of(playlist.entries.begin(), playlist.entries.end(),
                     [](const PlaylistEntry& entry) { return entry.is_group; });
}

TrackPairing pair_by_count(const std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists) {
  PlaylistsBy<std::uint64_t> by_count;
  PlaylistsBy<std::string_view> grouped_by_name;
  const bool all_read = std::all_of(playlists.begin(), playlists.end(),
                                    [](const PlaylistRecord& playlist) { return playlist.entries_read; });
  for (std::size_t i = 0; i < playlists.size(); ++i) {
    by_count.add(playlists[i].entry_count, i);
    if (all_read && has_group(playlists[i])) grouped_by_name.add(playlists[i].name, i);
  }
  by_count.sort();
  grouped_by_name.sort();

  TrackPairing pairing;
  std::size_t cursor = 0;
  for (const PlacedTrack& track : tracks) {
    std::int64_t hit = by_count.first_from(track.clips.size(), cursor);
    // Clip groups change the count, so their playlists are found by name.
    if (hit < 0) hit = grouped_by_name.first_from(track.node.name, cursor);
    if (hit >= 0) cursor = static_cast<std::size_t>(hit) + 1;
    pairing.playlist_of.push_back(hit);
  }
  return pairing;
}

// Sessions in which some playlist of a track bears no name: the k-th playlist of the list is that of track number k,
// as numbered before tracks without a placement were closed up. Counts would give tracks their neighbours' playlists.
TrackPairing pair_by_number(const std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                            const std::vector<TrackPlaylist>& track_playlists) {
  std::unordered_map<std::uint64_t, std::int64_t> record_at;
  for (std::size_t i = 0; i < playlists.size(); ++i)
    record_at.emplace(playlists[i].start, static_cast<std::int64_t>(i));
  TrackPairing pairing;
  pairing.by_number = true;
  for (const PlacedTrack& track : tracks) {
    std::int64_t hit = -1;
    if (track.node.stored_track_index < track_playlists.size()) {
      const auto found = record_at.find(track_playlists[track.node.stored_track_index].start);
      if (found != record_at.end()) hit = found->second;
    }
    pairing.playlist_of.push_back(hit);
  }
  return pairing;
}

bool judge_by_size(const std::vector<PlacedClip>& clips) {
  const auto large = std::count_if(clips.begin(), clips.end(),
                                   [](const PlacedClip& clip) { return clip.raw_position > kLargeRawPosition; });
  return 2 * static_cast<std::size_t>(large) >= clips.size();
}

}  // namespace

TrackPairing pair_tracks(const std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                         const std::vector<TrackPlaylist>& track_playlists, std::size_t channel_count) {
  const bool some_unnamed = std::any_of(track_playlists.begin(), track_playlists.end(),
                                        [](const TrackPlaylist& playlist) { return playlist.unnamed; });
  if (some_unnamed && track_playlists.size() == channel_count)
    return pair_by_number(tracks, playlists, track_playlists);
  return pair_by_count(tracks, playlists);
}

PairingCounts take_records(std::vector<PlacedTrack>& tracks, const std::vector<PlaylistRecord>& playlists,
                           const TrackPairing& pairing) {
  PairingCounts counts;
  const auto in_ticks = [](const PlaylistRecord& playlist) { return playlist.ticks; };
  const bool all_ticks = std::all_of(playlists.begin(), playlists.end(), in_ticks);
  const bool all_samples = !playlists.empty() && std::none_of(playlists.begin(), playlists.end(), in_ticks);
  counts.records_exist = !playlists.empty();
  counts.all_samples = all_samples;

  for (std::size_t i = 0; i < tracks.size(); ++i) {
    TrackNode& track = tracks[i].node;
    const std::int64_t index = pairing.playlist_of[i];
    const bool paired = index >= 0;
    track.ticks = true;
    if (paired) {
      const PlaylistRecord& record = playlists[static_cast<std::size_t>(index)];
      if (record.entries_read) track.playlist = static_cast<std::size_t>(index);
      track.ticks = record.ticks;
      track.record_name = record.name;
      if (record.name.empty() && pairing.by_number) track.record_name = track.name;
      if (!record.name.empty()) track.name = record.name;
    }
    if (!paired || (track.record_name.empty() && !pairing.by_number)) {
      if (all_samples || (all_ticks && !playlists.empty())) {
        track.ticks = all_ticks;
        ++counts.read_that_way;
      } else {
        track.ticks = judge_by_size(tracks[i].clips);
        ++counts.judged;
      }
    }
    ++(track.ticks ? counts.tick_based : counts.sample_based);
  }
  return counts;
}

}  // namespace frt

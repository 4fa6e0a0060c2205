#include "mix/route_ends.h"

namespace frt {

RouteEnds::RouteEnds(std::span<const OutputTrack> tracks) : next_(tracks.size(), kNone) {
  for (const OutputTrack& track : tracks) written_names_.insert(track.name);
  for (std::size_t k = tracks.size(); k-- > 0;) {  // backwards: the first of a name is the last to be entered
    const OutputTrack& track = tracks[k];
    if (track.alt_takes) continue;
    const auto index = static_cast<TrackIndex>(k);
    const auto [entry, is_new] = by_pt_name_.try_emplace(track.pt_name, index);
    if (!is_new) {
      next_[k] = entry->second;
      entry->second = index;
    }
    by_either_name_.insert_or_assign(track.name, index);
    if (!track.pt_name.empty()) by_either_name_.insert_or_assign(track.pt_name, index);
    keys_.insert(track.key());
  }
}

std::optional<TrackIndex> RouteEnds::next_source(TrackIndex before) const {
  return next_[before] == kNone ? std::nullopt : std::optional(next_[before]);
}

std::optional<TrackIndex> RouteEnds::index_in(const Index& index, std::string_view name) {
  const auto found = index.find(name);
  return found == index.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace frt

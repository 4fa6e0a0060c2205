// Which of the session's tables belong to which written track: every rule by which a name finds its strip, its row or
// its list stands here, once.
#pragma once

#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/tracks.h"
#include "session/session.h"

namespace frt {

// ---- the rules ----

// Most tables: the track's written name, else its Pro Tools name. Null if neither is there.
template <typename Map>
auto find_by_names(const Map& map, const OutputTrack& track) -> const typename Map::mapped_type* {
  auto found = map.find(track.name);
  if (found == map.end() && !track.pt_name.empty()) found = map.find(track.pt_name);
  return found == map.end() ? nullptr : &found->second;
}

// Routes and what hangs on them: the Pro Tools name, or the written one if that is empty.
template <typename Map>
auto find_by_key(const Map& map, const OutputTrack& track) -> const typename Map::mapped_type* {
  const auto found = map.find(track.key());
  return found == map.end() ? nullptr : &found->second;
}

// What goes by the session's own name first: the Pro Tools name, else the written name.
template <typename Map>
auto find_by_pt_name_first(const Map& map, const OutputTrack& track) -> const typename Map::mapped_type* {
  auto found = track.pt_name.empty() ? map.end() : map.find(track.pt_name);
  if (found == map.end()) found = map.find(track.name);
  return found == map.end() ? nullptr : &found->second;
}

// Sets of names: either name counts.
template <typename Names>
bool has_either_name(const Names& names, const OutputTrack& track) {
  return names.contains(track.name) || names.contains(track.pt_name);
}

// What a strip row tells stands under the row's current name, always, and under its original one unless something
// stands there yet. `value` may be false for a row that tells nothing.
template <typename T, typename Value>
std::unordered_map<std::string_view, T> by_row_names(std::span<const StripRow> rows, Value value) {
  std::unordered_map<std::string_view, T> map;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const auto told = value(k);
    if (!told) continue;
    if (!rows[k].current_name.empty()) map.insert_or_assign(rows[k].current_name, *told);
    if (!rows[k].original_name.empty()) map.try_emplace(rows[k].original_name, *told);
  }
  return map;
}

// ---- the binding ----

struct BoundTrack {
  const StripRecord* strip = nullptr;  // with mixer data; of strips of one name the first
  const TrackRow* row = nullptr;
  std::string_view row_name;  // the name under which the row was found
  bool first_of_row = false;  // no track before it was found under that name
  Timebase timebase = Timebase::kDefault;
  int width = 0;          // folded legs, 0 if not known
  int surround_legs = 0;  // 0 for all but surround folds
};

// In written order. Points into the session's tables.
struct Bound {
  std::vector<BoundTrack> tracks;
  std::vector<BoundTrack> returns;
};

// `returns` are the names of the return tracks, in their order.
Bound bind_tracks(const Session& session, std::span<const OutputTrack> tracks, const TrackFacts& facts,
                  std::span<const std::string_view> returns = {});

// Name and comment of each strip row that has a comment, in row order.
using TrackComment = std::pair<std::string_view, std::string_view>;
std::vector<TrackComment> track_comments(const Mixer& mixer);

}  // namespace frt

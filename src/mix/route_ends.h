// Which written tracks a route means by a name. Tracks that hold another's set-aside takes are no end of any route.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/tracks.h"

namespace frt {

using TrackIndex = std::uint32_t;  // position among the written tracks

class RouteEnds {
 public:
  // `tracks` must live as long as this.
  explicit RouteEnds(std::span<const OutputTrack> tracks);

  // The first track that bears the name in Pro Tools.
  std::optional<TrackIndex> source(std::string_view pt_name) const { return index_in(by_pt_name_, pt_name); }
  // The next one of that name.
  std::optional<TrackIndex> next_source(TrackIndex before) const;
  // The first track that bears the name there or here.
  std::optional<TrackIndex> by_either_name(std::string_view name) const { return index_in(by_either_name_, name); }
  // Some track stands under this key.
  bool is_key(std::string_view name) const { return keys_.contains(name); }
  // Some track is written under this name; here those with takes count.
  bool is_written(std::string_view name) const { return written_names_.contains(name); }

 private:
  using Index = std::unordered_map<std::string_view, TrackIndex>;
  static constexpr TrackIndex kNone = std::numeric_limits<TrackIndex>::max();

  static std::optional<TrackIndex> index_in(const Index& index, std::string_view name);

  Index by_pt_name_, by_either_name_;
  std::unordered_set<std::string_view> keys_, written_names_;
  std::vector<TrackIndex> next_;  // by track: the next one of its Pro Tools name
};

// Several tracks may bear one name, and what goes by the name then goes to each of them. Sessions hold a few such
// names; in one that holds nothing else it would grow by the square, so what goes to more than the first of a name is
// held to this many lines and envelope points in all.
class Repeats {
 public:
  bool take(std::size_t lines_and_points) {
    if (lines_and_points > left_) return false;
    left_ -= lines_and_points;
    return true;
  }

 private:
  static constexpr std::size_t kMost = 1'000'000;
  std::size_t left_ = kMost;
};

}  // namespace frt

#include "model/tracks/folding.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace frt {
namespace {

// A freeze render's track has this name in the session, whatever track it belongs to.
constexpr std::string_view kFreezeName = "?";
constexpr std::string_view kAltTakes = " [alt takes]";
constexpr std::size_t kFewestSurroundLegs = 3, kMostSurroundLegs = 8;
constexpr double kSameSeconds = 1e-9;

// What a node is apart from its clips.
struct NodeKind {
  bool alternate = false;
  bool freeze = false;
  std::string_view owner;         // of an alternate: the strip it belongs to, empty if unknown
  std::string_view frozen_track;  // of a freeze render: the track above it
};

std::vector<NodeKind> kinds_of(const std::vector<TrackNode>& nodes, const std::vector<std::string_view>& strip_table,
                               const ByName<std::size_t>& playlist_owners, FoldCounts& counts) {
  const std::unordered_set<std::string_view> track_names(strip_table.begin(), strip_table.end());
  std::vector<NodeKind> kinds(nodes.size());
  std::string_view last_real_name;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const TrackNode& node = nodes[i];
    NodeKind& kind = kinds[i];
    kind.alternate = !node.record_name.empty() && !strip_table.empty() && !track_names.contains(node.record_name);
    kind.freeze = node.name == kFreezeName;
    if (kind.alternate) {
      const auto owner = playlist_owners.find(node.record_name);
      if (owner != playlist_owners.end() && owner->second < strip_table.size()) {
        kind.owner = strip_table[owner->second];
        ++counts.owner_matches;
      }
    }
    if (kind.freeze) {
      kind.frozen_track = last_real_name;
    } else {
      last_real_name = node.name;
    }
  }
  return kinds;
}

void set_pan_side(std::vector<OutputItem>& items, double side) {
  for (OutputItem& item : items) item.pan_side = side;
}

bool before(const OutputItem& a, const OutputItem& b) { return a.position < b.position; }

// Both legs by position, the left one first where they start together.
std::vector<OutputItem> merge_legs(std::vector<OutputItem>&& left, std::vector<OutputItem>&& right) {
  set_pan_side(left, -1.0);
  set_pan_side(right, 1.0);
  if (!std::is_sorted(left.begin(), left.end(), before)) std::stable_sort(left.begin(), left.end(), before);
  if (!std::is_sorted(right.begin(), right.end(), before)) std::stable_sort(right.begin(), right.end(), before);
  std::vector<OutputItem> merged;
  merged.reserve(left.size() + right.size());
  std::merge(std::make_move_iterator(left.begin()), std::make_move_iterator(left.end()),
             std::make_move_iterator(right.begin()), std::make_move_iterator(right.end()), std::back_inserter(merged),
             before);
  return merged;
}

// A surround track's legs hold the same clips of the same interleaved files.
bool legs_alike(const TrackNode& first, const TrackNode& leg) {
  if (first.items.empty() || first.items.size() != leg.items.size()) return false;
  return std::equal(first.items.begin(), first.items.end(), leg.items.begin(),
                    [](const OutputItem& a, const OutputItem& b) {
                      return a.file_name == b.file_name && std::abs(a.position - b.position) <= kSameSeconds &&
                             std::abs(a.length - b.length) <= kSameSeconds;
                    });
}

class Folding {
 public:
  Folding(std::vector<TrackNode>& nodes, const std::vector<NodeKind>& kinds, const ConversionOptions& options,
          TrackFacts& facts, FoldCounts& counts)
      : nodes_(nodes), kinds_(kinds), options_(options), facts_(facts), counts_(counts) {}

  // Tracks of one name stand next to each other: each such run is one pair, one surround track, or tracks apart.
  std::vector<OutputTrack> fold() {
    for (std::size_t first = 0; first < nodes_.size();) {
      std::size_t end = first + 1;
      while (end < nodes_.size() && nodes_[end].name == nodes_[first].name) ++end;
      fold_run(first, end - first);
      first = end;
    }
    return std::move(tracks_);
  }

 private:
  void fold_run(std::size_t first, std::size_t n) {
    bool any_alternate = false;
    for (std::size_t i = first; i < first + n; ++i) any_alternate |= kinds_[i].alternate;
    if (n == 2 && !any_alternate) return fold_stereo(first);
    if (n >= kFewestSurroundLegs && n <= kMostSurroundLegs && !any_alternate && run_alike(first, n)) {
      return fold_surround(first, n);
    }
    for (std::size_t k = 0; k < n; ++k) write_apart(first + k, n, k);
  }

  bool run_alike(std::size_t first, std::size_t n) const {
    for (std::size_t i = first; i < first + n; ++i) {
      if (!legs_alike(nodes_[first], nodes_[i])) return false;
    }
    return true;
  }

  void note_timebase(const TrackNode& node) {
    facts_.timebase.insert_or_assign(std::string(node.name), node.ticks ? Timebase::kBeatsPosition : Timebase::kTime);
  }
  void note_width(const TrackNode& node, std::size_t legs) {
    facts_.width.insert_or_assign(std::string(node.name), static_cast<int>(legs));
  }

  void mark_freeze(OutputTrack& track, const NodeKind& kind) {
    if (!kind.freeze) return;
    track.freeze_record = true;
    track.frozen_track = kind.frozen_track;
  }

  void fold_stereo(std::size_t first) {
    TrackNode& left = nodes_[first];
    TrackNode& right = nodes_[first + 1];
    OutputTrack track;
    track.name = track.pt_name = left.name;
    mark_freeze(track, kinds_[first]);
    note_timebase(left);
    note_width(left, 2);
    track.items = merge_legs(std::move(left.items), std::move(right.items));
    tracks_.push_back(std::move(track));
    if (options_.recover_deleted && (!left.alternates.empty() || !right.alternates.empty())) {
      OutputTrack takes;
      takes.name = std::string(left.name).append(kAltTakes);
      takes.alt_takes = true;
      takes.items = merge_legs(std::move(left.alternates), std::move(right.alternates));
      tracks_.push_back(std::move(takes));
    }
    ++counts_.stereo_merges;
  }

  void fold_surround(std::size_t first, std::size_t n) {
    TrackNode& leg = nodes_[first];
    OutputTrack track;
    track.name = track.pt_name = leg.name;
    set_pan_side(leg.items, 0.0);
    for (OutputItem& item : leg.items) item.channel_mode = 0;  // one item plays all channels
    track.items = std::move(leg.items);
    note_timebase(leg);
    note_width(leg, n);
    facts_.surround_legs.insert_or_assign(std::string(leg.name), static_cast<int>(n));
    tracks_.push_back(std::move(track));
    ++counts_.surround_folds;
  }

  // The k-th track of a run of n that doesn't fold.
  void write_apart(std::size_t index, std::size_t n, std::size_t k) {
    TrackNode& node = nodes_[index];
    const NodeKind& kind = kinds_[index];
    if (kind.alternate && !kind.freeze && !options_.keep_alt_takes) {
      ++counts_.alternates_left_out;
      node.items.clear();
      return;
    }
    OutputTrack track;
    track.name = node.name;
    mark_freeze(track, kind);
    if (!kind.alternate) {
      note_width(node, n);
      note_timebase(node);
      track.pt_name = node.name;
    } else if (kind.owner.empty()) {
      track.name.append(" [alt playlist]");
      track.orphan_playlist = true;
    } else {
      track.lane_parent = kind.owner;
      track.lane_name = node.name;
      track.name = std::string(kind.owner).append(" [lane: ").append(node.name).append("]");
    }
    track.items = std::move(node.items);
    if (n == 2) {
      track.forced_pan = k == 0 ? -1.0 : 1.0;
      track.name.append(k == 0 ? " [L]" : " [R]");
    }
    OutputTrack takes;
    const bool recover = options_.recover_deleted && !node.alternates.empty();
    if (recover) {
      takes.name = std::string(track.name).append(kAltTakes);
      takes.forced_pan = track.forced_pan;
      takes.alt_takes = true;
      takes.orphan_playlist = track.orphan_playlist;
      takes.items = std::move(node.alternates);
      if (kind.alternate) takes.alt_parent = kind.owner;
    }
    tracks_.push_back(std::move(track));
    if (recover) tracks_.push_back(std::move(takes));
  }

  std::vector<TrackNode>& nodes_;
  const std::vector<NodeKind>& kinds_;
  const ConversionOptions& options_;
  TrackFacts& facts_;
  FoldCounts& counts_;
  std::vector<OutputTrack> tracks_;
};

// Alternate playlists ride on their owner as lanes, wherever in the list they stand; their "[alt takes]" companions
// stand directly behind the owner. Lanes whose owner has no clips stay at the end: the track order finds them a home.
std::vector<OutputTrack> gather_lanes(std::vector<OutputTrack>&& tracks, FoldCounts& counts) {
  std::unordered_map<std::string_view, std::vector<std::size_t>> lanes_of, takes_of;
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (!tracks[i].lane_parent.empty()) lanes_of[tracks[i].lane_parent].push_back(i);
    if (!tracks[i].alt_parent.empty()) takes_of[tracks[i].alt_parent].push_back(i);
  }
  // The keys above are views into the tracks, so the order is found first and the tracks move last.
  struct Place {
    std::size_t track;
    const std::vector<std::size_t>* lanes;  // of a main track, else null
  };
  std::vector<Place> order;
  std::vector<bool> claimed(tracks.size(), false);
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (claimed[i] || !tracks[i].lane_parent.empty()) continue;
    claimed[i] = true;
    order.push_back({i, nullptr});
    if (tracks[i].pt_name.empty()) continue;
    if (const auto found = lanes_of.find(tracks[i].pt_name); found != lanes_of.end() && !claimed[found->second[0]]) {
      // Lanes are claimed by an owner's first track, all at once.
      order.back().lanes = &found->second;
      for (const std::size_t lane : found->second) claimed[lane] = true;
    }
    if (const auto found = takes_of.find(tracks[i].pt_name); found != takes_of.end()) {
      for (const std::size_t takes : found->second) {
        if (claimed[takes]) continue;
        claimed[takes] = true;
        order.push_back({takes, nullptr});
      }
      found->second.clear();
    }
  }
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (!claimed[i]) order.push_back({i, nullptr});
  }

  std::vector<OutputTrack> gathered;
  gathered.reserve(order.size());
  for (const Place& place : order) {
    OutputTrack track = std::move(tracks[place.track]);
    if (place.lanes) {
      for (const std::size_t lane : *place.lanes) {
        track.lanes.push_back({std::move(tracks[lane].lane_name), std::move(tracks[lane].items)});
        ++counts.lanes;
      }
    }
    gathered.push_back(std::move(track));
  }
  return gathered;
}

}  // namespace

FoldedTracks fold_tracks(std::vector<TrackNode>&& nodes, const std::vector<std::string_view>& strip_table,
                         const ByName<std::size_t>& playlist_owners, const ConversionOptions& options) {
  FoldedTracks folded;
  const std::vector<NodeKind> kinds = kinds_of(nodes, strip_table, playlist_owners, folded.counts);
  folded.tracks = gather_lanes(Folding(nodes, kinds, options, folded.facts, folded.counts).fold(), folded.counts);
  return folded;
}

}  // namespace frt

#include "model/clips/fades.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "model/clips/item_order.h"

namespace frt {
namespace {

// A fade belongs to a clip edge nearer than this, in seconds.
constexpr double kEdgeReach = 0.005;

// ---- nearest edges ----

// The starts or the ends of a track's items, for "the item whose edge is nearest". Edges move while crossfades are
// attached; the answer is always that of a look at every item in list order.
class EdgeIndex {
 public:
  using Index = std::uint32_t;

  // `at` holds one edge an item, in list order.
  explicit EdgeIndex(const std::vector<double>& at) : edges_(at.size()), right_(at.size() + 1), left_(at.size() + 1) {
    for (std::size_t i = 0; i < at.size(); ++i) edges_[i] = {at[i], static_cast<Index>(i)};
    if (!std::is_sorted(edges_.begin(), edges_.end())) std::sort(edges_.begin(), edges_.end());
    std::iota(right_.begin(), right_.end(), Index{0});
    std::iota(left_.begin(), left_.end(), Index{0});
  }

  // The item whose edge is nearest to t and nearer than kEdgeReach; of equal ones the first in list order.
  std::optional<Index> nearest(double t) {
    Best best;
    // Edges at one place stand in list order, so the first of them speaks for all. Different places can still be
    // equally far where the difference rounds, hence the loops.
    for (Index i = standing_from(first_at(t)); i < edges_.size(); i = standing_from(first_behind(edges_[i].at))) {
      if (!best.consider(edges_[i], t)) break;
    }
    for (Index i = first_at(t); (i = standing_before(i)) != kNone;) {
      i = first_at(edges_[i].at);
      if (!best.consider(edges_[standing_from(i)], t)) break;
    }
    const auto behind = moved_.lower_bound({t, 0});
    for (auto edge = behind; edge != moved_.end(); edge = moved_.upper_bound({edge->at, kNone})) {
      if (!best.consider(*edge, t)) break;
    }
    for (auto edge = behind; edge != moved_.begin();) {
      edge = moved_.lower_bound({std::prev(edge)->at, 0});
      if (!best.consider(*edge, t)) break;
    }
    return best.item;
  }

  void move(Index item, double from, double to) {
    if (from == to) return;
    const Edge old{from, item}, now{to, item};
    if (moved_.erase(old) == 0) {
      const auto i = static_cast<Index>(std::lower_bound(edges_.begin(), edges_.end(), old) - edges_.begin());
      if (i == edges_.size()) return;
      if ((i == 0 || edges_[i - 1] < now) && (i + 1 == edges_.size() || now < edges_[i + 1])) {
        edges_[i] = now;  // nothing passed: it keeps its place
        return;
      }
      // From here on searches pass over it: to the right from i, to the left from the place behind it.
      right_[i] = i + 1;
      left_[i + 1] = i;
    }
    moved_.insert(now);
  }

 private:
  static constexpr Index kNone = UINT32_MAX;

  struct Edge {
    double at;
    Index item;
    bool operator<(const Edge& other) const { return std::tie(at, item) < std::tie(other.at, other.item); }
  };

  struct Best {
    double distance = kEdgeReach;
    std::optional<Index> item;
    // False if this edge, and so every one farther out, is too far.
    bool consider(const Edge& edge, double t) {
      const double d = std::abs(edge.at - t);
      if (!(d < distance || (item && d == distance))) return false;
      if (d < distance || edge.item < *item) item = edge.item;
      distance = d;
      return true;
    }
  };

  Index first_at(double t) const {
    return static_cast<Index>(std::lower_bound(edges_.begin(), edges_.end(), Edge{t, 0}) - edges_.begin());
  }
  Index first_behind(double t) const {
    return static_cast<Index>(std::upper_bound(edges_.begin(), edges_.end(), Edge{t, kNone}) - edges_.begin());
  }
  // Follows the links over edges that moved away, and shortens them on the way.
  static Index follow(std::vector<Index>& links, Index i) {
    while (links[i] != i) {
      links[i] = links[links[i]];
      i = links[i];
    }
    return i;
  }
  // The first edge at or behind place i that did not move away; edges_.size() for none.
  Index standing_from(Index i) { return follow(right_, i); }
  // The last such edge before place i; kNone for none.
  Index standing_before(Index i) {
    const Index behind = follow(left_, i);
    return behind == 0 ? kNone : behind - 1;
  }

  std::vector<Edge> edges_;   // those that moved past others are passed over
  std::vector<Index> right_;  // by place: itself, or a place further right
  std::vector<Index> left_;   // by place: itself, or one further left; the edge meant stands before it
  std::set<Edge> moved_;
};

// ---- attaching ----

// A fade in seconds.
struct TimedFade {
  double at = 0;
  double before = 0;  // how much of it lies before `at`
  double length = 0;
};

TimedFade timed_fade(const PlaylistEntry& entry, const FadeRecord& fade, bool ticks, const Clock& clock) {
  if (!ticks) {
    return {clock.of_samples(static_cast<double>(entry.position)), clock.of_samples(fade.before),
            clock.of_samples(fade.length)};
  }
  const TempoMap& tempo = clock.tempo;
  const auto seconds = [&](double tick) {
    return tempo.has_song_start() ? tempo.timeline_seconds(tick) : tempo.seconds_of_ticks(tick);
  };
  const double tick = stored_to_ticks(entry.position);
  const double at = seconds(tick);
  return {at, at - seconds(tick - fade.before), seconds(tick + fade.length) - at};
}

// The edges of one track's items, kept up to date with what crossfades do to them.
class TrackFader {
 public:
  TrackFader(std::vector<OutputItem>& items, FadeCounts& counts)
      : items_(items), counts_(counts), starts_(edges(items, false)), ends_(edges(items, true)) {}

  void attach(const TimedFade& fade, FadeKind kind, FadeShape shape) {
    const auto starting = starts_.nearest(fade.at);
    const auto ending = ends_.nearest(fade.at);
    if (kind == FadeKind::kFadeIn && starting) {
      items_[*starting].fade_in = fade.length;
      items_[*starting].fade_in_shape = shape;
      ++counts_.fade_ins;
    } else if (kind == FadeKind::kFadeOut && ending) {
      items_[*ending].fade_out = fade.length;
      items_[*ending].fade_out_shape = shape;
      ++counts_.fade_outs;
    } else if (kind == FadeKind::kCrossfade && starting && ending) {
      crossfade(*ending, *starting, fade, shape);
      ++counts_.crossfades;
    } else {
      ++counts_.unbound;
    }
  }

 private:
  static double end_of(const OutputItem& item) { return item.position + item.length; }

  static std::vector<double> edges(const std::vector<OutputItem>& items, bool ends) {
    std::vector<double> at(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) at[i] = ends ? end_of(items[i]) : items[i].position;
    return at;
  }

  void crossfade(EdgeIndex::Index ending, EdgeIndex::Index starting, const TimedFade& fade, FadeShape shape) {
    OutputItem& a = items_[ending];
    OutputItem& b = items_[starting];
    const double pre = fade.before, post = fade.length - fade.before;
    if (b.source_offset < pre || b.position < pre) {
      // No material before the cut: the clips stay where they are.
      a.fade_out = pre > 0.0 ? pre : fade.length;
      a.crossfaded = true;
      b.fade_in = post > 0.0 ? post : fade.length;
      return;
    }
    const double a_end = end_of(a), b_end = end_of(b), b_start = b.position;
    a.length += post;
    b.position -= pre;
    b.source_offset -= pre;
    b.length += pre;
    a.fade_out = fade.length;
    b.fade_in = fade.length;
    a.crossfaded = true;
    a.fade_out_shape = shape;
    b.fade_in_shape = shape;
    starts_.move(starting, b_start, b.position);
    ends_.move(ending, a_end, end_of(a));
    if (starting != ending) ends_.move(starting, b_end, end_of(b));
  }

  std::vector<OutputItem>& items_;
  FadeCounts& counts_;
  EdgeIndex starts_, ends_;
};

bool has_fade(const PlaylistRecord& playlist) {
  return std::any_of(playlist.entries.begin(), playlist.entries.end(),
                     [](const PlaylistEntry& entry) { return entry.fade; });
}

}  // namespace

FadeCounts attach_fades(std::vector<TrackNode>& tracks, const std::vector<PlaylistRecord>& playlists,
                        const std::vector<FadeRecord>& fades, const Clock& clock) {
  FadeCounts counts;
  for (TrackNode& track : tracks) {
    if (!track.playlist) continue;
    const PlaylistRecord& playlist = playlists[*track.playlist];
    if (!has_fade(playlist)) continue;
    TrackFader fader(track.items, counts);
    for (const PlaylistEntry& entry : playlist.entries) {
      if (!entry.fade) continue;
      if (entry.clip_or_fade_index >= fades.size() ||
          fades[entry.clip_or_fade_index].kind == FadeKind::kNotUnderstood) {
        ++counts.not_understood;
        continue;
      }
      const FadeRecord& fade = fades[entry.clip_or_fade_index];
      if (fade.s_curve) ++counts.s_curves;
      const FadeShape shape = fade.s_curve      ? FadeShape::kSCurve
                              : fade.shape == 1 ? FadeShape::kCurved
                                                : FadeShape::kLinear;
      fader.attach(timed_fade(entry, fade, track.ticks, clock), fade.kind, shape);
    }
    sort_by_position(track.items);
  }
  return counts;
}

}  // namespace frt

#include "mix/items.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace frt {
namespace {

constexpr double kEdge = 1e-9;  // seconds

// A clip's gain line is written again for each of its placements. No project comes near this many points; a session
// made to multiply one long line by thousands of placements ends here, and further lines are left out.
constexpr std::uint64_t kMostGainPoints = 4'000'000;

// The points of a clip gain line that lie in the item, in seconds from its start and dB, with points on its edges
// where the line crosses them.
std::vector<ItemGainPoint> gain_in_item(const OutputItem& item, const Clock& clock) {
  const std::vector<GainPoint>& line = *item.gain_envelope;
  const auto time_of = [&](std::size_t i) {
    return clock.of_samples(static_cast<double>(line[i].position)) - item.source_offset;
  };
  const auto db_at = [&](std::size_t i, double time) {  // between the points i and i + 1
    const double from = time_of(i), to = time_of(i + 1);
    return line[i].db + (line[i + 1].db - line[i].db) * (time - from) / (to - from);
  };
  std::vector<ItemGainPoint> inside;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const double time = time_of(i);
    if (time >= -kEdge && time <= item.length + kEdge) {
      inside.push_back({std::max(0.0, std::min(time, item.length)), line[i].db});
    } else if (time < 0.0) {
      if (i + 1 < line.size() && time_of(i + 1) > 0.0) inside.push_back({0.0, db_at(i, 0.0)});
    } else if (i > 0 && time_of(i - 1) < item.length) {
      inside.push_back({item.length, db_at(i - 1, item.length)});
    }
  }
  return inside;
}

class ItemMixer {
 public:
  ItemMixer(MediaFiles& media, const Clock& clock, const ConversionOptions& options)
      : media_(media), clock_(clock), options_(options) {}

  void finish(std::vector<OutputItem>& items) {
    for (OutputItem& item : items) finish(item);
  }
  const ItemCounts& counts() const { return counts_; }

 private:
  void finish(OutputItem& item) {
    ++counts_.clips_written;
    if (item.sync_offset > 0.0) {
      ++counts_.sync_point_clips;
      if (item.sync_offset >= item.length) item.sync_offset = 0.0;
    }
    if (item.locked) ++counts_.locked_clips;
    if (item.clip_color != 0 && options_.no_clip_colors) {
      item.clip_color = 0;
      ++counts_.uncolored_by_option;
    }
    decide_gain_line(item);
    MediaFile& file = media_.resolve(item.file_name, item.file_index);
    item.media = &file;
    ++file.clips;
    if (file.in_media_folder && !file.by_the_session) return;
    ++counts_.clips_elsewhere;
    if (!file.by_the_session) ++counts_.clips_in_sibling_folders;
  }

  void decide_gain_line(OutputItem& item) {
    if (!item.gain_envelope || item.gain_envelope->size() < 2) return;
    const std::uint64_t to_walk = item.gain_envelope->size() / 8;
    if (to_walk > gain_points_left_) return;
    std::vector<ItemGainPoint> points = gain_in_item(item, clock_);
    const std::uint64_t cost = std::min(to_walk + points.size(), gain_points_left_);
    gain_points_left_ -= cost;
    if (points.size() < 2 || cost < points.size()) return;
    item.gain_line = std::move(points);
    ++counts_.gain_envelopes;
  }

  MediaFiles& media_;
  const Clock& clock_;
  const ConversionOptions& options_;
  ItemCounts counts_;
  std::uint64_t gain_points_left_ = kMostGainPoints;
};

}  // namespace

ItemCounts mix_items(std::vector<OutputTrack>& tracks, MediaFiles& media, const Clock& clock,
                     const ConversionOptions& options) {
  ItemMixer mixer(media, clock, options);
  for (OutputTrack& track : tracks) {
    mixer.finish(track.items);
    for (Lane& lane : track.lanes) mixer.finish(lane.items);
  }
  return mixer.counts();
}

}  // namespace frt

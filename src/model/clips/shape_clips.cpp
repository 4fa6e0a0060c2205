#include "model/clips/shape_clips.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/text.h"
#include "model/clips/deleted_placements.h"
#include "model/clips/fades.h"
#include "model/clips/pairing.h"
#include "model/clips/placed_clips.h"

namespace frt {
namespace {

// A clip that starts less than this into its file plays it from the start, in samples.
constexpr std::uint32_t kFileStart = 64;
constexpr std::size_t kLongestExtension = 4;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string_view without_trailing_digits(std::string_view text) {
  while (!text.empty() && is_digit(text.back())) text.remove_suffix(1);
  return text;
}

// One track per number, with its placements in their order. Positions stay raw.
std::vector<PlacedTrack> gather_tracks(const std::vector<Placement>& placements, const std::vector<ClipRecord>& clips) {
  std::vector<PlacedTrack> tracks;
  for (std::size_t first = 0; first < placements.size();) {
    std::size_t last = first + 1;
    while (last < placements.size() && placements[last].track_index == placements[first].track_index) ++last;
    PlacedTrack& track = tracks.emplace_back();
    track.node.track_index = placements[first].track_index;
    track.node.stored_track_index = placements[first].stored_track_index;
    track.node.name = placements[first].track_name;
    track.clips.reserve(last - first);
    for (; first < last; ++first) {
      PlacedClip& placed = track.clips.emplace_back();
      placed.placement = static_cast<std::uint32_t>(first);
      placed.raw_position = placements[first].raw_start;
      placed.clip_index = clips[placements[first].clip].index;
    }
  }
  return tracks;
}

double sync_offset_of(const Placement& placement, const std::vector<std::int64_t>& sync_samples, const Clock& clock) {
  if (placement.clip >= sync_samples.size()) return 0.0;
  return clock.of_samples(static_cast<double>(sync_samples[placement.clip]));
}

double seconds_of(const Placement& placement, bool ticks, const Clock& clock) {
  if (!ticks) return clock.of_samples(static_cast<double>(placement.start));
  const TempoMap& tempo = clock.tempo;
  const double tick = stored_to_ticks(placement.position40);
  return tempo.has_song_start() ? tempo.timeline_seconds(tick) : tempo.seconds_of_ticks(tick);
}

// Raw positions to seconds, then back by the sync point, then into the order of the timeline.
void place_in_seconds(std::vector<PlacedTrack>& tracks, const std::vector<Placement>& placements,
                      const std::vector<std::int64_t>& sync_samples, const Clock& clock) {
  for (PlacedTrack& track : tracks) {
    for (PlacedClip& clip : track.clips) {
      const Placement& placement = placements[clip.placement];
      const double at = seconds_of(placement, track.node.ticks, clock);
      clip.position = std::max(at - sync_offset_of(placement, sync_samples, clock), 0.0);
    }
    const auto earlier = [](const PlacedClip& a, const PlacedClip& b) { return a.position < b.position; };
    if (!std::is_sorted(track.clips.begin(), track.clips.end(), earlier))
      std::stable_sort(track.clips.begin(), track.clips.end(), earlier);
  }
}

// A clip of a file with several channels is one of them.
int channel_mode_of(const ClipRecord& clip) {
  constexpr std::int64_t kChannelLimit = 64;  // what REAPER can take alone
  constexpr int kFirstChannelAlone = 3;
  if (clip.file_channels < 2 || clip.channel < 0 ||
      clip.channel >= std::min<std::int64_t>(clip.file_channels, kChannelLimit))
    return 0;
  return kFirstChannelAlone + static_cast<int>(clip.channel);
}

OutputItem make_item(const PlacedClip& placed, const Placement& placement, const ClipRecord& clip, double sync_offset,
                     const Clock& clock) {
  OutputItem item;
  item.clip_index = placed.clip_index;
  item.raw_position = placed.raw_position;
  item.raw_offset = static_cast<std::uint32_t>(clip.source_offset);
  item.position = placed.position;
  item.length = clock.of_samples(static_cast<double>(clip.length));
  item.source_offset = clock.of_samples(static_cast<double>(clip.source_offset));
  item.clip_name = clip.name;
  item.file_name = clip.file_name;
  item.file_index = clip.file_index;
  item.channel_mode = channel_mode_of(clip);
  item.muted = placement.muted;
  item.whole_file = is_whole_file(clip.name, item.raw_offset);
  item.over_next = placed.over_next;
  item.over_previous = placed.over_previous;
  item.locked = placed.locked;
  item.color = placed.color;
  item.sync_offset = sync_offset;
  return item;
}

// Items for what stands on the tracks, and for the deleted placements if they are asked for.
std::vector<TrackNode> make_items(std::vector<PlacedTrack> placed_tracks, const ClipSource& source, const Clock& clock,
                                  bool with_deleted) {
  std::vector<TrackNode> tracks;
  tracks.reserve(placed_tracks.size());
  std::size_t first_placement = 0;  // of the track, to count its placements from
  const auto add_items = [&](const std::vector<PlacedClip>& placed_clips, std::vector<OutputItem>& items) {
    items.reserve(placed_clips.size());
    for (const PlacedClip& placed : placed_clips) {
      const Placement& placement = source.placements[placed.placement];
      items.push_back(make_item(placed, placement, source.clips[placement.clip],
                                sync_offset_of(placement, source.sync_samples, clock), clock));
      items.back().ordinal = static_cast<std::uint32_t>(placed.placement - first_placement);
    }
  };
  for (PlacedTrack& placed : placed_tracks) {
    while (source.placements[first_placement].track_index != placed.node.track_index) ++first_placement;
    TrackNode& track = tracks.emplace_back(std::move(placed.node));
    add_items(placed.clips, track.items);
    if (with_deleted) add_items(placed.deleted, track.alternates);
  }
  return tracks;
}

GainCounts apply_clip_gain(std::vector<TrackNode>& tracks, const ClipGain& gain) {
  GainCounts counts;
  counts.count_disagrees = gain.stated_counts_wrong;
  if (gain.index_of.empty()) return counts;
  for (TrackNode& track : tracks) {
    for (OutputItem& item : track.items) {
      if (const ClipGainEntry* entry = gain.find(item.clip_name)) {
        item.gain_db = entry->db;
        item.has_gain = true;
        ++counts.clips;
        if (entry->points.size() >= 2) item.gain_envelope = &entry->points;
      }
      if (item.group_name.empty()) continue;
      const ClipGainEntry* group = gain.find(item.group_name);
      if (!group) continue;
      if (group->db != 0.0) {
        if (!item.has_gain) ++counts.clips;
        item.has_gain = true;
        item.gain_db += group->db;
        ++counts.group_clips;
      }
      if (group->points.size() >= 2) counts.group_lines.emplace_back(item.clip_name);
    }
  }
  return counts;
}

LongClips find_long_clips(const std::vector<ClipRecord>& clips, const Clock& clock) {
  LongClips found;
  std::int64_t longest = 0;
  const double per_minute = 60.0 * clock.rate;
  for (const ClipRecord& clip : clips) {
    if (static_cast<double>(clip.length) > 10 * per_minute) ++found.count;
    longest = std::max(longest, clip.length);
  }
  found.longest_minutes = static_cast<double>(longest) / per_minute;
  return found;
}

}  // namespace

bool is_whole_file(std::string_view clip_name, std::uint32_t raw_offset) {
  const std::string_view stem = without_trailing_digits(clip_name);
  return raw_offset < kFileStart && (stem.empty() || stem.back() != '-');
}

std::string file_key(std::string_view base_name) {
  const std::size_t dot = base_name.rfind('.');
  if (dot != base_name.npos && base_name.size() - dot - 1 <= kLongestExtension) base_name = base_name.substr(0, dot);
  const std::string_view stem = without_trailing_digits(base_name);
  if (stem.size() < base_name.size() && !stem.empty() && (stem.back() == '_' || stem.back() == '-'))
    base_name = stem.substr(0, stem.size() - 1);
  return lower_ascii(base_name);
}

ShapedClips shape_clips(ClipSource source, const Clock& clock, const ConversionOptions& options) {
  ShapedClips shaped;
  ClipCounts& counts = shaped.counts;
  const std::vector<PlaylistRecord>& playlists = source.playlists;
  counts.sync_points_unmatched = source.sync_points_unmatched;
  counts.long_clips = find_long_clips(source.clips, clock);

  std::vector<PlacedTrack> placed = gather_tracks(source.placements, source.clips);
  counts.pairing =
      take_records(placed, playlists, pair_tracks(placed, playlists, source.track_playlists, source.channel_count));
  place_in_seconds(placed, source.placements, source.sync_samples, clock);

  // The clip groups' own playlists are looked up here when groups are built.
  take_out_group_placements(placed, playlists);
  if (options.no_fades) source.fades.clear();
  counts.deleted = set_deleted_placements_aside(placed, playlists, source.fades, options);

  shaped.tracks = make_items(std::move(placed), source, clock, options.recover_deleted);
  source.placements = {};
  source.clips = {};
  // Clip groups are laid out here, then one clip is chosen from each stack, when they are built.
  counts.fades = attach_fades(shaped.tracks, playlists, source.fades, clock);
  shaped.gain = std::move(source.gain);
  counts.gain = apply_clip_gain(shaped.tracks, shaped.gain);
  // Clip Effects and Melodyne links come here when they are built;
  // then warp, pitch, stretch and loops; overlaps last.
  return shaped;
}

}  // namespace frt

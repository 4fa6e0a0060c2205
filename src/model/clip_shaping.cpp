#include "model/clip_shaping.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/text.h"
#include "model/deleted_placements.h"
#include "model/fades.h"
#include "model/placed_clips.h"
#include "model/timebase.h"
#include "session/clip_groups.h"
#include "session/fades.h"
#include "session/playlists.h"
#include "session/sync_points.h"

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

// The sync points by clip, in samples; empty if the entries don't line up with the clips one by one. Then placements
// can't be moved by them, which is told if there was something to move.
std::vector<std::int64_t> trusted_sync_points(const SessionImage& image, const std::vector<ClipRecord>& clips,
                                              RunCounters& counters) {
  const std::vector<SyncPoint> points = read_sync_points(image);
  bool trusted = points.size() == clips.size();
  for (std::size_t i = 0; trusted && i < clips.size(); ++i)
    trusted = points[i].clip_name == clips[i].name && clips[i].index == i;
  std::vector<std::int64_t> samples;
  if (trusted) {
    samples.reserve(points.size());
    for (const SyncPoint& point : points) samples.push_back(point.samples);
  } else if (std::any_of(points.begin(), points.end(), [](const SyncPoint& point) { return point.samples != 0; })) {
    counters.sync_points_unmatched = true;
  }
  return samples;
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

double sync_offset_of(const Placement& placement, const std::vector<std::int64_t>& sync_samples, double sample_rate) {
  if (placement.clip >= sync_samples.size()) return 0.0;
  return static_cast<double>(sync_samples[placement.clip]) / sample_rate;
}

double seconds_of(const Placement& placement, bool ticks, const TempoMap& tempo, double sample_rate) {
  if (!ticks) return static_cast<double>(placement.start) / sample_rate;
  if (!tempo.has_song_start()) return tempo.seconds_of_ticks(biased_to_ticks(placement.raw_start));
  // With a song start, positions before the tick origin are real ones.
  const auto tick = static_cast<std::int64_t>(placement.position40) - static_cast<std::int64_t>(kTickOrigin);
  return tempo.timeline_seconds(static_cast<double>(tick));
}

// Raw positions to seconds, then back by the sync point, then into the order of the timeline.
void place_in_seconds(std::vector<PlacedTrack>& tracks, const std::vector<Placement>& placements,
                      const std::vector<std::int64_t>& sync_samples, const TempoMap& tempo, double sample_rate) {
  for (PlacedTrack& track : tracks) {
    for (PlacedClip& clip : track.clips) {
      const Placement& placement = placements[clip.placement];
      const double at = seconds_of(placement, track.node.ticks, tempo, sample_rate);
      clip.position = std::max(at - sync_offset_of(placement, sync_samples, sample_rate), 0.0);
    }
    const auto earlier = [](const PlacedClip& a, const PlacedClip& b) { return a.position < b.position; };
    if (!std::is_sorted(track.clips.begin(), track.clips.end(), earlier))
      std::stable_sort(track.clips.begin(), track.clips.end(), earlier);
  }
}

OutputItem make_item(const PlacedClip& placed, const Placement& placement, const ClipRecord& clip, double sync_offset,
                     double sample_rate) {
  OutputItem item;
  item.clip_index = placed.clip_index;
  item.raw_position = placed.raw_position;
  item.raw_offset = static_cast<std::uint32_t>(clip.source_offset);
  item.position = placed.position;
  item.length = static_cast<double>(clip.length) / sample_rate;
  item.source_offset = static_cast<double>(clip.source_offset) / sample_rate;
  item.clip_name = clip.name;
  item.file_name = clip.file_name;
  item.file_index = clip.file_index;
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
std::vector<TrackNode> make_items(std::vector<PlacedTrack> placed_tracks, const ClipTables& clips,
                                  const std::vector<std::int64_t>& sync_samples, double sample_rate,
                                  bool with_deleted) {
  std::vector<TrackNode> tracks;
  tracks.reserve(placed_tracks.size());
  std::size_t first_placement = 0;  // of the track, to count its placements from
  const auto add_items = [&](const std::vector<PlacedClip>& placed_clips, std::vector<OutputItem>& items) {
    items.reserve(placed_clips.size());
    for (const PlacedClip& placed : placed_clips) {
      const Placement& placement = clips.audio[placed.placement];
      items.push_back(make_item(placed, placement, clips.audio_clips[placement.clip],
                                sync_offset_of(placement, sync_samples, sample_rate), sample_rate));
      items.back().ordinal = placed.placement - first_placement;
    }
  };
  for (PlacedTrack& placed : placed_tracks) {
    while (clips.audio[first_placement].track_index != placed.node.track_index) ++first_placement;
    TrackNode& track = tracks.emplace_back(std::move(placed.node));
    add_items(placed.clips, track.items);
    if (with_deleted) add_items(placed.deleted, track.alternates);
  }
  return tracks;
}

void apply_clip_gain(std::vector<TrackNode>& tracks, const ClipGain& gain, RunCounters& counters) {
  counters.gain_count_disagrees += gain.stated_counts_wrong;
  if (gain.index_of.empty()) return;
  for (TrackNode& track : tracks) {
    for (OutputItem& item : track.items) {
      if (const ClipGainEntry* entry = gain.find(item.clip_name)) {
        item.gain_db = entry->db;
        item.has_gain = true;
        ++counters.clips_with_gain;
        if (entry->points.size() >= 2) item.gain_envelope = &entry->points;
      }
      if (item.group_name.empty()) continue;
      const ClipGainEntry* group = gain.find(item.group_name);
      if (!group) continue;
      if (group->db != 0.0) {
        if (!item.has_gain) ++counters.clips_with_gain;
        item.has_gain = true;
        item.gain_db += group->db;
        ++counters.group_gain_clips;
      }
      if (group->points.size() >= 2) counters.group_gain_lines.emplace_back(item.clip_name);
    }
  }
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

ShapedClips shape_clips(const SessionImage& image, const ClipTables& clips, const TempoMap& tempo, double sample_rate,
                        const ConversionOptions& options, RunCounters& counters) {
  std::vector<PlaylistRecord> playlists = read_playlists(image);
  const std::vector<FadeRecord> session_fades = read_fades(image);
  const std::vector<std::int64_t> sync_samples = trusted_sync_points(image, clips.audio_clips, counters);
  const std::vector<ClipGroupRow> groups = read_clip_group_rows(image);
  mark_fades_on_clip_edges(playlists, session_fades, {clips.audio_clips, sync_samples, groups, tempo, sample_rate});

  std::vector<PlacedTrack> placed = gather_tracks(clips.audio, clips.audio_clips);
  take_records(placed, playlists, pair_tracks(placed, playlists, read_track_playlists(image), clips.channel_count),
               counters);
  place_in_seconds(placed, clips.audio, sync_samples, tempo, sample_rate);

  // The clip groups' own playlists are read here when groups are built.
  take_out_group_placements(placed, playlists);
  const std::vector<FadeRecord> no_fades;
  const std::vector<FadeRecord>& fades = options.no_fades ? no_fades : session_fades;
  set_deleted_placements_aside(placed, playlists, fades, options, counters);

  ShapedClips shaped;
  std::vector<TrackNode>& tracks = shaped.tracks;
  tracks = make_items(std::move(placed), clips, sync_samples, sample_rate, options.recover_deleted);
  // Clip groups are laid out here, then one clip is chosen from each stack, when they are built.
  attach_fades(tracks, playlists, fades, tempo, sample_rate, counters);
  shaped.gain = std::make_unique<const ClipGain>(read_clip_gain(image));
  apply_clip_gain(tracks, *shaped.gain, counters);
  // Clip Effects and Melodyne links come here when they are built;
  // then warp, pitch, stretch and loops; overlaps last.
  return shaped;
}

}  // namespace frt

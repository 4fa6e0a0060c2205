#include "model/clip_shaping.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/text.h"
#include "model/deleted_placements.h"
#include "model/fades.h"
#include "model/item_order.h"
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

OutputItem make_item(const Placement& placement, const ClipRecord& clip, double sample_rate) {
  OutputItem item;
  item.clip_index = clip.index;
  item.raw_position = placement.raw_start;
  item.raw_offset = static_cast<std::uint32_t>(clip.source_offset);
  item.length = static_cast<double>(clip.length) / sample_rate;
  item.source_offset = static_cast<double>(clip.source_offset) / sample_rate;
  item.clip_name = clip.name;
  item.file_name = clip.file_name;
  item.file_index = clip.file_index;
  item.muted = placement.muted;
  item.whole_file = is_whole_file(clip.name, item.raw_offset);
  return item;
}

// One track per number, with its placements in their order. Positions stay raw.
std::vector<TrackNode> make_tracks(const ClipTables& clips, const std::vector<std::int64_t>& sync_samples,
                                   double sample_rate) {
  std::vector<TrackNode> tracks;
  for (auto first = clips.audio.begin(); first != clips.audio.end();) {
    const auto last = std::find_if(first, clips.audio.end(), [&](const Placement& placement) {
      return placement.track_index != first->track_index;
    });
    TrackNode& track = tracks.emplace_back();
    track.track_index = first->track_index;
    track.stored_track_index = first->stored_track_index;
    track.name = first->track_name;
    track.items.reserve(static_cast<std::size_t>(last - first));
    for (; first != last; ++first) {
      OutputItem& item = track.items.emplace_back(make_item(*first, clips.audio_clips[first->clip], sample_rate));
      item.ordinal = track.items.size() - 1;
      if (first->clip < sync_samples.size())
        item.sync_offset = static_cast<double>(sync_samples[first->clip]) / sample_rate;
    }
  }
  return tracks;
}

double placed_at(const Placement& placement, bool ticks, const TempoMap& tempo, double sample_rate) {
  if (!ticks) return static_cast<double>(placement.raw_start) / sample_rate;
  if (!tempo.has_song_start()) return tempo.seconds_of_ticks(biased_to_ticks(placement.raw_start));
  // With a song start, positions before the tick origin are real ones.
  const auto tick = static_cast<std::int64_t>(placement.position40) - static_cast<std::int64_t>(kTickOrigin);
  return tempo.timeline_seconds(static_cast<double>(tick));
}

// Raw positions to seconds, then back by the sync point, then into the order of the timeline. The tracks' items must
// still be the placements, one by one.
void place_in_seconds(std::vector<TrackNode>& tracks, const std::vector<Placement>& placements, const TempoMap& tempo,
                      double sample_rate) {
  auto placement = placements.begin();
  for (TrackNode& track : tracks) {
    for (OutputItem& item : track.items) {
      item.position = placed_at(*placement++, track.ticks, tempo, sample_rate);
      if (item.sync_offset > 0.0) item.position -= item.sync_offset;
      item.position = std::max(item.position, 0.0);
    }
    sort_by_position(track.items);
  }
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

  ShapedClips shaped;
  std::vector<TrackNode>& tracks = shaped.tracks;
  tracks = make_tracks(clips, sync_samples, sample_rate);
  const TrackPairing pairing = pair_tracks(tracks, playlists, read_track_playlists(image), clips.channel_count);
  take_records(tracks, playlists, pairing, counters);
  place_in_seconds(tracks, clips.audio, tempo, sample_rate);

  // The clip groups' own playlists are read here when groups are built.
  take_out_group_items(tracks, playlists);
  const std::vector<FadeRecord> no_fades;
  const std::vector<FadeRecord>& fades = options.no_fades ? no_fades : session_fades;
  drop_deleted_placements(tracks, playlists, fades, options, counters);
  // Clip groups are laid out here, then one clip is chosen from each stack, when they are built.
  attach_fades(tracks, playlists, fades, tempo, sample_rate, counters);
  shaped.gain = std::make_unique<const ClipGain>(read_clip_gain(image));
  apply_clip_gain(tracks, *shaped.gain, counters);
  // Clip Effects and Melodyne links come here when they are built;
  // then warp, pitch, stretch and loops; overlaps last.
  return shaped;
}

}  // namespace frt

#include "session/clips/clip_source.h"

#include <algorithm>

#include "ptf/decrypt.h"
#include "session/clips/audio_clips.h"
#include "session/clips/audio_placements.h"
#include "session/clips/fades.h"
#include "session/clips/midi_clips.h"
#include "session/clips/midi_notes.h"
#include "session/clips/midi_playlists.h"
#include "session/clips/midi_streams.h"
#include "session/clips/playlists.h"
#include "session/clips/sync_points.h"

namespace frt {
namespace {

// The clip tables are the session library's; it reads no smaller image, and big-endian ones another way.
bool has_clip_tables(ByteView image) {
  constexpr std::size_t kSmallestImage = 65;
  return image.size() >= kSmallestImage && image.u8(head_layout::kByteOrder) == std::uint8_t{0};
}

void take_sync_points(const std::vector<SyncPoint>& points, ClipSource& source) {
  const std::vector<ClipRecord>& clips = source.clips;
  bool trusted = points.size() == clips.size();
  for (std::size_t i = 0; trusted && i < clips.size(); ++i)
    trusted = points[i].clip_name == clips[i].name && clips[i].index == i;
  if (trusted) {
    source.sync_samples.reserve(points.size());
    for (const SyncPoint& point : points) source.sync_samples.push_back(point.samples);
  } else {
    source.sync_points_unmatched =
        std::any_of(points.begin(), points.end(), [](const SyncPoint& point) { return point.samples != 0; });
  }
}

}  // namespace

ClipSource read_clip_source(const SessionImage& image, const std::vector<Block>& roots,
                            const std::vector<AudioFileEntry>& files, const std::vector<AudioFileFacts>& facts,
                            const Clock& clock, Skips& skips) {
  const ByteView bytes = image.bytes();
  ClipSource source;
  if (has_clip_tables(bytes)) {
    source.clips = read_audio_clips(image, roots, files, facts);
    const TrackNames tracks = read_track_names(bytes, roots);
    source.channel_count = tracks.size();
    source.placements = read_audio_placements(bytes, roots, tracks, source.clips);
  }
  source.playlists = read_playlists(image, skips);
  source.track_playlists = read_track_playlists(bytes, roots);
  source.fades = read_fades(image, skips);
  source.groups = read_clip_group_rows(image, skips);
  source.gain = read_clip_gain(image, skips);
  take_sync_points(read_sync_points(image), source);
  mark_fades_on_clip_edges(source.playlists, source.fades, {source.clips, source.sync_samples, source.groups, clock});
  return source;
}

MidiSource read_midi_source(const SessionImage& image, const std::vector<Block>& roots, const Clock& clock,
                            Skips& skips) {
  MidiSource source;
  if (!has_clip_tables(image.bytes())) return source;
  source.chunks = read_note_chunks(image.bytes(), roots);
  source.clips = read_midi_clips(image.bytes(), roots, source.chunks);
  source.placements = read_midi_placements(image, roots, source.clips, clock.tempo.has_song_start());
  source.streams = read_midi_chunks(image, skips);
  source.playlists = read_midi_playlists(image, skips);
  return source;
}

std::vector<std::string_view> placement_names(const ClipSource& audio, const MidiSource& midi) {
  std::vector<std::string_view> names;
  names.reserve(audio.placements.size() + midi.placements.size());
  for (const Placement& placed : audio.placements) names.push_back(placed.track_name);
  for (const Placement& placed : midi.placements) names.push_back(placed.track_name);
  return names;
}

}  // namespace frt

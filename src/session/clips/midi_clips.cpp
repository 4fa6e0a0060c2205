#include "session/clips/midi_clips.h"

#include <cstdlib>
#include <string_view>
#include <unordered_map>

#include "image/content_types.h"
#include "session/clips/clip_entry.h"
#include "session/clips/packed_numbers.h"
#include "session/clips/placement_layout.h"
#include "session/clock.h"
#include "session/strip_kind.h"

namespace frt {
namespace {

constexpr std::uint64_t kPlaylistName = 9;  // counted, in a MIDI playlist
constexpr std::uint64_t kEntryName = 11;    // counted, in a track table entry

std::vector<ClipRecord> listed_clips(ByteView image, const std::vector<Block>& roots,
                                     const std::vector<NoteChunk>& chunks) {
  std::vector<ClipRecord> clips;
  for (const Block& root : roots) {
    if (!is_either(root, content::kMidiClipList, content::kOldMidiClipList)) continue;
    for (const Block& group : children_of_either(image, root, content::kMidiClipGroup, content::kOldMidiClipGroup)) {
      for (const Block& entry : children_of_either(image, group, content::kClipHeader, content::kOldMidiClip)) {
        const auto chunk = image.u32(entry.end());
        if (!chunk || *chunk >= chunks.size()) continue;
        ClipRecord clip;
        clip.name = read_counted(image, entry.start + clip_header::kName);
        const PackedNumbers numbers(image, entry.start + clip_header::kNameText + clip.name.size());
        clip.index = static_cast<std::uint16_t>(clips.size());
        clip.start = static_cast<std::int64_t>(kTickOrigin);
        clip.source_offset =
            static_cast<std::int64_t>(chunks[*chunk].zero_ticks()) - static_cast<std::int64_t>(numbers.value_or_0(0));
        clip.length = static_cast<std::int64_t>(numbers.value_or_0(1));
        clip.midi_chunk = static_cast<std::int32_t>(*chunk);
        clips.push_back(clip);
      }
    }
  }
  return clips;
}

// MIDI clips of the compound form: their number is their chunk's.
void add_compound_clips(ByteView image, const std::vector<Block>& roots, const std::vector<NoteChunk>& chunks,
                        std::vector<ClipRecord>& clips) {
  const std::string_view name = clips.empty() ? std::string_view{} : clips.back().name;
  std::unordered_map<const std::uint8_t*, std::int64_t> spans;  // by the first note: chunks can share their notes
  for (const Block& root : roots) {
    if (root.content_type != content::kClipGroupList) continue;
    for (const Block& group : children_of(image, root, content::kClipGroup)) {
      for (const Block& entry : children_of(image, group, content::kClipHeader)) {
        if (!children_of(image, entry, content::kCompoundMark).empty() || !image.has(entry.end(), 4)) continue;
        const std::uint16_t chunk = *image.u16(entry.end() + 2);
        if (chunk >= chunks.size()) continue;
        const auto [span, is_new] = spans.try_emplace(chunks[chunk].first_note(), 0);
        if (is_new) span->second = chunks[chunk].span();
        ClipRecord clip;
        clip.index = chunk;
        clip.name = name;
        clip.start = static_cast<std::int64_t>(kTickOrigin);
        clip.length = span->second;
        clip.midi_chunk = chunk;
        clips.push_back(clip);
      }
    }
  }
}

struct MidiTrack {
  std::string_view name;
  std::uint16_t number;
};

// MIDI and instrument tracks: the rows of the track table whose strip, by its place among the strips, is one.
std::vector<MidiTrack> read_midi_tracks(const SessionImage& image, const std::vector<Block>& roots) {
  std::vector<MidiTrack> tracks;
  std::vector<std::uint32_t> strips;
  bool strips_read = false;
  TrackNameLength length(image.size());
  for (const Block& root : roots) {
    if (root.content_type != content::kTrackTable) continue;
    if (!strips_read) strips = strip_blocks(image);
    strips_read = true;
    std::size_t row = 0;
    std::uint16_t number = 0;
    for (const Block& entry : children_of(image.bytes(), root, content::kTrackTableEntry)) {
      if (row < strips.size() && plays_midi(strip_kind(image.block(strips[row]).content_type)))
        tracks.push_back({length.limit(read_counted(image.bytes(), entry.start + kEntryName)), number++});
      ++row;
    }
  }
  return tracks;
}

}  // namespace

std::vector<ClipRecord> read_midi_clips(ByteView image, const std::vector<Block>& roots,
                                        const std::vector<NoteChunk>& chunks) {
  std::vector<ClipRecord> clips = listed_clips(image, roots, chunks);
  add_compound_clips(image, roots, chunks, clips);
  return clips;
}

std::vector<Placement> read_midi_placements(const SessionImage& session, const std::vector<Block>& roots,
                                            const std::vector<ClipRecord>& clips, bool keep_sign) {
  const ByteView image = session.bytes();
  const std::vector<MidiTrack> tracks = read_midi_tracks(session, roots);
  std::unordered_map<std::string_view, std::uint16_t> number_of;
  std::unordered_map<std::uint16_t, std::string_view> name_of;
  for (const MidiTrack& track : tracks) {
    number_of.emplace(track.name, track.number);
    name_of.emplace(track.number, track.name);
  }
  std::unordered_map<std::uint16_t, std::uint32_t> clip_of;
  for (std::uint32_t i = 0; i < clips.size(); ++i) clip_of.emplace(clips[i].index, i);

  std::vector<Placement> placements;
  TrackNameLength length(image.size());
  for (const Block& root : roots) {
    if (root.content_type != content::kMidiPlaylists) continue;
    std::uint32_t running = 0;
    for (const Block& playlist : children_of(image, root, content::kMidiPlaylist)) {
      const auto named = number_of.find(length.limit(read_counted(image, playlist.start + kPlaylistName)));
      const std::uint32_t number = named != number_of.end() ? named->second : running;
      ++running;
      if (number > placement::kLastTrack) continue;
      const auto track = name_of.find(static_cast<std::uint16_t>(number));
      if (track == name_of.end()) continue;
      for (const Block& list : children_of(image, playlist, content::kMidiPlacementList)) {
        const bool muted = image.u8_or(list.start + placement_list::kMuted, 0) == 1;
        for (const Block& entry : children_of(image, list, content::kPlacement)) {
          if (!image.has(entry.start, placement::kMidiSize)) continue;
          const auto clip = clip_of.find(*image.u16(entry.start + placement::kClip));
          if (clip == clip_of.end()) continue;
          Placement placed;
          placed.track_name = track->second;
          placed.track_index = placed.stored_track_index = static_cast<std::uint16_t>(number);
          placed.clip = clip->second;
          placed.position40 = *image.u40(entry.start + placement::kPosition);
          placed.start = static_cast<std::int64_t>(placed.position40) - static_cast<std::int64_t>(kTickOrigin);
          if (!keep_sign) placed.start = std::abs(placed.start);
          placed.muted = muted;
          placements.push_back(placed);
        }
      }
    }
  }
  return placements;
}

}  // namespace frt

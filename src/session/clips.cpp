#include "session/clips.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <unordered_map>

#include "model/tempo.h"

namespace frt {
namespace {

constexpr std::size_t kSmallestImage = 65;
constexpr std::uint64_t kByteOrder = 17;
constexpr std::uint32_t kLastNumber = 65535;

// Clip entry 0x2629: counted name at +11, a three-point value 4 bytes behind the length it is counted with, the file
// index behind the first child. MIDI clip entry 0x2628: name at +2, chunk number behind the block.
namespace clip_entry {
constexpr std::uint64_t kName = 11, kMidiName = 2;
}
// Placement 0x104f: clip number, position (audio: samples or biased ticks; MIDI: biased ticks).
namespace placement {
constexpr std::uint64_t kClip = 4, kPosition = 9;
}
// Placement list 0x1050 and 0x1056.
namespace placement_list {
constexpr std::uint64_t kMuted = 11, kPassedOver = 2;
}
// Track entry 0x1014: counted name, a byte, channel count, channel numbers.
namespace track_entry {
constexpr std::uint64_t kName = 2, kChannels = 7, kFirstChannel = 11;
constexpr std::uint32_t kMostChannels = 1024;
// Every track carries a copy of its name. Longer names are kept while all their copies together stay below a part of
// the session; then they are cut, or one entry of many channels could multiply the session.
constexpr std::size_t kUsualName = 512, kLongNamesShare = 8;
}  // namespace track_entry
// Notes: "MdNLB", u32 count at +11, then 35 bytes a note; the chunk's zero is the first note's position.
namespace note_chunk {
constexpr std::string_view kMark = "MdNLB";
constexpr std::uint64_t kCount = 11, kEvents = 15, kEvent = 35, kEventRead = 18;
constexpr std::uint64_t kNote = 8, kLength = 9, kVelocity = 17;
}  // namespace note_chunk

struct ThreePoint {
  std::uint64_t first = 0, second = 0, third = 0;
};

// The packed form of up to three integers: three count nibbles (and one of bytes skipped behind the first value) in
// a head of five bytes. A count byte outside 0x10..0x5f gives 0, but its nibble still moves what follows.
ThreePoint read_three_point(ByteView image, std::uint64_t j) {
  ThreePoint values;
  if (!image.has(j, 5)) return values;
  const std::uint8_t a = *image.u8(j + 1), b = *image.u8(j + 2), c = *image.u8(j + 3);
  const auto value = [&](std::uint8_t count, std::uint64_t at) -> std::uint64_t {
    if (count < 0x10 || count > 0x5F) return 0;
    return image.unsigned_of(at, count >> 4u).value_or(0);
  };
  const std::uint64_t first = j + 5;
  const std::uint64_t second = first + (a >> 4u) + (b & 15u);
  const std::uint64_t third = second + (b >> 4u);
  values.first = value(a, first);
  values.second = value(b, second);
  values.third = value(c, third);
  return values;
}

bool is(const Block& block, std::uint16_t newer, std::uint16_t older) {
  return block.content_type == newer || block.content_type == older;
}

std::vector<Block> children_of_either(ByteView image, const Block& parent, std::uint16_t newer, std::uint16_t older) {
  std::vector<Block> children = children_of(image, parent);
  std::erase_if(children, [&](const Block& child) { return !is(child, newer, older); });
  return children;
}

// Audio file names by index: the first entry that bears the index or has no name decides.
class FileNames {
 public:
  explicit FileNames(const std::vector<AudioFileEntry>& files) : files_(files), nameless_(files.size()) {
    for (std::size_t i = files.size(); i-- > 0;) {
      first_[files[i].index] = i;
      if (files[i].name.empty()) nameless_ = i;
    }
  }
  std::string_view of(std::uint16_t index) const {
    const auto found = first_.find(index);
    const std::size_t at = std::min(found == first_.end() ? files_.size() : found->second, nameless_);
    return at < files_.size() ? files_[at].name : std::string_view{};
  }

 private:
  const std::vector<AudioFileEntry>& files_;
  std::unordered_map<std::uint16_t, std::size_t> first_;
  std::size_t nameless_;
};

std::vector<ClipRecord> read_audio_clips(ByteView image, const std::vector<Block>& roots,
                                         const std::vector<AudioFileEntry>& files) {
  const FileNames names(files);
  std::vector<ClipRecord> clips;
  for (const Block& root : roots) {
    if (!is(root, 0x262a, 0x100b)) continue;
    for (const Block& entry : children_of_either(image, root, 0x2629, 0x1008)) {
      ClipRecord clip;
      clip.index = static_cast<std::uint16_t>(clips.size());
      clip.name = read_counted(image, entry.offset + clip_entry::kName);
      const ThreePoint values = read_three_point(image, entry.offset + clip_entry::kName + 4 + clip.name.size());
      clip.source_offset = static_cast<std::int64_t>(values.first);
      clip.length = static_cast<std::int64_t>(values.second);
      clip.start = static_cast<std::int64_t>(values.third);
      const std::vector<Block> children = children_of(image, entry);
      if (!children.empty() && image.has(children.front().end(), 4))
        clip.file_index = *image.u16(children.front().end());
      clip.file_name = names.of(clip.file_index);
      clips.push_back(clip);
    }
  }
  return clips;
}

// Track numbers and the name that each was first given; a stereo track gives two numbers of one name.
using TrackNames = std::unordered_map<std::uint16_t, std::string_view>;

TrackNames read_audio_tracks(ByteView image, const std::vector<Block>& roots) {
  TrackNames tracks;
  std::size_t long_names_left = image.size() / track_entry::kLongNamesShare;
  for (const Block& root : roots) {
    if (root.content_type != 0x1015) continue;
    for (const Block& entry : children_of(image, root, 0x1014)) {
      const std::string_view name = read_counted(image, entry.offset + track_entry::kName);
      const std::uint64_t behind = entry.offset + name.size();
      const std::uint32_t channels =
          std::min(image.u32_or(behind + track_entry::kChannels, 0), track_entry::kMostChannels);
      for (std::uint32_t k = 0; k < channels; ++k) {
        const auto number = image.u16(behind + track_entry::kFirstChannel + 2 * k);
        if (!number) break;
        const auto [track, is_new] = tracks.emplace(*number, name);
        if (!is_new || name.size() <= track_entry::kUsualName) continue;
        if (name.size() <= long_names_left) {
          long_names_left -= name.size();
        } else {
          track->second = name.substr(0, track_entry::kUsualName);
        }
      }
    }
  }
  return tracks;
}

// The content types of the mixer rows in file order, without the row nested in each master row.
std::vector<std::uint16_t> row_types(const SessionImage& image) {
  static constexpr std::array<std::uint16_t, 6> kRows = {0x261b, 0x261d, 0x261f, 0x2620, 0x2621, 0x2623};
  std::vector<std::uint16_t> types;
  std::uint64_t master_end = 0;
  for (const std::uint32_t index : blocks_of_types(image, kRows)) {
    const FlatBlock& block = image.block(index);
    if (block.content_type == 0x261d) master_end = std::max(master_end, block.end());
    if (block.content_type == 0x261b && block.start < master_end) continue;
    types.push_back(block.content_type);
  }
  return types;
}

struct MidiTrack {
  std::string_view name;
  std::uint16_t number;
};

std::vector<MidiTrack> read_midi_tracks(const SessionImage& image, const std::vector<Block>& roots) {
  std::vector<MidiTrack> tracks;
  std::vector<std::uint16_t> types;
  bool types_read = false;
  for (const Block& root : roots) {
    if (root.content_type != 0x2519) continue;
    if (!types_read) types = row_types(image);
    types_read = true;
    std::size_t row = 0;
    std::uint16_t number = 0;
    for (const Block& entry : children_of(image.bytes(), root, 0x251a)) {
      if (row < types.size() && (types[row] == 0x2620 || types[row] == 0x2621))
        tracks.push_back({read_counted(image.bytes(), entry.offset + 4), number++});
      ++row;
    }
  }
  return tracks;
}

class AudioPlacements {
 public:
  AudioPlacements(ByteView image, const TrackNames& tracks, const std::vector<ClipRecord>& clips)
      : image_(image), tracks_(tracks), clips_(clips) {}

  // The older form: placements stand where their clips say.
  void add_older(const Block& root) {
    std::uint32_t number = 0;
    for (const Block& track : children_of(image_, root, 0x1011)) {
      for (const Block& list : children_of(image_, track, 0x100f)) {
        for (const Block& entry : children_of(image_, list, 0x100e)) {
          if (!image_.has(entry.offset, 8)) continue;
          const std::uint16_t clip = *image_.u16(entry.offset + placement::kClip);
          if (clip >= clips_.size()) continue;
          const std::int64_t start = clips_[clip].start;
          add(number, clip, static_cast<std::uint64_t>(start), start, false);
        }
      }
      ++number;
    }
  }

  void add_newer(const Block& root) {
    std::uint32_t number = 0;
    for (const Block& track : children_of(image_, root, 0x1052)) {
      for (const Block& list : children_of(image_, track, 0x1050)) {
        // In sessions of Pro Tools 10 the last list ends with its playlist: the byte behind it is another block's.
        const std::uint64_t mark = list.end() + placement_list::kPassedOver;
        if (mark < track.end() && image_.u8_or(mark, 0) == 1) continue;
        const bool muted = image_.u8_or(list.offset + placement_list::kMuted, 0) == 1;
        for (const Block& entry : children_of(image_, list, 0x104f)) {
          if (!image_.has(entry.offset, 13)) continue;
          const std::uint64_t at = entry.offset + placement::kPosition;
          const std::uint32_t low = *image_.u32(at);
          add(number, *image_.u16(entry.offset + placement::kClip), image_.u40(at).value_or(low), low, muted);
        }
      }
      ++number;
    }
  }

  std::vector<Placement> take() { return std::move(placements_); }

 private:
  // `position` is the stored value, `start` what of it counts on a sample-based track.
  void add(std::uint32_t number, std::uint16_t clip, std::uint64_t position, std::int64_t start, bool muted) {
    if (number > kLastNumber || clip >= clips_.size()) return;
    const auto track = tracks_.find(static_cast<std::uint16_t>(number));
    if (track == tracks_.end()) return;
    Placement placed;
    placed.track_name = track->second;
    placed.track_index = placed.stored_track_index = static_cast<std::uint16_t>(number);
    placed.clip = clip;
    placed.position40 = position;
    placed.raw_start = static_cast<std::uint32_t>(position);
    placed.start = start;
    placed.muted = muted;
    placements_.push_back(placed);
  }

  ByteView image_;
  const TrackNames& tracks_;
  const std::vector<ClipRecord>& clips_;
  std::vector<Placement> placements_;
};

// Track numbers run from 0 without gaps: a track with no placement leaves none behind.
void close_up_numbers(std::vector<Placement>& placements) {
  std::stable_sort(placements.begin(), placements.end(),
                   [](const Placement& a, const Placement& b) { return a.track_index < b.track_index; });
  std::uint16_t next = 0;
  for (std::size_t i = 0; i < placements.size(); ++i) {
    if (i > 0 && placements[i].stored_track_index != placements[i - 1].stored_track_index) ++next;
    placements[i].track_index = next;
  }
}

std::vector<std::uint64_t> note_marks(ByteView image) {
  std::vector<std::uint64_t> marks;
  for (std::uint64_t p = image.find('M', 0, image.size()); p < image.size(); p = image.find('M', p + 1, image.size()))
    if (image.equals(p, note_chunk::kMark)) marks.push_back(p);
  return marks;
}

std::vector<NoteChunk> read_chunks(ByteView image, const std::vector<Block>& roots) {
  std::vector<NoteChunk> chunks;
  std::vector<std::uint64_t> marks;
  bool marks_read = false;
  for (const Block& root : roots) {
    if (root.content_type != 0x2000) continue;
    if (!marks_read) marks = note_marks(image);
    marks_read = true;
    for (std::uint64_t k = root.offset; k + note_chunk::kEvent < root.end();) {
      if (k + 5 >= image.size()) break;
      const auto mark = std::lower_bound(marks.begin(), marks.end(), k);
      if (mark == marks.end() || !image.has(*mark, 20)) break;
      NoteChunk chunk;
      chunk.zero_ticks = *image.u40(*mark + note_chunk::kEvents);
      chunk.first_event = *mark + note_chunk::kEvents;
      // The count is a claim: only events that the image holds are read.
      const std::uint64_t room = image.size() - chunk.first_event;
      const std::uint64_t most =
          room < note_chunk::kEventRead ? 0 : (room - note_chunk::kEventRead) / note_chunk::kEvent + 1;
      chunk.event_count =
          static_cast<std::uint32_t>(std::min<std::uint64_t>(*image.u32(*mark + note_chunk::kCount), most));
      chunks.push_back(chunk);
      k = chunk.first_event + chunk.event_count * note_chunk::kEvent;
    }
  }
  return chunks;
}

MidiNote read_note(ByteView image, const NoteChunk& chunk, std::uint32_t i) {
  const std::uint64_t e = chunk.first_event + i * note_chunk::kEvent;
  if (!image.has(e, note_chunk::kEventRead)) return {};
  return {*image.u40(e) - chunk.zero_ticks, *image.u40(e + note_chunk::kLength), *image.u8(e + note_chunk::kNote),
          *image.u8(e + note_chunk::kVelocity)};
}

// The greatest position plus length of a chunk's notes, in ticks.
std::int64_t chunk_span(ByteView image, const NoteChunk& chunk) {
  std::uint64_t span = 0;
  for (std::uint32_t i = 0; i < chunk.event_count; ++i) {
    const MidiNote note = read_note(image, chunk, i);
    span = std::max(span, note.position + note.length);
  }
  return static_cast<std::int64_t>(span);
}

std::vector<ClipRecord> read_midi_clips(ByteView image, const std::vector<Block>& roots,
                                        const std::vector<NoteChunk>& chunks) {
  std::vector<ClipRecord> clips;
  for (const Block& root : roots) {
    if (!is(root, 0x2634, 0x2002)) continue;
    for (const Block& group : children_of_either(image, root, 0x2633, 0x2001)) {
      for (const Block& entry : children_of_either(image, group, 0x2628, 0x1007)) {
        const auto chunk = image.u32(entry.end());
        if (!chunk || *chunk >= chunks.size()) continue;
        ClipRecord clip;
        clip.name = read_counted(image, entry.offset + clip_entry::kMidiName);
        const ThreePoint values = read_three_point(image, entry.offset + clip_entry::kMidiName + 4 + clip.name.size());
        clip.index = static_cast<std::uint16_t>(clips.size());
        clip.start = static_cast<std::int64_t>(kTickOrigin);
        clip.source_offset =
            static_cast<std::int64_t>(chunks[*chunk].zero_ticks) - static_cast<std::int64_t>(values.first);
        clip.length = static_cast<std::int64_t>(values.second);
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
  std::unordered_map<std::uint32_t, std::int64_t> spans;
  for (const Block& root : roots) {
    if (root.content_type != 0x262c) continue;
    for (const Block& group : children_of(image, root, 0x262b)) {
      for (const Block& entry : children_of(image, group, 0x2628)) {
        if (!children_of(image, entry, 0x2523).empty() || !image.has(entry.end(), 4)) continue;
        const std::uint16_t chunk = *image.u16(entry.end() + 2);
        if (chunk >= chunks.size()) continue;
        const auto [span, is_new] = spans.try_emplace(chunk, 0);
        if (is_new) span->second = chunk_span(image, chunks[chunk]);
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

std::vector<Placement> read_midi_placements(ByteView image, const std::vector<Block>& roots,
                                            const std::vector<MidiTrack>& tracks, const std::vector<ClipRecord>& clips,
                                            bool keep_sign) {
  std::unordered_map<std::string_view, std::uint16_t> number_of;
  std::unordered_map<std::uint16_t, std::string_view> name_of;
  for (const MidiTrack& track : tracks) {
    number_of.emplace(track.name, track.number);
    name_of.emplace(track.number, track.name);
  }
  std::unordered_map<std::uint16_t, std::uint32_t> clip_of;
  for (std::uint32_t i = 0; i < clips.size(); ++i) clip_of.emplace(clips[i].index, i);

  std::vector<Placement> placements;
  for (const Block& root : roots) {
    if (root.content_type != 0x1058) continue;
    std::uint32_t running = 0;
    for (const Block& playlist : children_of(image, root, 0x1057)) {
      const auto named = number_of.find(read_counted(image, playlist.offset + 2));
      const std::uint32_t number = named != number_of.end() ? named->second : running;
      ++running;
      if (number > kLastNumber) continue;
      const auto track = name_of.find(static_cast<std::uint16_t>(number));
      if (track == name_of.end()) continue;
      for (const Block& list : children_of(image, playlist, 0x1056)) {
        const bool muted = image.u8_or(list.offset + placement_list::kMuted, 0) == 1;
        for (const Block& entry : children_of(image, list, 0x104f)) {
          if (!image.has(entry.offset, 14)) continue;
          const auto clip = clip_of.find(*image.u16(entry.offset + placement::kClip));
          if (clip == clip_of.end()) continue;
          Placement placed;
          placed.track_name = track->second;
          placed.track_index = placed.stored_track_index = static_cast<std::uint16_t>(number);
          placed.clip = clip->second;
          placed.position40 = *image.u40(entry.offset + placement::kPosition);
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

}  // namespace

ClipTables walk_clips(const SessionImage& session, const std::vector<AudioFileEntry>& files, bool keep_sign) {
  const ByteView image = session.bytes();
  ClipTables tables;
  if (image.size() < kSmallestImage || *image.u8(kByteOrder) != 0) return tables;
  tables.walked = true;
  const std::vector<Block> roots = walk_roots(image);

  tables.audio_clips = read_audio_clips(image, roots, files);
  const TrackNames tracks = read_audio_tracks(image, roots);
  tables.channel_count = tracks.size();
  const std::vector<MidiTrack> midi_tracks = read_midi_tracks(session, roots);
  AudioPlacements audio(image, tracks, tables.audio_clips);
  for (const Block& root : roots) {
    if (root.content_type == 0x1012) audio.add_older(root);
    if (root.content_type == 0x1054) audio.add_newer(root);
  }
  tables.audio = audio.take();
  close_up_numbers(tables.audio);

  tables.chunks = read_chunks(image, roots);
  tables.midi_clips = read_midi_clips(image, roots, tables.chunks);
  add_compound_clips(image, roots, tables.chunks, tables.midi_clips);
  tables.midi = read_midi_placements(image, roots, midi_tracks, tables.midi_clips, keep_sign);
  return tables;
}

std::vector<MidiNote> chunk_events(ByteView image, const NoteChunk& chunk) {
  std::vector<MidiNote> events;
  events.reserve(std::min<std::uint64_t>(chunk.event_count, image.size() / note_chunk::kEvent + 1));
  for (std::uint32_t i = 0; i < chunk.event_count; ++i) events.push_back(read_note(image, chunk, i));
  return events;
}

std::vector<std::string_view> placement_names(const ClipTables& tables) {
  std::vector<std::string_view> names;
  names.reserve(tables.audio.size() + tables.midi.size());
  for (const Placement& placed : tables.audio) names.push_back(placed.track_name);
  for (const Placement& placed : tables.midi) names.push_back(placed.track_name);
  return names;
}

}  // namespace frt

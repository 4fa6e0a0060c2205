// The session's clips as plain records: which exist, where they stand on which track, what their playlists say of them.
//
// Texts are views into the session image, which outlives every table. "Samples" are at the session's rate, "ticks" are
// 1/960000 of a quarter note; positions in ticks are stored with a bias of kTickOrigin.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace frt {

// ---- clips and placements ----

struct MidiNote {
  std::uint64_t position = 0;  // ticks from the chunk's zero
  std::uint64_t length = 0;    // ticks
  std::uint8_t note = 0;
  std::uint8_t velocity = 0;
};

// One run of notes in the MIDI data. The notes stay where they are and are read when they are asked for: a copy of all
// of a session's would cost as much memory as the session.
class NoteChunk {
 public:
  NoteChunk() = default;
  // `events` is the image from the first note on, holding at least `count` of them.
  NoteChunk(ByteView events, std::uint64_t zero_ticks, std::uint32_t count)
      : events_(events), zero_ticks_(zero_ticks), count_(count) {}

  std::uint64_t zero_ticks() const { return zero_ticks_; }  // 40 bits as stored
  std::uint32_t size() const { return count_; }
  MidiNote operator[](std::uint32_t i) const;                        // all 0 for an index outside
  const std::uint8_t* first_note() const { return events_.data(); }  // tells runs of notes apart
  // The greatest position plus length of the notes, in ticks.
  std::int64_t span() const;

 private:
  ByteView events_;
  std::uint64_t zero_ticks_ = 0;
  std::uint32_t count_ = 0;
};

struct ClipRecord {
  std::uint16_t index = 0;  // the clip's number
  std::string_view name;
  std::int64_t start = 0;          // samples, or ticks for MIDI
  std::int64_t source_offset = 0;  // samples, or ticks for MIDI
  std::int64_t length = 0;         // samples, or ticks for MIDI
  std::string_view file_name;      // empty for MIDI
  std::uint16_t file_index = 0;    // index in the audio file list
  std::int64_t channel = -1;       // the channel of its file that it plays, from 0; -1 if not told
  std::uint8_t file_channels = 0;  // how many the file has, 0 if not told
  std::int32_t midi_chunk = -1;    // index in the chunk list, -1 for audio
};

// One clip on one track. `clip` is an index into the audio or the MIDI clip list, whichever list this placement stands
// in.
struct Placement {
  std::string_view track_name;
  std::uint16_t track_index = 0;
  // The track's number before the numbers were closed up (audio).
  std::uint16_t stored_track_index = 0;
  std::uint32_t clip = 0;
  std::uint32_t raw_start = 0;   // audio: the position's low 32 bits as stored
  std::uint64_t position40 = 0;  // the position's 40 bits as stored
  std::int64_t start = 0;        // audio: raw_start (or the clip's own, whole); MIDI: ticks from the tick origin
  bool muted = false;
};

// ---- playlists ----

// One entry of a playlist: a placement of a clip, a fade or a clip group.
struct PlaylistEntry {
  std::uint32_t clip_or_fade_index = 0;
  std::uint64_t position = 0;  // 40 bits: samples, or biased ticks
  std::int16_t color = -2;     // palette index, -2 for none
  std::uint8_t kind = 0;
  bool group_muted = false;
  bool is_group = false;
  bool is_clip = false;  // places a clip or a clip group: the byte behind the placement is 0
  bool fade = false;     // refers to the fade table
  bool locked = false;
};

struct PlaylistRecord {
  std::string_view name;
  bool ticks = false;                  // else samples
  std::vector<PlaylistEntry> entries;  // those that hold a placement
  std::uint32_t entry_count = 0;       // as the block states it, with or without a placement
  std::uint64_t start = 0;             // the block's position in the image
  bool entries_read = false;           // every entry is a block; else only name, timebase and count are known
};

// One playlist of the list that holds the tracks' playlists.
struct TrackPlaylist {
  std::uint64_t start = 0;  // position of its block, as in PlaylistRecord
  bool unnamed = false;
};

// ---- fades and clip gain ----

enum class FadeKind : std::uint8_t { kNotUnderstood = 0, kCrossfade = 1, kFadeOut = 2, kFadeIn = 3 };

struct FadeRecord {
  FadeKind kind = FadeKind::kNotUnderstood;
  double before = 0;  // samples or ticks, whichever the playlist that refers to the fade counts in
  double length = 0;
  std::uint8_t shape = 0;
  bool s_curve = false;
};

struct GainPoint {
  std::uint32_t position = 0;  // samples in the source
  double db = 0;
};

}  // namespace frt

// The session's tables as plain records: filled once in the "reading" stage, never changed after.
//
// Texts are views into the session image (or into text the run owns as long), which outlives every table.
// "Samples" are at the session's rate, "ticks" are 1/960000 of a quarter note.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace frt {

// ---- audio files (0x103a) ----

struct AudioFileEntry {
  std::string_view name;  // without folder
  std::uint16_t index = 0;
};

// Where the session's file list says each file lies.
struct AudioFileFolders {
  // File name -> folder name; the first folder found for a name stays.
  std::map<std::string, std::string, std::less<>> by_name;
  // Folder of the file with that number (kind 2 entries of the lists in the root 0x1004), empty for none.
  // Filled only where the lists read by kind and parent; else empty.
  std::vector<std::string_view> by_number;
  // Names that stand for two or more files; only their clips go by number.
  std::map<std::string, int, std::less<>> name_counts;
};

// ---- clips and placements ----

struct MidiNote {
  std::uint64_t position = 0;  // ticks from the chunk's zero
  std::uint64_t length = 0;    // ticks
  std::uint8_t note = 0;
  std::uint8_t velocity = 0;
};

// One run of notes in the MIDI data. The events stay in the image; `chunk_events` reads them.
struct NoteChunk {
  std::uint64_t zero_ticks = 0;   // 40 bits as stored
  std::uint64_t first_event = 0;  // position of the first event in the image
  std::uint32_t event_count = 0;  // as many as the image really holds
};

struct ClipRecord {
  std::uint16_t index = 0;  // the clip's number
  std::string_view name;
  std::int64_t start = 0;          // samples, or ticks for MIDI
  std::int64_t source_offset = 0;  // samples, or ticks for MIDI
  std::int64_t length = 0;         // samples, or ticks for MIDI
  std::string_view file_name;      // empty for MIDI
  std::uint16_t file_index = 0;    // index in the audio file list
  std::int64_t file_position = 0;  // the library's values; 0 in the walk
  std::int64_t file_length = 0;
  std::int32_t midi_chunk = -1;  // index in the chunk list, -1 for audio
};

// One clip on one track. `clip` is an index into the audio or the MIDI clip list, whichever list this
// placement stands in.
struct Placement {
  std::string_view track_name;
  std::uint16_t track_index = 0;
  // The track's number before the numbers were closed up (audio).
  std::uint16_t stored_track_index = 0;
  std::uint32_t clip = 0;
  std::uint32_t raw_start = 0;   // audio: the position's low 32 bits as stored
  std::uint64_t position40 = 0;  // audio: the position's 40 bits as stored
  std::int64_t start = 0;        // audio: raw_start (or the clip's own, whole); MIDI: ticks from the tick origin
  bool muted = false;
};

struct ClipTables {
  std::vector<ClipRecord> audio_clips;
  std::vector<ClipRecord> midi_clips;
  std::vector<Placement> audio;  // sorted by track_index, stable
  std::vector<Placement> midi;
  std::vector<NoteChunk> chunks;
  // How many distinct channel numbers the track list 0x1015 gives.
  std::size_t channel_count = 0;
  bool walked = false;  // false: the session library's fallback would be used
};

// ---- tempo ----

struct TempoEvent {
  double tick = 0;
  double bpm = 0;
};

// ---- playlists (0x1052) ----

// One entry of a playlist: a placement of a clip, a fade or a clip group.
struct PlaylistEntry {
  std::uint32_t clip_or_fade_index = 0;
  std::uint64_t position = 0;  // 40 bits: samples, or ticks biased by 1e12
  std::int16_t color = -2;     // palette index, -2 for none
  std::uint8_t kind = 0;
  bool group_muted = false;
  bool is_group = false;
  bool plain = false;  // the trailing byte is 0
  bool fade = false;   // refers to the fade table
  bool locked = false;
};

struct PlaylistRecord {
  std::string_view name;
  bool ticks = false;                  // timebase byte 2, else samples
  std::vector<PlaylistEntry> entries;  // those that hold a 0x104f
  std::uint32_t entry_count = 0;       // as the block states it, with or without a 0x104f
  std::uint64_t start = 0;             // the block's position in the image
  bool entries_read = false;           // every entry is a block; else only name, timebase and count are known
};

// ---- fades (0x262f) and clip gain (0x2637) ----

struct FadeRecord {
  std::uint8_t kind = 0;  // 1 crossfade, 2 fade-out, 3 fade-in, 0 not understood
  double before = 0;      // samples or ticks
  double length = 0;
  std::uint8_t shape = 0;
  bool s_curve = false;
};

struct GainPoint {
  std::uint32_t position = 0;  // samples in the source
  double db = 0;
};

// ---- mixer strips ----

struct StripRow {
  std::uint64_t start = 0, end = 0;
  // 0x261b audio and aux, 0x261d master fader, 0x261f VCA master, 0x2620 and 0x2621 MIDI and instrument, 0x2623 video
  std::uint32_t content_type = 0;
  std::string_view original_name;
  std::string_view current_name;  // the track table's name where the names line up
  bool row_active = true;
  // The row's name block holds a text of length 0 (its current name is then its name).
  bool name_block_empty = false;
  bool has_name_block = false;

  // The current name, or the original one if that is empty.
  std::string_view label() const { return current_name.empty() ? original_name : current_name; }
};

// Points of one automation lane in Pro Tools' units; positions in samples or ticks.
struct AutomationLane {
  std::vector<std::pair<double, double>> points;
  double initial = 0;
  bool in_ticks = false;
};

struct SendRecord {
  std::string_view bus;
  double level_db = 0;
  bool active = true;
};

// One strip of the session's track table, by index.
struct StripRecord {
  std::string_view name;
  double fader_db = 0;
  std::int32_t pan = 0;         // -100 to 100
  std::int32_t second_pan = 0;  // the right pan of a stereo strip
  bool muted = false;
  bool has_mixer_data = false;
  std::vector<SendRecord> sends;
  std::uint64_t record_position = 0;  // position v of the level record's value (p + 10), 0 if none
  // Filled from the strip's automation lanes.
  std::uint32_t lane_count = 0;
  bool is_stereo = false;
  bool known_width = false;  // the number of its lanes is that of a mono or a stereo strip
  std::int32_t dual_pan = 0;
  AutomationLane volume_lane, mute_lane, pan_lane, trim_lane, right_pan_lane, dual_left_lane;
  bool has_panner_level = false;
  AutomationLane panner_level_lane;  // a surround panner's level
  // A surround panner's lanes, one list a side: 7 lanes or none.
  std::vector<AutomationLane> panner_lanes[2];
};

struct TrackRow {
  int row_visible = 1;
  int row_height = 0;  // pixels
  int display_position = 0;
  int solo = -1;
  int solo_safe = -1;
  int automation_mode = -1;  // 0 to 5: Off, Read, Touch, Latch, Write, Touch/Latch
  std::string_view comment;
};

struct DisplayRow {
  std::string_view name;
  std::uint16_t row_type = 0;
  std::uint8_t width = 0;
  bool has_track = false;
  std::uint64_t display_id = 0;
};

struct MidiStripSetup {
  int cc7 = -1;   // fader value
  int cc10 = -1;  // pan value
  int program = -1;
};

// MIDI Real-Time Properties of Pro Tools.
struct RealTimeProperties {
  bool quantize_on = false, duration_on = false, delay_on = false, velocity_on = false, transpose_on = false;
  int delay_ticks = 0;  // 960 to the quarter note
  int velocity_percent = 100;
  int velocity_offset = 0;
  int octaves = 0;
  int semitones = 0;
};

template <typename T>
using ByName = std::map<std::string, T, std::less<>>;

// ---- header tables ----

struct MeterEvent {
  double position = 0;  // ticks
  std::uint32_t bar = 0;
  std::uint32_t numerator = 4;
  std::uint32_t denominator = 4;
};

struct MemoryLocation {
  std::string_view name;
  std::uint8_t flags = 0;
  std::int32_t kind = 0;      // 0 time property none, 1 marker, 2 selection
  double start = 0, end = 0;  // ticks, or samples if in_samples
  std::int32_t palette = -2;
  std::int32_t marker_color = -1;
  std::int64_t stored_rgb = -1;
  bool in_samples = false;
};

}  // namespace frt

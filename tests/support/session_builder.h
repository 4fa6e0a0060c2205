// Makes session files for tests, benches and the example. It reads like a session:
//
//   SessionBuilder s;
//   s.rate(48000).tempo(120);
//   auto gtr = s.stereo_file("Gtr", 96000);
//   auto& t = s.stereo_track("Gtr").fader_db(-3.5).height(60).comment("take 2");
//   t.clip(gtr).at(48000).length(96000).fade_in(480).gain_db(-2);
//   s.marker("Chorus", 48000);
//   s.save("Song.ptx");
//
// Positions and lengths are samples, on tick-based tracks positions and fades are ticks (1/960000 of a quarter note).
// What a session lays out differently from year to year is chosen in `layout`.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/block_writer.h"

namespace frt::test {

inline constexpr std::uint64_t kQuarter = 960000;  // ticks

// One or two audio files of the session, by their numbers in its file list. A file that holds several channels
// stands under one number, a split-mono pair under two.
struct AudioFile {
  std::string stem;  // name without extension and leg
  std::uint32_t first = 0, second = 0;
  std::uint64_t samples = 0;
};

enum class FadeShape { kLinear, kEqualPower, kSCurve };

struct Fade {
  std::uint64_t length = 0, before = 0;
  FadeShape shape = FadeShape::kLinear;
  auto operator<=>(const Fade&) const = default;
};

struct Clip {
  std::string clip_name;
  AudioFile file;
  std::uint64_t start = 0, source_offset = 0, clip_length = 0, sync_point = 0;
  std::vector<std::uint64_t> further_starts;
  Fade fade_in_, fade_out_;
  std::vector<std::pair<std::uint32_t, double>> gain;  // source sample, dB
  int palette_color = -2;
  std::uint32_t channel_ = 0;
  unsigned entry_kind = 3;
  bool is_muted = false, is_deleted = false, is_group = false, edit_lock = false, time_lock = false;

  Clip& name(std::string value) { return clip_name = std::move(value), *this; }
  Clip& at(std::uint64_t position) { return start = position, *this; }
  // The same clip again, at later positions.
  Clip& and_at(std::vector<std::uint64_t> positions) { return further_starts = std::move(positions), *this; }
  // Of a file with several channels: the first it plays.
  Clip& channel(std::uint32_t number) { return channel_ = number, *this; }
  Clip& length(std::uint64_t samples) { return clip_length = samples, *this; }
  Clip& offset(std::uint64_t samples) { return source_offset = samples, *this; }
  Clip& sync(std::uint64_t samples) { return sync_point = samples, *this; }
  Clip& fade_in(std::uint64_t length, FadeShape shape = {}) { return fade_in_ = {length, 0, shape}, *this; }
  Clip& fade_out(std::uint64_t length, FadeShape shape = {}) { return fade_out_ = {length, length, shape}, *this; }
  Clip& gain_db(double db) { return gain = {{0, db}}, *this; }
  Clip& gain_line(std::vector<std::pair<std::uint32_t, double>> points) { return gain = std::move(points), *this; }
  Clip& color(int palette_index) { return palette_color = palette_index, *this; }
  Clip& muted() { return is_muted = true, *this; }
  Clip& locked() { return edit_lock = true, *this; }
  Clip& time_locked() { return time_lock = true, *this; }
  Clip& over_next() { return entry_kind = 1, *this; }
  Clip& over_previous() { return entry_kind = 2, *this; }
  // Stands for the clip group of its number.
  Clip& group() { return is_group = true, *this; }
  // Still in the playlist's list, no longer on the track.
  Clip& deleted() { return is_deleted = true, *this; }
};

struct Playlist {
  std::string name;
  std::deque<Clip> clips;
  std::vector<std::pair<std::uint64_t, Fade>> crossfades;  // position of the cut

  // A clip over the whole file until told otherwise.
  Clip& clip(const AudioFile& file);
  // Between the clip that ends at `cut` and the one that begins there: `length` in all, `before` of it ahead.
  Playlist& crossfade(std::uint64_t cut, std::uint64_t length, std::uint64_t before, FadeShape shape = {});
};

struct Note {
  std::uint64_t position = 0, length = 0;  // ticks from the clip's start
  std::uint8_t note = 60, velocity = 100;
};

// Controllers, pitch bend or aftertouch of a MIDI clip.
struct MidiStream {
  std::uint8_t kind = 0, controller = 0;
  std::vector<std::pair<std::uint64_t, std::int32_t>> events;  // position as of a note, value
};

struct MidiClip {
  std::string name;
  std::uint64_t start = 0, length = 0;  // ticks; samples on a sample-based track
  std::vector<Note> notes;
  bool is_muted = false, is_locked = false;
  int palette = -2;
  std::vector<MidiStream> streams;
  std::vector<std::pair<std::uint64_t, std::string>> sysex_events;

  using Events = std::vector<std::pair<std::uint64_t, std::int32_t>>;
  MidiClip& mute() { return is_muted = true, *this; }
  MidiClip& lock() { return is_locked = true, *this; }
  MidiClip& color(int palette_index) { return palette = palette_index, *this; }
  MidiClip& controller(std::uint8_t number, Events events) { return streams.push_back({2, number, events}), *this; }
  MidiClip& pitch_bend(Events events) { return streams.push_back({1, 0, std::move(events)}), *this; }
  MidiClip& aftertouch(Events events) { return streams.push_back({4, 0, std::move(events)}), *this; }
  MidiClip& sysex(std::uint64_t at, std::string bytes) { return sysex_events.emplace_back(at, bytes), *this; }
};

// Real-Time Properties of a MIDI strip; those given are on.
struct RealTime {
  std::optional<int> octaves = {}, semitones = {}, velocity_percent = {}, velocity_offset = {}, delay_ticks = {};
  bool quantize = false, duration = false;
};

enum class TrackKind { kAudio, kAux, kMaster, kVca, kMidi, kInstrument, kVideo, kBasicFolder };

// Points of an automation lane: position, and dB, 1 for muted or a pan of -100 to 100.
using Automation = std::vector<std::pair<std::uint32_t, double>>;

struct Send {
  std::string bus;
  double db = 0;
  Automation level, mutes, pans, right_pans;
  int left_pan = 0, right_pan = 0;  // of a mono track's send the left one only
  bool panned = false;              // else in the middle, or hard left and right
  bool post = true, is_off = false;

  Send(std::string its_bus, double its_db, Automation its_level = {})
      : bus(std::move(its_bus)), db(its_db), level(std::move(its_level)) {}
  Send& pre_fader() { return post = false, *this; }
  Send& off() { return is_off = true, *this; }
  Send& pan(int left, int right = 0) { return left_pan = left, right_pan = right, panned = true, *this; }
  Send& mute_points(Automation points) { return mutes = std::move(points), *this; }
  Send& pan_points(Automation points) { return pans = std::move(points), *this; }
  Send& right_pan_points(Automation points) { return right_pans = std::move(points), *this; }
};

// A control of a plug-in that is automated: times and values of 0 to 1.
struct PluginControl {
  std::string name;
  std::uint32_t number = 0;
  double initial = 0;
  std::vector<std::pair<std::uint32_t, double>> points = {};
  std::string label = {};
};

// A plug-in insert. Its settings stand in chunks, as the AAX plug-in gave them.
struct Insert {
  std::string signature;  // maker code, then plug-in code, 4 characters each
  std::vector<std::uint8_t> chunks;
  unsigned channels = 1;
  unsigned key_id = 0xffff;  // number of the key input, or none
  std::string key_bus;       // what feeds it
  bool is_bypassed = false, is_inactive = false;
  std::vector<PluginControl> controls;

  // With one chunk, or none: then its chunks are to be added.
  explicit Insert(std::string its_signature) : signature(std::move(its_signature)) {}
  Insert(std::string its_signature, const std::vector<std::uint8_t>& state) : Insert(std::move(its_signature)) {
    chunk("plug", "settings", state);
  }
  Insert& chunk(std::string_view id, std::string_view name, const std::vector<std::uint8_t>& data);
  // The chunk of control values, by which plug-ins without a form of their own are kept.
  Insert& control_values(const std::vector<double>& values);
  Insert& key(unsigned id, std::string bus = {}) { return key_id = id, key_bus = std::move(bus), *this; }
  Insert& bypass() { return is_bypassed = true, *this; }
  Insert& deactivate() { return is_inactive = true, *this; }
  Insert& multi_mono(unsigned count) { return channels = count, *this; }
  Insert& automate(PluginControl control) { return controls.push_back(std::move(control)), *this; }
};

// What a path of the I/O setup leads to. A leg route carries an extra pair of its source's channels.
enum class PathKind { kInput, kOutput, kBus, kInsert, kLegs = 6 };

struct IoPath {
  std::string name;
  PathKind kind = PathKind::kBus;
  std::vector<unsigned> channels;
};

struct Track {
  TrackKind kind = TrackKind::kAudio;
  std::string name;
  std::string row_name;  // what the strip's own name block says; a renamed track keeps its old name there
  unsigned channels = 1;
  double fader = 0;  // dB
  int left_pan = 0, right_pan = 0;
  bool is_muted = false, is_soloed = false, is_solo_safe = false, is_hidden = false, is_inactive = false;
  bool voice_off = false, in_ticks = false;
  int row_height = 92, automation = 1;
  std::string comment_text;
  Automation volume, mutes, pans, right_pans, trim;
  std::vector<Send> sends;
  std::string output_path = "Output 1-2", input_path, leg_path;
  bool has_output = true;
  std::vector<Insert> inserts;
  std::vector<std::string> hardware_inserts;  // their slots
  std::deque<Playlist> playlists;             // the first is the one that plays
  std::deque<MidiClip> midi_clips;
  int midi_program = -1;
  unsigned midi_fader = 100, midi_pan = 64;
  std::uint32_t midi_device = 0;      // number of the device it plays, from 1
  std::uint64_t midi_instrument = 0;  // an instrument's id, or that of the instrument a MIDI track plays
  bool midi_in_samples = false;
  std::optional<RealTime> real_time;

  Track& fader_db(double db) { return fader = db, *this; }
  Track& pan(int left, int right = 0) { return left_pan = left, right_pan = right, *this; }
  Track& mute() { return is_muted = true, *this; }
  Track& solo() { return is_soloed = true, *this; }
  Track& solo_safe() { return is_solo_safe = true, *this; }
  Track& hide() { return is_hidden = true, *this; }
  Track& deactivate() { return is_inactive = true, *this; }
  Track& turn_voice_off() { return voice_off = true, *this; }
  Track& tick_based() { return in_ticks = true, *this; }
  Track& height(int pixels) { return row_height = pixels, *this; }
  Track& automation_mode(int mode) { return automation = mode, *this; }
  Track& comment(std::string text) { return comment_text = std::move(text), *this; }
  Track& renamed_from(std::string old) { return row_name = std::move(old), *this; }
  Track& volume_points(Automation points) { return volume = std::move(points), *this; }
  Track& mute_points(Automation points) { return mutes = std::move(points), *this; }
  Track& pan_points(Automation points) { return pans = std::move(points), *this; }
  Track& right_pan_points(Automation points) { return right_pans = std::move(points), *this; }
  Track& trim_points(Automation points) { return trim = std::move(points), *this; }
  // Into a stereo bus of that name.
  Track& send(std::string bus, double db, Automation level = {}) {
    return send({std::move(bus), db, std::move(level)});
  }
  Track& send(Send send) { return sends.push_back(std::move(send)), *this; }
  // By the text of the path, which needs no path of that name.
  Track& output(std::string path) { return output_path = std::move(path), *this; }
  Track& no_output() { return has_output = false, *this; }
  // A path of the session: what the track takes in; where the leg route leads to that its source takes in.
  Track& input_bus(std::string path) { return input_path = std::move(path), *this; }
  Track& takes_legs_of(std::string path) { return leg_path = std::move(path), *this; }
  Track& patch(int program) { return midi_program = program, *this; }
  Track& midi_levels(unsigned fader_value, unsigned pan_value) {
    return midi_fader = fader_value, midi_pan = pan_value, *this;
  }
  Track& plays_device(std::uint32_t number) { return midi_device = number, *this; }
  Track& instrument_id(std::uint64_t id) { return midi_instrument = id, *this; }
  Track& sample_based_midi() { return midi_in_samples = true, *this; }
  Track& real_time_properties(RealTime properties) { return real_time = properties, *this; }
  Track& insert(Insert insert) { return inserts.push_back(std::move(insert)), *this; }
  Track& hardware_insert(std::string slot) { return hardware_inserts.push_back(std::move(slot)), *this; }

  Clip& clip(const AudioFile& file) { return playlists.front().clip(file); }
  Track& crossfade(std::uint64_t cut, std::uint64_t length, std::uint64_t before, FadeShape shape = {});
  // An alternate playlist. One named "?" is what Pro Tools keeps of a frozen track's render.
  Playlist& playlist(std::string playlist_name);
  MidiClip& midi_clip(std::string clip_name, std::uint64_t start, std::uint64_t length, std::vector<Note> notes);
};

struct Location {
  std::string name;
  std::uint64_t start = 0, end = 0;
  std::uint8_t kind = 1;  // 0 no time property, 1 marker, 2 selection
  bool in_samples = true;
  int palette = -2;
  Location& color(int palette_index) { return palette = palette_index, *this; }
  Location& ticks() { return in_samples = false, *this; }
};

// How the lanes of strips and sends stand.
enum class LaneLayout {
  kPanGroups,        // a group for each channel's pan; wider strips have a panner of seven lanes in each group
  kPanGroupsNoTrim,  // the same without a trim lane
  kPanners,          // a panner in each group, whatever the strip's width
  kPlain,            // no groups: their place alone tells what they drive
};

// What differs between sessions of different years. The defaults make the common layout of recent ones.
struct Layout {
  bool playlist_names = true;     // else the playlists of the track list have none, and go by their number
  bool playlist_ordinals = true;  // a strip lists its playlists by number, else by id
  bool old_clip_list = false;     // the older codes of the clip list and its entries
  bool old_placements = false;    // the older placement lists, in which a clip bears its own position
  bool fade_kind = true;          // a fade's entry says that it is one, else its place on a clip's edge tells it
  bool file_kinds = true;         // the file list says what is a file and what a folder
  bool settings_paths = true;     // the session settings hold a list of path names
  bool tempo_signature = true;    // the first tempo record bears the fixed bytes
  bool extended_timecode = true;  // the timecode block holds the second, longer record
  bool saved_by_at_end = true;    // who saved it stands in a block of its own, else in the first block
  LaneLayout lanes = LaneLayout::kPanGroups;
  bool row_names = true;        // a strip's row bears its name, else the track table alone names it
  unsigned row_entry = 62;      // size of a track table entry beside its name: 72, 65, 63, 62, 61 or 31
  unsigned row_entry_end = 51;  // the word at the end of an entry of 72: a track colour, or 0 for inactive
};

class SessionBuilder {
 public:
  Layout layout;

  SessionBuilder& rate(std::uint32_t hz) { return rate_ = hz, *this; }
  SessionBuilder& tempo(double bpm);
  SessionBuilder& tempo_event(std::uint64_t tick, double bpm);
  // The moment in samples at which the first tempo event stands.
  SessionBuilder& song_start(std::uint64_t samples) { return song_start_ = samples, *this; }
  SessionBuilder& meter(std::uint64_t tick, std::uint32_t bar, std::uint32_t numerator, std::uint32_t denominator);
  SessionBuilder& saved_by(std::string product, std::string version);
  SessionBuilder& version(std::uint8_t value) { return version_ = value, *this; }
  SessionBuilder& timecode(std::uint8_t code, std::uint32_t start_frames);
  SessionBuilder& extended_timecode(std::uint32_t code, std::uint32_t start_frames);
  SessionBuilder& recording(std::uint8_t bits, bool is_float, std::uint8_t file_type, std::uint8_t pan_depth);
  SessionBuilder& grid(unsigned bars, unsigned beats, unsigned ticks);
  // Where the session lay when it was saved: the volume, then its folders.
  SessionBuilder& lies_in(std::vector<std::string> names) { return own_folder_ = std::move(names), *this; }
  SessionBuilder& key(std::uint8_t encryption_key) { return key_ = encryption_key, *this; }
  // A root block of opaque bytes, for what the converter has no reader for.
  SessionBuilder& payload(std::uint16_t content_type, std::vector<std::uint8_t> bytes);

  // An audio file by its full name; its clips are named after it. A folder lies in the session's own; one with "/" in
  // it is given from the volume down.
  AudioFile audio_file(const std::string& name, std::uint64_t samples, std::string folder = "Audio Files",
                       unsigned channels = 1);
  // The two files of a split-mono stereo recording: "stem.L.wav" and "stem.R.wav".
  AudioFile stereo_file(const std::string& stem, std::uint64_t samples, std::string folder = "Audio Files");
  // Files from here on stand in a list of their own, which doesn't say what is a file and what a folder.
  SessionBuilder& second_file_list() { return first_of_second_list_ = files_.size(), *this; }

  Track& track(std::string name, unsigned channels = 1) { return add(TrackKind::kAudio, std::move(name), channels); }
  Track& stereo_track(std::string name) { return track(std::move(name), 2).pan(-100, 100); }
  Track& aux(std::string name) { return add(TrackKind::kAux, std::move(name), 2).pan(-100, 100); }
  Track& master(std::string name) { return add(TrackKind::kMaster, std::move(name), 2).pan(-100, 100); }
  Track& vca(std::string name) { return add(TrackKind::kVca, std::move(name), 1); }
  Track& video(std::string name) { return add(TrackKind::kVideo, std::move(name), 1); }
  // A folder track without a strip; the edit window shows it above the tracks made after it.
  void basic_folder(std::string name) { add(TrackKind::kBasicFolder, std::move(name), 2); }
  Track& midi_track(std::string name) { return add(TrackKind::kMidi, std::move(name), 1); }
  Track& instrument(std::string name) { return add(TrackKind::kInstrument, std::move(name), 2).pan(-100, 100); }

  // A path of the I/O setup; "Out / 1-2" names the two channels of an output.
  SessionBuilder& io_path(PathKind kind, std::string name, std::vector<unsigned> channels) {
    return paths_.push_back({std::move(name), kind, std::move(channels)}), *this;
  }
  SessionBuilder& bus(std::string name, std::vector<unsigned> channels) {
    return io_path(PathKind::kBus, std::move(name), std::move(channels));
  }

  SessionBuilder& midi_device(std::string name, bool is_plugin) {
    return midi_devices_.emplace_back(std::move(name), is_plugin), *this;
  }
  // What the session calls a plug-in.
  SessionBuilder& plugin_name(std::string signature, std::string name) {
    return plugin_names_.emplace_back(std::move(signature), std::move(name)), *this;
  }
  // By what tracks and clips without a colour of their own are coloured.
  SessionBuilder& color_coding(std::uint8_t of_tracks, std::uint8_t of_clips) {
    return color_coding_ = {of_tracks, of_clips}, *this;
  }

  Location& marker(std::string name, std::uint64_t at);
  Location& region(std::string name, std::uint64_t start, std::uint64_t end);

  std::vector<std::uint8_t> image() const;                                   // decrypted
  std::vector<std::uint8_t> file_bytes() const { return encrypt(image()); }  // as on disc
  void save(const std::string& path) const;

 private:
  struct FileEntry {
    std::string name, folder;
    std::uint64_t samples;
    unsigned channels = 1;
  };
  struct TempoRecord {
    std::uint64_t tick;
    double bpm;
  };
  struct Meter {
    std::uint64_t tick;
    std::uint32_t bar, numerator, denominator;
  };
  struct Tables;  // clips, fades, gain and playlists as the session numbers them

  Track& add(TrackKind kind, std::string name, unsigned channels);
  Tables number() const;
  std::uint64_t end_of(const Clip& clip, bool in_ticks) const;
  void write_head(BlockWriter& w) const;
  void write_track_table(BlockWriter& w) const;
  void write_settings(BlockWriter& w) const;
  void write_files(BlockWriter& w) const;
  void write_file_list(BlockWriter& w, std::size_t first, std::size_t end, bool kinds) const;
  void write_timecode(BlockWriter& w) const;
  void write_gain(BlockWriter& w, const Tables& tables) const;
  void write_clips(BlockWriter& w, const Tables& tables) const;
  void write_fades(BlockWriter& w, const Tables& tables) const;
  void write_placements(BlockWriter& w, const Tables& tables) const;
  void write_track_list(BlockWriter& w, const Tables& tables) const;
  void write_midi(BlockWriter& w) const;
  void write_midi_devices(BlockWriter& w) const;
  void write_plugin_names(BlockWriter& w) const;
  void write_real_time_properties(BlockWriter& w) const;
  void write_tempo_and_meter(BlockWriter& w) const;
  void write_rows(BlockWriter& w, const Tables& tables) const;
  void write_row(BlockWriter& w, const Tables& tables, std::size_t index) const;
  static std::pair<int, int> pans_of(const Track& track, const Send* send);
  void write_lanes(BlockWriter& w, const Track& track, const Send* send) const;
  void write_io_setup(BlockWriter& w) const;
  std::size_t path_number(const std::string& name) const;
  void write_grid(BlockWriter& w) const;
  void write_locations(BlockWriter& w) const;
  void write_saved_by(BlockWriter& w) const;

  std::uint32_t rate_ = 48000;
  std::uint8_t version_ = 12, key_ = 0x51;
  std::string product_ = "Pro Tools", product_version_ = "2022.12.0";
  std::uint64_t song_start_ = 0;
  std::vector<TempoRecord> tempo_{{0, 120.0}};
  std::vector<Meter> meters_;
  std::uint8_t timecode_ = 7;
  std::uint32_t start_frames_ = 0;
  std::vector<std::uint32_t> extended_timecode_;
  std::uint8_t bits_ = 24, file_type_ = 3, pan_depth_ = 2;
  bool is_float_ = false, has_grid_ = false;
  std::array<unsigned, 3> grid_{};
  std::vector<FileEntry> files_;
  std::vector<std::string> own_folder_;
  std::size_t first_of_second_list_ = SIZE_MAX;
  std::deque<Track> tracks_;
  std::deque<Location> locations_;
  std::vector<IoPath> paths_;
  std::vector<std::pair<std::string, bool>> midi_devices_;
  std::vector<std::pair<std::string, std::string>> plugin_names_;  // signature, name
  std::optional<std::pair<std::uint8_t, std::uint8_t>> color_coding_;
  std::vector<std::pair<std::uint16_t, std::vector<std::uint8_t>>> payloads_;
};

}  // namespace frt::test

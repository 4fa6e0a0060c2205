// The console notes: which rows print, in which order, in which form. Wording itself is held by a few whole texts.
#include "report/notes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/text.h"
#include "support/console.h"

namespace frt {
namespace {

// A run with nothing to tell; a test sets what its note needs.
struct Scene {
  ConversionOptions options;
  RunCounters counters;
  SavedBy saved_by{"Pro Tools", "12.5.1", 12};
  bool dark_theme_default = false;
  std::int64_t rate = 48000;
  TempoMap tempo;
  std::vector<MeterEvent> meters;
  std::vector<StripRecord> strips;
  SessionSettings settings;
  std::string output_path = "Song.rpp", media_folder = "Audio Files";
  LongClips long_clips;

  Scene() { counters.names_aligned = true; }

  std::string notes() const { return text_of(print_notes); }
  std::string media() const { return text_of(print_media_notes); }
  std::string closing() const { return text_of(print_closing_notes); }

 private:
  std::string text_of(void (*print)(const NotesInput&)) const {
    test::Console console;
    print(NotesInput{options, counters, saved_by, dark_theme_default, rate, tempo, meters, strips, settings,
                     output_path, media_folder, long_clips});
    return console.take();
  }
};

using Lines = std::vector<std::string>;
using Change = std::function<void(Scene&)>;

// What a run prints beyond a run with nothing to tell, if it prints it in one piece.
std::string added_by(const Change& change) {
  Scene quiet, changed;
  change(changed);
  const std::string before = quiet.notes(), after = changed.notes();
  std::size_t head = 0;
  while (head < before.size() && head < after.size() && before[head] == after[head]) ++head;
  head = head == 0 ? 0 : before.rfind('\n', head - 1) + 1;
  const std::size_t tail = before.size() - head;
  if (after.size() < before.size() || after.substr(after.size() - tail) != before.substr(head)) return "(elsewhere)";
  return after.substr(head, after.size() - before.size());
}

struct NoteRow {
  const char* note;  // what the change adds holds this; "" if it adds nothing
  Change change;
};

void expect_notes(const std::vector<NoteRow>& rows) {
  for (const NoteRow& row : rows) {
    const std::string added = added_by(row.change);
    EXPECT_TRUE(*row.note ? contains(added, row.note) : added.empty()) << row.note << " is not in:\n" << added;
  }
}

constexpr char kQuietBody[] =
    "\n"
    "  0 tracks, 0 clips, 0 MIDI notes\n"
    "  0 mixer strips (faders, pans, mute)\n"
    "  0 sends into 0 return tracks\n"
    "  0 clips stretched, 0 of them read from the session\n"
    "  0 fade-ins, 0 fade-outs, 0 crossfades\n"
    "  0 clips given clip gain\n"
    "  no meter map in this session: 4/4 throughout\n"
    "  0 tick-based tracks, 0 sample-based\n"
    "\n";

TEST(Notes, RunWithNothingToTellPrintsOnlyTheRowsThatAlwaysStand) {
  Scene scene;
  const std::string read = "\n  Read:  Pro Tools 12.5.1, 48000 Hz, 120 BPM\n";
  EXPECT_EQ(scene.notes(), read + "  Wrote: Song.rpp\n" + kQuietBody);
  EXPECT_EQ(scene.media(), "");
  scene.options.check_only = true;
  EXPECT_EQ(scene.notes(), read + "  Not written (--check).\n" + kQuietBody);
}

TEST(Notes, SavedBy) {
  const struct {
    SavedBy saved_by;
    const char* read;
    bool warns;
  } rows[] = {
      {{"", "", -1},
       "Read:  Pro Tools (this session does not record which version saved it), 44100 Hz, 98.5 BPM\n",
       false},
      {{"Pro Tools", "", -1}, "Read:  Pro Tools (this session does not record", false},
      {{"Pro Tools", "12.5", 12}, "Read:  Pro Tools 12.5, ", false},
      {{"Pro Tools", "12.8", 12}, "by Pro Tools 12.5. 12.8 is outside that.\n", true},
      {{"Pro Tools", "2023.12", 2023}, "by Pro Tools 12.5. 2023.12 is outside that.\n", true},
      {{"Pro Tools", "0.1", 0}, "Read:  Pro Tools 0.1, ", false},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.saved_by = row.saved_by;
    scene.rate = 44100;
    scene.tempo.session_tempo = 98.5;
    const std::string text = scene.notes();
    EXPECT_TRUE(contains(text, row.read)) << text;
    EXPECT_EQ(contains(text, "the sessions this tool is tested against"), row.warns) << row.read;
  }
}

// The first line of each note.
std::string heads_of(const std::string& notes) {
  std::string heads = "\n";
  for (std::size_t at = 0; at < notes.size(); at = notes.find('\n', at) + 1) {
    if (notes.find_first_not_of(' ', at) == at + 2) heads += notes.substr(at, notes.find('\n', at) + 1 - at);
  }
  return heads;
}

// A session with a bit of everything: holds the order and the values of most rows.
TEST(Notes, FullSessionInOrder) {
  Scene scene;
  RunCounters& counters = scene.counters;
  counters.tracks_written = 21, counters.clips_written = 340, counters.midi_notes = 0;
  counters.strips_with_mixer_data = 19, counters.name_scan_count = 0, counters.strip_table_size = 20;
  counters.master_name = "Master 1";
  counters.automation_points = 77, counters.tracks_with_points = 5;
  counters.automated_tracks = 6, counters.faders_at_unity = 4;
  counters.tempo_changes = 3;
  counters.fade_ins = 1, counters.fade_outs = 2, counters.crossfades = 3, counters.clips_with_gain = 8;
  counters.uncolored_tracks = 21;
  counters.markers = 2, counters.regions = 1, counters.markers_without_time = 1;
  counters.gain_envelopes = 1;
  counters.master_faders = 2;
  counters.prefader_faders_down = {"Aux"}, counters.prefader_kept_muted = {"Pad"};
  counters.midi_tracks_muted = 1, counters.midi_mute_lanes = 2, counters.midi_other_lanes = 3;
  counters.surround_aux_widths = 1, counters.surround_panner_lanes_left = 2;
  counters.hidden_tracks = {"Scratch", "Old bus"};
  counters.tracks_with_height = 20;
  counters.soloed_tracks = {"Kick"}, counters.soloed_and_muted = 1, counters.solo_keeper = true;
  counters.commented_tracks = {"Vox"};
  counters.surround_folds = 1;
  counters.timebase_time = 20, counters.timebase_beats_position = 1;
  counters.sample_based_tracks = 20, counters.tick_based_tracks = 1;
  counters.sync_point_clips = 2, counters.locked_clips = 1;
  counters.owner_matches = 3, counters.stereo_merges = 4, counters.lanes = 3, counters.empty_tracks = 2;
  counters.inactive_tracks = 1, counters.voice_off_tracks = 1;
  counters.fade_clips_dropped = 6, counters.fades_unbound = 1, counters.s_curve_fades = 2;
  counters.deleted_placements = 9, counters.alternate_playlists = 3;
  scene.meters = {{0, 1, 3, 4}, {2880000, 2, 4, 4}};
  counters.meter_changes_written = 1;
  EXPECT_EQ(heads_of(scene.notes()), R"text(
  Read:  Pro Tools 12.5.1, 48000 Hz, 120 BPM
  Wrote: Song.rpp
  21 tracks, 340 clips, 0 MIDI notes
  19 mixer strips (faders, pans, mute)
  track list taken from the strip rows (name scan found 0 of 20)
  0 sends into 0 return tracks
  1 muted track(s) feed a pre-fader send, and are written UNMUTED with
  WARNING: 1 muted track(s) feed a pre-fader send but have volume or mute
  1 MIDI track(s) muted in Pro Tools arrive muted
  2 MIDI track(s) arrive with their mute automation
  3 MIDI track automation lane(s) other than mute are NOT carried
  master fader "Master 1" carried onto the REAPER master
  77 automation points across 5 tracks
  6 automated track(s) set to Read (Trim/Read would
  4 fader(s) parked at unity so the volume envelope alone
  tempo map with 3 changes
  0 clips stretched, 0 of them read from the session
  1 fade-ins, 2 fade-outs, 3 crossfades
  8 clips given clip gain
  21 track(s) have no color set. Pro Tools does not STORE a color
  meter 3/4, read from the session
  NOTE: this session has 1 meter change(s) after the first,
  2 memory location(s) written as REAPER markers
  1 written as REAPER REGIONS -- those are Pro Tools
  1 memory location(s) have time property NONE and were NOT
  1 of them carried a clip gain ENVELOPE, written as REAPER
  WARNING: this session has 2 MASTER FADERS. REAPER has exactly
  2 track(s) are HIDDEN in Pro Tools and arrive hidden in both REAPER's
  20 track(s) carry their Pro Tools track HEIGHT, in pixels as Pro Tools
  1 track(s) are SOLOED in the session and arrive soloed: Kick
  1 track(s) carry a COMMENT in Pro Tools: Vox
  1 surround track(s) folded from their Pro Tools legs into one
  1 track(s) were soloed AND muted in Pro Tools, which keeps them silent.
  Item timebase written per track: 20 Time (sample-based), 0 Beats
  1 aux(es) taking a surround bus written as wide as that bus, and
  2 surround panner automation lane(s) not written: a stereo source's
  1 clip(s) were locked in Pro Tools and are LOCKED in REAPER. REAPER
  1 tick-based tracks, 20 sample-based
  2 clip(s) carry a sync point and are placed by it, as Pro Tools
  3 alternate playlists matched to their parent track
  4 Pro Tools stereo track(s) merged from split mono
  3 written as REAPER fixed lanes
  2 track(s) had no clips and were written empty, mixer state intact
  1 track(s) were INACTIVE in Pro Tools and are written MUTED --
  1 track(s) had VOICE set to OFF in Pro Tools and are
  6 fade references dropped as clips
  1 fades sat on no kept clip edge
  2 S-curve fade(s) written as REAPER's S shape (5.1)
  9 deleted clip placement(s) are still in this session: edits or takes
  3 alternate playlists kept as lanes (--drop-alt-takes to leave them out)
)text");
}

TEST(Notes, TempoRamps) {
  const auto text = [](bool option, int written, int left) {
    Scene scene;
    scene.rate = 96000;
    scene.options.tempo_ramps = option;
    scene.counters.tempo_changes = 9;
    scene.counters.ramps_written = written;
    scene.counters.ramps_left = left;
    scene.counters.ramp_point_error = 0.00001;
    scene.counters.ramp_inner_error = 0.0125;
    return scene.notes();
  };
  EXPECT_TRUE(contains(text(true, 2, 0), "      --tempo-ramps: 2 drawn ramp(s) written"));
  EXPECT_TRUE(contains(text(true, 2, 0), "beat count -- 0.0100 ms here, 0.96 sample(s)\n      at 96000 Hz --"));
  EXPECT_TRUE(contains(text(true, 2, 0), "differ by up to 12.50 ms"));
  EXPECT_FALSE(contains(text(true, 2, 0), "ramp(s) left"));
  EXPECT_TRUE(contains(text(true, 0, 1), "  tempo map with 9 changes\n      1 ramp(s) left as Pro Tools' steps"));
  EXPECT_FALSE(contains(text(true, 0, 1), "no drawn ramp here"));
  EXPECT_FALSE(contains(text(false, 0, 1), "ramp"));
}

TEST(Notes, MeterEvents) {
  const auto meters = [](std::vector<MeterEvent> events, int written) {
    Scene scene;
    scene.meters = std::move(events);
    scene.counters.meter_changes_written = written;
    const std::string text = scene.notes();
    const std::size_t from = text.find("  meter "), to = text.find("  0 tick-based");
    return from == text.npos ? text : text.substr(from, to - from);
  };
  const std::string read = "  meter 4/4, read from the session\n";
  EXPECT_EQ(meters({{0, 1, 4, 4}}, 0), read);
  EXPECT_EQ(meters({{0, 1, 4, 4}, {9, 5, 4, 4}}, 0),
            read +
                "  1 meter event(s) repeat the meter already in force -- no bar line\n"
                "      moves, so there is nothing to carry: 4/4 at bar 5\n");
  // 4/4 again after 3/4 is a change; 3/4 twice is not.
  EXPECT_EQ(meters({{0, 1, 4, 4}, {1, 2, 3, 4}, {2, 3, 3, 4}, {3, 4, 4, 4}}, 2),
            read +
                "  NOTE: this session has 2 meter change(s) after the first,\n"
                "      3/4 at bar 2\n"
                "      4/4 at bar 4\n"
                "      All 2 are written as REAPER time signature changes, at\n"
                "      the same bars. Worth one look at the ruler after opening.\n"
                "  1 meter event(s) repeat the meter already in force -- no bar line\n"
                "      moves, so there is nothing to carry: 3/4 at bar 3\n");

  std::vector<MeterEvent> eight_changes = {{0, 1, 4, 4}}, eight_repeats = eight_changes;
  for (std::uint32_t i = 0; i < 8; ++i) {
    eight_changes.push_back({0, 2 + i, i % 2 == 0 ? 3u : 4u, 4});
    eight_repeats.push_back({0, 2 + i, 4, 4});
  }
  EXPECT_TRUE(meters(eight_changes, 0).ends_with("      4/4 at bar 9\n"));
  EXPECT_TRUE(meters(eight_repeats, 0).ends_with(", 4/4 at bar 8, 4/4 at bar 9\n"));
  eight_changes.push_back({0, 10, 3, 4});
  eight_repeats.push_back({0, 10, 4, 4});
  EXPECT_TRUE(meters(eight_changes, 0).ends_with("      4/4 at bar 9\n      ... and 1 more\n"));
  EXPECT_TRUE(meters(eight_repeats, 0).ends_with(", 4/4 at bar 9, ... and 1 more\n"));
}

TEST(Notes, SettingsThatDifferFromTheUsual) {
  const auto pan_depth = [](bool read, int value, double db) {
    return [=](Scene& scene) { scene.settings.pan_depth = {read, value, value >= 1 && value <= 4, db}; };
  };
  const auto recording = [](bool written, RecordingFormat format) {
    return [=](Scene& scene) {
      scene.counters.recording_format_written = written;
      scene.settings.recording = format;
    };
  };
  const auto grid = [](bool written, MusicalStep nudge) {
    return [=](Scene& scene) {
      scene.counters.grid_written = written;
      scene.counters.grid_quarters = 0.25;
      scene.settings.grid.nudge = nudge;
    };
  };
  expect_notes({
      {"  Pan law: -2.5 dB, read from the session's Pan Depth\n", pan_depth(true, 1, -2.5)},
      {"", pan_depth(true, 2, -3.0)},
      {"  Pan law: -6.0 dB, ", pan_depth(true, 4, -6.0)},
      {"  *** Pan Depth enum 0 is not one this build knows.\n", pan_depth(true, 0, -3.0)},
      {"  *** Pan Depth enum 5 is not one this build knows.\n", pan_depth(true, 5, -3.0)},
      {"", pan_depth(false, 0, -3.0)},
      {"  Bit depth: 32-bit float written as", recording(true, {true, 32, 32, true, 3})},
      {"  Bit depth: 16-bit written as", recording(true, {true, 16, 16, false, 3})},
      {"  Bit depth: 16-bit AIFF session;", recording(false, {true, 16, 16, false, 4})},
      {"", recording(false, {true, 24, 24, false, 4})},
      {"", recording(false, {true, 24, 24, false, 3})},
      {"", recording(false, {false, 0, 0, false, 4})},
      {"  Edit grid written as REAPER's grid (0.25 of a quarter note).\n", grid(true, {})},
      {"      Nudge (0| 1| 060) is not carried", grid(true, {0, 1, 60})},
      {"", grid(false, {0, 1, 60})},
  });
}

TEST(Notes, Timecode) {
  Scene scene;
  TimecodeSettings& timecode = scene.settings.timecode;
  timecode.rate_code = 5;
  timecode.rate_label = "59.94 drop";
  timecode.ruler_label = "59.94";
  timecode.timemode_rate = 60;
  timecode.timemode_mode = 2;
  timecode.start_frames = 215784;
  timecode.drop_frame = true;
  scene.counters.project_offset = 3600;
  EXPECT_FALSE(contains(scene.notes(), "Timecode:"));
  scene.counters.timecode_written = true;
  EXPECT_TRUE(contains(scene.notes(),
                       "  Timecode: 59.94 drop fps, Session Start 01:00:00;00 (3600.0000 s) written as REAPER's\n"
                       "      frame rate and project start, so the ruler reads the same timecode.\n"
                       "      REAPER has no 59.94 drop-frame setting; the ruler runs at 59.94 non-drop.\n"));
  // A session of 30 drop that no rate row matched has no ruler label.
  timecode.ruler_label = "";
  timecode.rate_code = 8;
  EXPECT_TRUE(contains(scene.notes(), "      REAPER has no 30 drop-frame setting; the ruler runs at 30 non-drop.\n"));
  timecode.rate_code = 5;
  EXPECT_FALSE(contains(scene.notes(), "REAPER has no "));
}

TEST(Notes, TracksWithoutTheirOwnTimebaseRecord) {
  const auto timebases = [](int that_way, bool samples, int judged, bool records) {
    return [=](Scene& scene) {
      scene.counters.timebase_read_that_way = that_way;
      scene.counters.timebase_all_samples = samples;
      scene.counters.timebase_judged = judged;
      scene.counters.timebase_records_exist = records;
    };
  };
  expect_notes({
      {"every record in the session says sample-based, so", timebases(2, true, 0, true)},
      {"every record in the session says tick-based, so", timebases(2, false, 0, true)},
      {"      the records disagree, so they were judged", timebases(0, false, 1, true)},
      {"      1 of them: this session holds no timebase records at all", timebases(0, false, 1, false)},
  });
}

TEST(Notes, ListsAndWhatLeavesThemOut) {
  const auto wide_strips = [](int count) {
    return [=](Scene& scene) {
      for (int i = 1; i <= count; ++i) scene.counters.wide_strips.push_back(format_text("S%d", i));
    };
  };
  EXPECT_TRUE(added_by(wide_strips(8)).ends_with("      S8\n"));
  EXPECT_TRUE(added_by(wide_strips(9)).ends_with("      S8\n      ... and 1 more\n"));

  const auto click_left_out = [](Scene& scene) {
    scene.counters.click_left_out = 2;
    scene.counters.click_left_out_names = {"Click", "Click 2"};
  };
  const auto freeze = [](int delivered) {
    return [=](Scene& scene) {
      scene.counters.freeze_records = 2;
      scene.counters.frozen_tracks_delivered = delivered;
    };
  };
  const auto recovery = [](bool recover, bool keep) {
    return [=](Scene& scene) {
      scene.options.recover_deleted = recover;
      scene.options.keep_alt_takes = keep;
      scene.counters.deleted_placements = 4;
      scene.counters.alternate_playlists = 5;
    };
  };
  expect_notes({
      {"  2 Click track(s) left out (--no-click): \"Click\", \"Click 2\"\n", click_left_out},
      {"  \"Click\" holds a Click II but also something else", [](Scene& s) { s.counters.click_kept = {"Click"}; }},
      {":\n      \"A-01\"\n      \"A-02\"\n",
       [](Scene& s) {
         s.counters.group_gain_lines = {"A-01", "A-02"};
       }},
      {"  2 internal freeze record(s) left out", freeze(0)},
      {"", freeze(1)},
      {"  WARNING: this session holds a track type", [](Scene& s) { s.counters.names_aligned = false; }},
      {"  4 deleted clip placement(s) are still in this session", recovery(false, true)},
      {"  4 deleted clip placement(s) RECOVERED: written as MUTED", recovery(true, true)},
      {"  5 alternate playlists kept as lanes (--drop-alt-takes", recovery(false, true)},
      {"  5 alternate playlists set aside (--drop-alt-takes", recovery(false, false)},
  });
}

// ---- media ----

TEST(MediaNotes, SixMissingFilesAreNamedCutTo64Bytes) {
  Scene scene;
  const std::string as(64, 'a');
  scene.counters.missing_files = {as, as + "b", "3.wav", "4.wav", "5.wav", "6.wav"};
  const std::string head = "  WARNING: 6 referenced audio file(s) are not in \"Audio Files\" or beside it:\n      " +
                           as + "\n      " + as + "\n      3.wav\n      4.wav\n      5.wav\n      6.wav\n      ";
  EXPECT_TRUE(scene.media().starts_with(head + "REAPER will search for these")) << scene.media();
  scene.counters.missing_files.push_back("7.wav");
  EXPECT_TRUE(contains(scene.media(), "      6.wav\n      ... and 1 more\n      REAPER will search")) << scene.media();
}

TEST(MediaNotes, SiblingFolders) {
  Scene scene;
  scene.counters.sibling_hits = 3;
  scene.counters.sibling_folders = {{"Rendered Files", 1}, {"Bounced Files", 2}};
  const std::string head =
      "  3 audio file(s) the session lists are in its own sibling folder(s)\n"
      "      rather than the media folder: Bounced Files (2) Rendered Files (1)\n";
  EXPECT_TRUE(scene.media().starts_with(head + "      No clip uses them")) << scene.media();
  EXPECT_TRUE(contains(scene.closing(), "  Media folder written into every FILE line:\n"));
  scene.counters.clips_in_sibling_folders = 4;
  EXPECT_EQ(scene.media(), head + "      4 clip(s) use them; their FILE lines point there.\n");
  EXPECT_TRUE(contains(scene.closing(), "  Media folder written into every other FILE line:\n      Audio Files\n"));
}

// ---- closing ----

TEST(ClosingNotes, PlainAndWithASharedUsageSummary) {
  Scene scene;
  EXPECT_TRUE(
      scene.closing().starts_with("  Media folder written into every FILE line:\n"
                                  "      Audio Files\n"
                                  "  If REAPER shows OFFLINE, that path is wrong - re-run with\n"
                                  "      --audio-dir \"<the folder your .wav files are really in>\"\n"
                                  "\n"
                                  "  PRIVACY: this program contains no network code. No information\n"))
      << scene.closing();
  scene.options.usage_shared = true;
  EXPECT_TRUE(contains(scene.closing(), "\n  PRIVACY: this program contains no network code. It wrote an\n"));
  EXPECT_FALSE(contains(scene.closing(), "No information"));
}

TEST(ClosingNotes, DepthThatWasNotCarried) {
  const struct {
    RecordingFormat recording;
    bool written;
    const char* text;
  } rows[] = {
      {{true, 24, 24, false, 3}, false, "  The session records at 24-bit. Existing audio"},
      {{true, 20, 0, false, 3}, false, "  The session records at 20-bit. Existing audio"},
      {{true, 32, 32, true, 4}, false, "  The session records at 32-bit float. Existing audio"},
      {{true, 32, 32, true, 4}, true, "  Media folder"},
      {{true, 0, 0, false, 3}, false, "  Media folder"},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.settings.recording = row.recording;
    scene.counters.recording_format_written = row.written;
    EXPECT_TRUE(scene.closing().starts_with(row.text)) << row.text;
  }
}

TEST(LongClips, TenMinutesExactlyIsNotLong) {
  const auto clip = [](std::int64_t length) {
    ClipRecord record;
    record.length = length;
    return record;
  };
  const std::vector<ClipRecord> clips = {clip(600 * 44100), clip(600 * 44100 + 1), clip(1)};
  const std::vector<std::int64_t> files = {60 * 44100, 1200 * 44100};
  const LongClips found = find_long_clips(clips, files, 44100);
  EXPECT_EQ(found.count, 1);
  EXPECT_NEAR(found.longest_clip, 10.0, 1e-6);
  EXPECT_DOUBLE_EQ(found.longest_file, 20.0);
  // Without a rate lengths count at 48000 Hz.
  EXPECT_EQ(find_long_clips(clips, files, 0).count, 0);
  EXPECT_EQ(find_long_clips({}, {}, 48000).longest_file, 0);
}

// ---- timecode ----

TEST(TimecodeText, Table) {
  const struct {
    std::uint32_t frames, rate;
    bool drop;
    const char* text;
  } rows[] = {
      {0, 30, false, "00:00:00:00"},
      {1800, 30, false, "00:01:00:00"},
      // Two numbers are dropped at each minute but every tenth, times the rate over 30.
      {1799, 30, true, "00:00:59;29"},
      {1800, 30, true, "00:01:00;02"},
      {17981, 30, true, "00:09:59;29"},
      {17982, 30, true, "00:10:00;00"},
      {215784, 60, true, "01:00:00;00"},
      {431568, 120, true, "01:00:00;000"},
      // A rate that is no multiple of 30 has nothing to drop, but keeps the mark.
      {50, 25, true, "00:00:02;00"},
      // Three digits from 101 frames a second on.
      {199, 100, false, "00:00:01:99"},
      {201, 101, false, "00:00:01:100"},
      {4294967295u, 30, false, "39768:12:56:15"},
      {5, 0, true, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(timecode_text(row.frames, row.rate, row.drop), row.text) << row.frames << " at " << row.rate;
  }
}

}  // namespace
}  // namespace frt

// The console notes: which rows print, in which order, in which form. Wording itself is held by a few whole texts.
#include "report/notes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/text.h"
#include "run/text_output.h"

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
    std::string text;
    NullSink quiet;
    FrtSink* const before = text_sink;
    text_sink = &quiet;
    text_capture = &text;
    print(NotesInput{options, counters, saved_by, dark_theme_default, rate, tempo, meters, strips, settings,
                     output_path, media_folder, long_clips});
    text_capture = nullptr;
    text_sink = before;
    return text;
  }
};

// What a run prints beyond a run with nothing to tell, if it prints it in one piece.
std::string added_by(const std::function<void(Scene&)>& change) {
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

int count_in(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
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
  EXPECT_EQ(Scene().notes(),
            std::string("\n  Read:  Pro Tools 12.5.1, 48000 Hz, 120 BPM\n  Wrote: Song.rpp\n") + kQuietBody);
  EXPECT_EQ(Scene().media(), "");
}

TEST(Notes, CheckSaysSoInPlaceOfThePathAndKeepsTheRest) {
  Scene scene;
  scene.options.check_only = true;
  EXPECT_EQ(scene.notes(),
            std::string("\n  Read:  Pro Tools 12.5.1, 48000 Hz, 120 BPM\n  Not written (--check).\n") + kQuietBody);
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
      {{"Pro Tools", "", -1},
       "Read:  Pro Tools (this session does not record which version saved it), 44100 Hz",
       false},
      {{"Pro Tools HD", "12.5.1", 12}, "Read:  Pro Tools HD 12.5.1, 44100 Hz, 98.5 BPM\n", false},
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

// A session with a bit of everything, as a whole: holds wording, order and the values of most rows.
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
  EXPECT_EQ(scene.notes(), R"text(
  Read:  Pro Tools 12.5.1, 48000 Hz, 120 BPM
  Wrote: Song.rpp

  21 tracks, 340 clips, 0 MIDI notes
  19 mixer strips (faders, pans, mute)
  track list taken from the strip rows (name scan found 0 of 20)
  0 sends into 0 return tracks
  master fader "Master 1" carried onto the REAPER master
  77 automation points across 5 tracks
  6 automated track(s) set to Read (Trim/Read would
      apply the fader on top of its own automation)
  4 fader(s) parked at unity so the volume envelope alone
      carries the level, not the fader times the envelope
  tempo map with 3 changes
  0 clips stretched, 0 of them read from the session
  1 fade-ins, 2 fade-outs, 3 crossfades
  8 clips given clip gain
  21 track(s) have no color set. Pro Tools does not STORE a color
      for those -- it draws them from a display setting, so the same
      session shows different colors on a machine set up
      differently. There is nothing to carry, so they keep REAPER's
      own default rather than a color this tool guessed.
  meter 3/4, read from the session
  NOTE: this session has 1 meter change(s) after the first,
      4/4 at bar 2
      All 1 are written as REAPER time signature changes, at
      the same bars. Worth one look at the ruler after opening.
  2 memory location(s) written as REAPER markers
  1 written as REAPER REGIONS -- those are Pro Tools
      Selection memory locations, which store a time RANGE
      rather than a point
  1 memory location(s) have time property NONE and were NOT
      written. Those store no timeline position at all -- Pro
      Tools does not draw them either, so there is nothing to
      place. Their zoom, height and group settings are Pro
      Tools view state and have no REAPER equivalent.
      None carried a stored marker color, so REAPER shows them
      in its default color. Pro Tools may still draw them in
      colors it generates for display; those are not stored
      in the session.
  1 of them carried a clip gain ENVELOPE, written as REAPER
      take volume envelopes. Points outside the clip are kept by
      interpolating to its edge, as Pro Tools plays them.
  WARNING: this session has 2 MASTER FADERS. REAPER has exactly
      one master, so only the first was carried. The others are
      NOT in the .rpp -- neither their gain nor their inserts.
      Pro Tools also allows them at any width (mono, stereo, LCR,
      5.1); anything past stereo is untested here.
      If a second master was doing real work, print through it
      before converting.
  2 track(s) are HIDDEN in Pro Tools and arrive hidden in both REAPER's
      track panel and its mixer: Scratch Old bus
  20 track(s) carry their Pro Tools track HEIGHT, in pixels as Pro Tools
      stores it. REAPER raises anything below its own minimum.
  1 track(s) are SOLOED in the session and arrive soloed: Kick
  1 track(s) carry a COMMENT in Pro Tools: Vox
      Each is a "Track: comment" line in the project notes window
      (View > Project Notes). --comments item puts them on the tracks.
  1 surround track(s) folded from their Pro Tools legs into one
      multichannel track each, the way a stereo pair is folded: one
      track, one item, one insert chain, channels in the file's order.
      A wide strip's own panner is not carried; a mono or stereo
      source panned into a surround bus gets ReaSurroundPan (below).
  1 track(s) were soloed AND muted in Pro Tools, which keeps them silent.
      REAPER would play them (a solo overrides a mute there), so they arrive
      muted with their solo off.
      Every soloed track was muted, so the track "Pro Tools solo (the
      soloed tracks were muted)" was added, soloed and empty: it keeps the
      other tracks silent the way Pro Tools' solo does. Unsolo it to hear
      everything; delete it when you like.
  Item timebase written per track: 20 Time (sample-based), 0 Beats
      (tick-based MIDI), 1 Beats-position (tick-based audio), so a tempo
      edit in REAPER moves what Pro Tools would move.
  1 clip(s) were locked in Pro Tools and are LOCKED in REAPER. REAPER
      has one item lock, so a clip that was only Time-locked (kept in
      place but still editable) is locked for edits as well.
  1 tick-based tracks, 20 sample-based
  2 clip(s) carry a sync point and are placed by it, as Pro Tools
      places them: the clip starts that far before its stored position
  3 alternate playlists matched to their parent track
  4 Pro Tools stereo track(s) merged from split mono
  3 written as REAPER fixed lanes
  2 track(s) had no clips and were written empty, mixer state intact
  1 track(s) were INACTIVE in Pro Tools and are written MUTED --
      silent, as they were, with clips and plug-ins intact. Unmute
      in REAPER to bring one back.
  1 track(s) had VOICE set to OFF in Pro Tools and are
      written MUTED -- silent, as they were, with clips and
      plug-ins intact. REAPER has no voice limit, so unmute
      to bring one back.
  6 fade references dropped as clips
  1 fades sat on no kept clip edge
  2 S-curve fade(s) written as REAPER's S shape (5.1)
  9 deleted clip placement(s) are still in this session: edits or takes
      removed from a track that Pro Tools keeps in the file for its undo
      queue and cannot show after a reopen. Left out, as the author removed
      them; --recover-deleted brings them back as muted tracks beside their
      parent, at their original positions.
  3 alternate playlists kept as lanes (--drop-alt-takes to leave them out)

)text");
}

// A switch that finds nothing to do still answers.
TEST(Notes, SwitchesThatPrintByThemselves) {
  const auto added = [](bool ConversionOptions::*option) {
    return added_by([&](Scene& scene) { scene.options.*option = true; });
  };
  EXPECT_EQ(added(&ConversionOptions::no_sidechain), "  --no-sidechain: key inputs left unwired\n");
  EXPECT_TRUE(
      added(&ConversionOptions::keep_inaudible_midi).starts_with("  --keep-inaudible-midi: 0 MIDI event(s) outside"));
  EXPECT_EQ(added(&ConversionOptions::truncate_midi_to_clip),
            "  --truncate-midi-to-clip: no note runs past a clip edge, so nothing is cut.\n");
  EXPECT_EQ(added(&ConversionOptions::tempo_ramps),
            "      --tempo-ramps: no drawn ramp here; every tempo event is a plain step\n");
  EXPECT_EQ(added(&ConversionOptions::no_stand_ins),
            "  --no-stand-ins: on; no Avid plug-in in this session had a REAPER stand-in.\n");
  EXPECT_TRUE(
      added(&ConversionOptions::no_track_colors).starts_with("  --no-track-colors: every track is in REAPER's"));
  EXPECT_TRUE(added(&ConversionOptions::no_clip_colors).starts_with("  --no-clip-colors: 0 clip(s) that would carry"));
  EXPECT_EQ(added(&ConversionOptions::recover_deleted), "");
  EXPECT_EQ(added(&ConversionOptions::no_click), "");
}

TEST(Notes, ClassicThemeIsToldOnlyWhereTheSessionWouldBeDark) {
  for (const bool new_enough : {false, true}) {
    for (const int theme : {0, 1, 2}) {
      for (const bool no_colors : {false, true}) {
        Scene scene;
        scene.dark_theme_default = new_enough;
        scene.options.pt_theme = theme;
        scene.options.no_clip_colors = no_colors;
        EXPECT_EQ(contains(scene.notes(), "  Clip colors follow Pro Tools' Classic theme, as chosen.\n"),
                  new_enough && theme == 1 && !no_colors);
      }
    }
  }
}

TEST(Notes, TempoRamps) {
  Scene scene;
  scene.options.tempo_ramps = true;
  scene.counters.tempo_changes = 9;
  scene.counters.ramps_written = 2;
  scene.counters.ramp_point_error = 0.00001;
  scene.counters.ramp_inner_error = 0.0125;
  scene.rate = 96000;
  std::string text = scene.notes();
  EXPECT_TRUE(contains(text, "      --tempo-ramps: 2 drawn ramp(s) written")) << text;
  EXPECT_TRUE(contains(text, "beat count -- 0.0100 ms here, 0.96 sample(s)\n      at 96000 Hz --")) << text;
  EXPECT_TRUE(contains(text, "differ by up to 12.50 ms")) << text;
  EXPECT_FALSE(contains(text, "ramp(s) left")) << text;

  scene.counters.ramps_written = 0;
  scene.counters.ramps_left = 1;
  text = scene.notes();
  EXPECT_TRUE(contains(text, "  tempo map with 9 changes\n      1 ramp(s) left as Pro Tools' steps")) << text;
  EXPECT_FALSE(contains(text, "no drawn ramp here")) << text;

  scene.options.tempo_ramps = false;
  EXPECT_FALSE(contains(scene.notes(), "ramp")) << text;
}

TEST(Notes, MidiEventsByTheirSwitches) {
  const auto added = [](bool keep, bool cut, int muted, int notes) {
    return added_by([=](Scene& scene) {
      scene.options.keep_inaudible_midi = keep;
      scene.options.truncate_midi_to_clip = cut;
      scene.counters.muted_midi_events = muted;
      scene.counters.notes_past_clip_edges = notes;
    });
  };
  EXPECT_TRUE(added(false, false, 3, 0).starts_with("  3 MIDI event(s) kept but muted -- outside"));
  EXPECT_TRUE(added(true, false, 3, 0).starts_with("  3 MIDI note event(s) kept but muted: notes too short"));
  EXPECT_TRUE(
      added(false, true, 0, 4).starts_with("  --truncate-midi-to-clip: 4 note(s) run past a clip edge and are CUT"));
  EXPECT_TRUE(added(false, false, 0, 4).starts_with("  4 note(s) run past a clip edge; those items were lengthened"));
}

TEST(Notes, DualPanPointsCountOnStripsWithMixerDataOnly) {
  AutomationLane two_points;
  two_points.points = {{0, -50}, {100, 50}};
  StripRecord moved, resting, no_data;
  moved.has_mixer_data = resting.has_mixer_data = true;
  moved.dual_pan = 3, resting.dual_pan = 2, no_data.dual_pan = 2;
  moved.dual_left_lane = two_points;
  moved.right_pan_lane.points = {{0, 20}};
  no_data.dual_left_lane = two_points;
  EXPECT_EQ(added_by([&](Scene& scene) {
              scene.strips = {moved, resting, no_data};
            }),
            "  3 dual-pan point(s) on 1 stereo track(s) (REAPER dual pan)\n");
  EXPECT_EQ(added_by([&](Scene& scene) { scene.strips = {resting, no_data}; }), "");
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

TEST(Notes, MarkerColours) {
  const auto added = [](int markers, int colored, std::vector<std::string> unmapped) {
    return added_by([&](Scene& scene) {
      scene.counters.markers = markers;
      scene.counters.colored_markers = colored;
      scene.counters.unmapped_marker_colors = unmapped;
    });
  };
  EXPECT_EQ(added(2, 1, {"Verse", "Solo 2"}),
            "  2 memory location(s) written as REAPER markers\n"
            "      1 of them carried a marker color. A marker Pro Tools\n"
            "      left unset keeps REAPER's default -- the color it shows\n"
            "      for those is generated for display and not stored.\n"
            "      2 marker(s) carry a Pro Tools color this build cannot\n"
            "      map yet, and arrive in REAPER's default color: Verse, Solo 2\n");
  EXPECT_TRUE(contains(added(1, 0, {}), "None carried a stored marker color"));
  EXPECT_EQ(added(0, 0, {}), "");
}

TEST(Notes, PanDepth) {
  const auto added = [](bool read, int value, double db) {
    return added_by([&](Scene& scene) { scene.settings.pan_depth = {read, value, value >= 1 && value <= 4, db}; });
  };
  EXPECT_EQ(
      added(true, 1, -2.5),
      "  Pan law: -2.5 dB, read from the session's Pan Depth\n      setting (Pro Tools' own default is -3.0 dB).\n");
  EXPECT_EQ(added(true, 2, -3.0), "");
  EXPECT_TRUE(added(true, 4, -6.0).starts_with("  Pan law: -6.0 dB, "));
  EXPECT_TRUE(added(true, 0, -3.0).starts_with("  *** Pan Depth enum 0 is not one this build knows.\n"));
  EXPECT_TRUE(added(true, 5, -3.0).starts_with("  *** Pan Depth enum 5 is not one this build knows.\n"));
  EXPECT_EQ(added(false, 0, -3.0), "");
}

TEST(Notes, AutomationModes) {
  const auto added = [](int not_in_read, std::vector<std::string> off, std::vector<std::string> modes) {
    return added_by([&](Scene& scene) {
      scene.counters.tracks_not_in_read = not_in_read;
      scene.counters.automation_off_tracks = off;
      scene.counters.other_mode_tracks = modes;
    });
  };
  const std::string off_alone = added(1, {"Gtr"}, {" Gtr=Off"});
  EXPECT_TRUE(off_alone.starts_with("  1 track(s) have automation mode OFF in Pro Tools: Gtr\n"));
  EXPECT_FALSE(contains(off_alone, "other than Read"));
  EXPECT_TRUE(
      contains(added(2, {"Gtr"}, {" Gtr=Off", " Bs=Touch+Trim"}),
               "  2 track(s) use an automation mode other than Read and arrive in it: Gtr=Off Bs=Touch+Trim\n"));
}

TEST(Notes, CommentsByMode) {
  const char* const texts[] = {"named \"Pro Tools comment\". It plays nothing.\n", "(View > Project Notes).",
                               "      NOT WRITTEN (--comments none).\n"};
  for (int mode = 0; mode < 3; ++mode) {
    Scene scene;
    scene.options.comments_mode = mode;
    EXPECT_FALSE(contains(scene.notes(), texts[mode]));
    scene.counters.commented_tracks = {"A", "B c"};
    const std::string text = scene.notes();
    EXPECT_TRUE(contains(text, "  2 track(s) carry a COMMENT in Pro Tools: A B c\n")) << text;
    for (int other = 0; other < 3; ++other) EXPECT_EQ(contains(text, texts[other]), other == mode) << text;
  }
}

TEST(Notes, RecordingFormat) {
  const auto added = [](bool written, RecordingFormat format) {
    return added_by([&](Scene& scene) {
      scene.counters.recording_format_written = written;
      scene.settings.recording = format;
    });
  };
  EXPECT_TRUE(added(true, {true, 32, 32, true, 3}).starts_with("  Bit depth: 32-bit float written as"));
  EXPECT_TRUE(added(true, {true, 16, 16, false, 3}).starts_with("  Bit depth: 16-bit written as"));
  EXPECT_TRUE(added(false, {true, 16, 16, false, 4}).starts_with("  Bit depth: 16-bit AIFF session;"));
  EXPECT_EQ(added(false, {true, 24, 24, false, 4}), "");
  EXPECT_EQ(added(false, {true, 24, 24, false, 3}), "");
  EXPECT_EQ(added(false, {false, 0, 0, false, 4}), "");
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

TEST(Notes, GridAndNudge) {
  const auto added = [](bool grid, MusicalStep nudge) {
    return added_by([&](Scene& scene) {
      scene.counters.grid_written = grid;
      scene.counters.grid_quarters = 0.25;
      scene.settings.grid.nudge = nudge;
    });
  };
  EXPECT_EQ(added(true, {}), "  Edit grid written as REAPER's grid (0.25 of a quarter note).\n");
  EXPECT_TRUE(contains(added(true, {0, 1, 60}), "      Nudge (0| 1| 060) is not carried"));
  EXPECT_EQ(added(false, {0, 1, 60}), "");
}

TEST(Notes, TracksWithoutTheirOwnTimebaseRecord) {
  const auto added = [](int that_way, bool samples, int judged, bool records) {
    return added_by([=](Scene& scene) {
      scene.counters.timebase_read_that_way = that_way;
      scene.counters.timebase_all_samples = samples;
      scene.counters.timebase_judged = judged;
      scene.counters.timebase_records_exist = records;
    });
  };
  EXPECT_TRUE(contains(added(2, true, 0, true), "every record in the session says sample-based, so"));
  EXPECT_TRUE(contains(added(2, false, 0, true), "every record in the session says tick-based, so"));
  EXPECT_TRUE(contains(added(0, false, 1, true), "      the records disagree, so they were judged"));
  EXPECT_TRUE(contains(added(0, false, 1, false), "      1 of them: this session holds no timebase records at all"));
}

TEST(Notes, NameLists) {
  EXPECT_EQ(added_by([](Scene& scene) {
              scene.counters.click_left_out = 2;
              scene.counters.click_left_out_names = {"Click", "Click 2"};
            }),
            "  2 Click track(s) left out (--no-click): \"Click\", \"Click 2\"\n");
  EXPECT_TRUE(added_by([](Scene& scene) {
                scene.counters.click_kept = {"Click"};
              }).starts_with("  \"Click\" holds a Click II but also something else"));
  EXPECT_TRUE(contains(added_by([](Scene& scene) {
                         scene.counters.group_gain_lines = {"Vox-01", "Vox-02"};
                       }),
                       ":\n      \"Vox-01\"\n      \"Vox-02\"\n"));
}

TEST(Notes, WideStripsListEightNames) {
  const auto added = [](int strips) {
    return added_by([=](Scene& scene) {
      for (int i = 1; i <= strips; ++i) scene.counters.wide_strips.push_back(format_text("S%d (6 control slots)", i));
    });
  };
  EXPECT_TRUE(added(8).ends_with("      S8 (6 control slots)\n"));
  EXPECT_TRUE(added(9).ends_with("      S8 (6 control slots)\n      ... and 1 more\n"));
}

TEST(Notes, FreezeRecordsAreToldUnlessAFrozenTrackWasDelivered) {
  const auto added = [](int delivered) {
    return added_by([=](Scene& scene) {
      scene.counters.freeze_records = 2;
      scene.counters.frozen_tracks_delivered = delivered;
    });
  };
  EXPECT_TRUE(added(0).starts_with("  2 internal freeze record(s) left out"));
  EXPECT_EQ(added(1), "");
}

TEST(Notes, NamesThatDidNotAlign) {
  EXPECT_TRUE(added_by([](Scene& scene) {
                scene.counters.names_aligned = false;
              }).starts_with("  WARNING: this session holds a track type this build does not\n"));
}

TEST(Notes, DeletedPlacementsAndAlternatesByTheirSwitches) {
  const auto added = [](bool recover, bool keep) {
    return added_by([=](Scene& scene) {
      scene.options.recover_deleted = recover;
      scene.options.keep_alt_takes = keep;
      scene.counters.deleted_placements = 4;
      scene.counters.alternate_playlists = 5;
    });
  };
  EXPECT_TRUE(added(false, true).starts_with("  4 deleted clip placement(s) are still in this session"));
  EXPECT_TRUE(
      added(true, true).starts_with("  4 deleted clip placement(s) RECOVERED: written as MUTED \"[alt takes]\"\n"));
  EXPECT_TRUE(
      added(false, true).ends_with("  5 alternate playlists kept as lanes (--drop-alt-takes to leave them out)\n"));
  EXPECT_TRUE(added(false, false).ends_with("  5 alternate playlists set aside (--drop-alt-takes was given)\n"));
}

// ---- media ----

TEST(MediaNotes, SixMissingFilesAreNamed) {
  Scene scene;
  for (int i = 1; i <= 6; ++i) scene.counters.missing_files.push_back(format_text("take_%d.wav", i));
  std::string text = scene.media();
  EXPECT_TRUE(text.starts_with(
      "  WARNING: 6 referenced audio file(s) are not in \"Audio Files\" or beside it:\n      take_1.wav\n"))
      << text;
  EXPECT_EQ(count_in(text, ".wav\n"), 6);
  EXPECT_FALSE(contains(text, "... and"));
  scene.counters.missing_files.push_back("take_7.wav");
  text = scene.media();
  EXPECT_TRUE(contains(text, "      take_6.wav\n      ... and 1 more\n      REAPER will search for these")) << text;
}

TEST(MediaNotes, MissingNameIsCutTo64Bytes) {
  Scene scene;
  scene.counters.missing_files = {std::string(64, 'a'), std::string(65, 'b')};
  const std::string text = scene.media();
  EXPECT_TRUE(contains(text, " " + std::string(64, 'a') + "\n")) << text;
  EXPECT_TRUE(contains(text, " " + std::string(64, 'b') + "\n")) << text;
}

TEST(MediaNotes, SiblingFolders) {
  Scene scene;
  scene.counters.sibling_hits = 3;
  scene.counters.sibling_folders = {{"Rendered Files", 1}, {"Bounced Files", 2}};
  const std::string head =
      "  3 audio file(s) the session lists are in its own sibling folder(s)\n"
      "      rather than the media folder: Bounced Files (2) Rendered Files (1)\n";
  EXPECT_EQ(scene.media(), head +
                               "      No clip uses them (freeze renders are not needed: the frozen\n"
                               "      track converts from its source with the plug-in live).\n");
  EXPECT_TRUE(contains(scene.closing(), "  Media folder written into every FILE line:\n"));
  scene.counters.clips_in_sibling_folders = 4;
  EXPECT_EQ(scene.media(), head + "      4 clip(s) use them; their FILE lines point there.\n");
  EXPECT_TRUE(contains(scene.closing(), "  Media folder written into every other FILE line:\n      Audio Files\n"));
}

// ---- closing ----

TEST(ClosingNotes, Plain) {
  EXPECT_EQ(Scene().closing(),
            "  Media folder written into every FILE line:\n"
            "      Audio Files\n"
            "  If REAPER shows OFFLINE, that path is wrong - re-run with\n"
            "      --audio-dir \"<the folder your .wav files are really in>\"\n"
            "\n"
            "  PRIVACY: this program contains no network code. No information\n"
            "      about this session was transmitted from this computer: no\n"
            "      upload, no telemetry, no usage reporting. A report reaches\n"
            "      kestrel only when it is attached to an email and sent.\n");
}

TEST(ClosingNotes, SharedUsageChangesThePrivacyParagraph) {
  Scene scene;
  scene.options.usage_shared = true;
  EXPECT_TRUE(
      scene.closing().ends_with("  PRIVACY: this program contains no network code. It wrote an\n"
                                "      anonymous summary of this conversion (counts, and which plug-ins\n"
                                "      converted how), which kestrel sends because usage summaries are on\n"
                                "      in Help > App settings. The summary holds no track, clip or file\n"
                                "      names, no paths and no audio. Nothing else about this session\n"
                                "      left this computer. A report reaches kestrel only when it is\n"
                                "      attached to an email and sent.\n"));
}

TEST(ClosingNotes, DepthThatWasNotCarried) {
  Scene scene;
  scene.settings.recording = {true, 24, 24, false, 3};
  EXPECT_TRUE(scene.closing().starts_with("  The session records at 24-bit. Existing audio"));
  scene.settings.recording = {true, 20, 0, false, 3};
  EXPECT_TRUE(scene.closing().starts_with("  The session records at 20-bit. Existing audio"));
  scene.settings.recording = {true, 32, 32, true, 4};
  EXPECT_TRUE(scene.closing().starts_with("  The session records at 32-bit float. Existing audio"));
  scene.counters.recording_format_written = true;
  EXPECT_TRUE(scene.closing().starts_with("  Media folder"));
  scene.counters.recording_format_written = false;
  scene.settings.recording = {true, 0, 0, false, 3};
  EXPECT_TRUE(scene.closing().starts_with("  Media folder"));
}

TEST(ClosingNotes, LongClips) {
  Scene scene;
  scene.long_clips = {2, 61.26, 95.04};
  EXPECT_TRUE(scene.closing().starts_with(
      "  note: 2 clip(s) over 10 minutes (longest 61.3 min, from a 95.0 min\n        source)."))
      << scene.closing();
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
      {86400, 24, false, "01:00:00:00"},
      {86423, 24, false, "01:00:00:23"},
      {1800, 30, false, "00:01:00:00"},
      // Two numbers are dropped at each minute but every tenth, times the rate over 30.
      {1, 30, true, "00:00:00;01"},
      {1799, 30, true, "00:00:59;29"},
      {1800, 30, true, "00:01:00;02"},
      {17981, 30, true, "00:09:59;29"},
      {17982, 30, true, "00:10:00;00"},
      {107892, 30, true, "01:00:00;00"},
      {3600, 60, true, "00:01:00;04"},
      {215784, 60, true, "01:00:00;00"},
      {7200, 120, true, "00:01:00;008"},
      {431568, 120, true, "01:00:00;000"},
      // A rate that is no multiple of 30 has nothing to drop, but keeps the mark.
      {50, 25, true, "00:00:02;00"},
      {24, 24, true, "00:00:01;00"},
      // Three digits from 101 frames a second on.
      {199, 100, false, "00:00:01:99"},
      {201, 101, false, "00:00:01:100"},
      {119, 120, false, "00:00:00:119"},
      {4294967295u, 30, false, "39768:12:56:15"},
      {5, 0, true, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(timecode_text(row.frames, row.rate, row.drop), row.text) << row.frames << " at " << row.rate;
  }
}

}  // namespace
}  // namespace frt

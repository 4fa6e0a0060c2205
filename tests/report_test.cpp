// The conversion report and the summary line.
#include "report/report.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "run/text_output.h"

namespace frt {
namespace {

// A run with nothing to tell; a test sets what its section needs.
struct Scene {
  ConversionOptions options;
  RunCounters counters;
  Problem problem;
  int session_version = 12, version_major = 12;
  std::int64_t rate = 48000;
  TempoMap tempo;
  SessionSettings settings;
  std::vector<OutputTrack> tracks;
  PluginTables plugins;
  std::string output_path = "out/Song.rpp";

  Scene() { options.session_path = "in/Song.ptx"; }

  ReportOutcome report() const {
    return build_report({options, counters, problem, session_version, version_major, rate, tempo, settings, tracks,
                         plugins, output_path});
  }
  std::string text() const { return report().text; }
  // From a heading to the end of its section.
  std::string section(const std::string& heading) const {
    const std::string whole = text();
    const std::size_t from = whole.find("\n" + heading);
    if (from == whole.npos) return "";
    std::size_t to = from + 1;
    do {
      to = whole.find("\n\n", to + 1);
    } while (to != whole.npos && !(whole[to + 2] >= 'A' && whole[to + 2] <= 'Z'));
    return whole.substr(from + 1, to == whole.npos ? to : to - from);
  }
};

OutputTrack track(std::string name, std::size_t items, bool midi = false) {
  OutputTrack made;
  made.name = made.pt_name = std::move(name);
  made.items.resize(items);
  made.is_midi = midi;
  return made;
}

constexpr char kQuiet[] = R"text(kestrel conversion report
=========================

made with   kestrel 1.0.1
conversion  Pro Tools session (.ptx) to REAPER project (.rpp)
converter   build 287

source   in/Song.ptx
output   out/Song.rpp
session  Pro Tools 12, 48000 Hz, 120 BPM

0 tracks (0 audio/aux, 0 instrument), 0 clips, 0 MIDI notes

TRACK LIST (Pro Tools edit-window order)
  #   name                               clips notes  fx

PLUG-INS
  0 instance(s) found, 0 written with their settings

NEEDS A LOOK
  nothing - everything in this session was carried across

PRIVACY
  This conversion sent nothing from this computer: the converter
  that wrote this report has no network code, and there was no
  upload, telemetry or usage reporting.

  This report is your property. It names your tracks, your
  plug-ins and the paths to your files. No one receives it
  unless you send it. Review its contents before providing it
  to any third party.
)text";

TEST(Report, RunWithNothingToTell) {
  const ReportOutcome outcome = Scene().report();
  EXPECT_EQ(outcome.text, kQuiet);
  EXPECT_EQ(outcome.needs_look, 0);
  EXPECT_EQ(outcome.summary_line, "summary tracks=0 clips=0 notes=0 fx=0 written=0 needs_look=0");
  print_report("later\n");  // reaches no report
  EXPECT_EQ(report_target, nullptr);
}

TEST(Report, HeadOfACheckedSessionWithAProblem) {
  Scene scene;
  scene.options.check_only = true;
  scene.problem.set("unmatched-tracks", "2 track(s) matched no strip row");
  scene.version_major = 2023;
  scene.rate = 96000;
  scene.tempo.session_tempo = 98.25;
  scene.tempo.events = {{0, 98.25}, {960000, 100}};
  scene.settings.recording = {true, 32, 32, true, 3};
  TimecodeSettings& timecode = scene.settings.timecode;
  timecode.rate_code = 8;
  timecode.long_label = "60 fps drop frame";
  timecode.ruler_label = "60";
  timecode.timemode_rate = 60;
  timecode.start_frames = 3600;
  timecode.drop_frame = true;
  EXPECT_TRUE(contains(scene.text(), R"text(converter   build 287
problem     unmatched-tracks: 2 track(s) matched no strip row

source   in/Song.ptx
output   (not written: this was a check)
session  Pro Tools 12 or later, 96000 Hz, 32-bit float, 60 fps drop frame, 98.25 BPM (tempo map)
audio    WAV files
start    00:01:00;04
         (REAPER has no 60 drop-frame ruler: the project's ruler
         runs at 60 non-drop)

0 tracks)text"))
      << scene.text();
  EXPECT_TRUE(scene.report().summary_line.ends_with(" needs_look=0 problem=1"));
}

TEST(Report, SessionLine) {
  const struct {
    int version, major;
    RecordingFormat recording;
    const char* text;
  } rows[] = {
      {10, 10, {true, 24, 24, false, 0}, "session  Pro Tools 10, 48000 Hz, 24-bit, 120 BPM\n\n"},
      {10, -1, {true, 20, 0, false, 0}, "session  Pro Tools 10, 48000 Hz, 120 BPM\n\n"},
      {12,
       -1,
       {true, 16, 16, false, 4},
       "session  Pro Tools 12 or later, 48000 Hz, 16-bit, 120 BPM\naudio    AIFF files\n\n"},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.session_version = row.version;
    scene.version_major = row.major;
    scene.settings.recording = row.recording;
    EXPECT_TRUE(contains(scene.text(), row.text)) << scene.text();
  }
}

TEST(Report, Overview) {
  Scene scene;
  scene.tracks = {track("A", 1), track("B", 0, true), track("C", 0)};
  scene.counters.clips_written = 1;
  scene.counters.return_tracks = 2;
  scene.counters.soloed_and_muted = 1;
  scene.counters.solo_keeper = true;
  scene.counters.freeze_records = 3;
  scene.options.no_track_colors = scene.options.no_clip_colors = true;
  scene.counters.uncolored_by_option = 7;
  scene.options.no_stand_ins = true;
  scene.counters.master_name = "Master";
  EXPECT_TRUE(contains(scene.text(), R"text(
3 tracks (2 audio/aux, 1 instrument), 1 clips, 0 MIDI notes
plus 2 send-return bus track(s)
1 track(s) soloed AND muted in Pro Tools arrive muted with their solo off
(REAPER would play a soloed track through its mute); an empty soloed track,
"Pro Tools solo (the soloed tracks were muted)", keeps the rest silent
frozen track(s) converted UNFROZEN - original audio with the
plug-ins live and editable (3 internal freeze record(s) left out)
"Replace Avid plug-ins with REAPER's" is off; no Avid plug-in in this
session had a REAPER stand-in
"Leave out track colors" is on: tracks in REAPER's default color
"Leave out clip colors" is on: 7 clip(s) that would carry a color
are in their track's color instead
master fader "Master" carried onto the REAPER master

TRACK LIST)text"))
      << scene.text();
}

TEST(Report, TrackList) {
  Scene scene;
  OutputTrack laned = track("Vox", 2);
  laned.lanes = {{"Vox.01", std::vector<OutputItem>(3)}, {"Vox.02", {}}};
  OutputTrack alternate = track(std::string(34, 'n') + "ame", 1);
  alternate.pt_name.clear();
  scene.tracks = {laned, track("Aux 1", 0), track("Empty", 0), alternate};
  scene.plugins.inserts = {{"Aux 1", 4}, {alternate.name, 2}};
  EXPECT_EQ(scene.section("TRACK LIST"),
            "TRACK LIST (Pro Tools edit-window order)\n"
            "  #   name                               clips notes  fx\n"
            "  1   Vox                                    5     0   0\n"
            "  2   Aux 1                                  0     0   4\n"
            "  3   Empty                                  0     0   0   (empty)\n"
            "  4   nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn     1     0   2\n");
}

TEST(Report, PluginRowsNameEachTrackOnce) {
  Scene scene;
  scene.plugins.rows = {
      {"Vox", 1, "EQ", PluginOutcome::kSettings, "told elsewhere", true, 12},
      {"Vox", 2, "A compressor with a very long name", PluginOutcome::kDefaults, "nothing stored", false, 0},
      {"Gtr", 1, "Amp", PluginOutcome::kNotInstalled, "not installed", true, 0},
      {"Gtr", 10, "Pitch", PluginOutcome::kAaxOnly, "AAX only", false, 0},
  };
  EXPECT_TRUE(contains(scene.text(), R"text(
EVERY PLUG-IN, AND WHAT HAPPENED TO IT
  4 instance(s): 1 arrived with Pro Tools settings, 1 inserted at
  the plug-in's own defaults, 2 could not be inserted.
  1 is marked (not installed): its settings WERE written, and it
  loads as soon as that plug-in is installed for REAPER.
  1 is not installed for REAPER here and was left out, as asked.

  key:  [settings]  arrived with its Pro Tools settings
        [defaults]  inserted, but Pro Tools stored nothing to carry
        [dropped ]  not inserted; the line says why

  Vox
     1 [settings] EQ                          12 automation point(s)  (not installed for REAPER here)
     2 [defaults] A compressor with a very l  - nothing stored
  Gtr
     1 [dropped ] Amp                         - not installed
    10 [dropped ] Pitch                       - AAX only

PLUG-INS
)text"))
      << scene.text();
}

TEST(Report, PluginsAskForWhatReaperNeeds) {
  Scene scene;
  EXPECT_FALSE(contains(scene.text(), "WHAT REAPER NEEDS"));
  scene.plugins.all = {{"Amp", 2}, {"EQ", 1}};
  scene.plugins.rows = {{"Vox", 1, "EQ", PluginOutcome::kSettings, "", false, 0}};
  EXPECT_TRUE(contains(scene.text(),
                       "PLUG-INS\n"
                       "  3 instance(s) found, 1 written with their settings\n"
                       "    Amp                      x2\n"
                       "    EQ                       x1\n"
                       "\n  WHAT REAPER NEEDS INSTALLED, AND WHAT IT DOES NOT\n"));
  EXPECT_TRUE(contains(scene.text(), "         support@kestrel.example and name the plug-in. Nothing else\n"));
  EXPECT_TRUE(contains(scene.text(), "own plug-in list was not found"));
  scene.plugins.reaper_list_found = true;
  EXPECT_FALSE(contains(scene.text(), "own plug-in list was not found"));
  EXPECT_EQ(scene.report().summary_line, "summary tracks=0 clips=0 notes=0 fx=3 written=1 needs_look=0");
}

TEST(Report, NeedsALookCountsItsSections) {
  Scene scene;
  scene.plugins.aax_only = {{"DigiX", {"Big Room", 3, 1}}};
  scene.plugins.unrecognized = {{"AbcdEfgh", 1}};
  scene.plugins.not_installed = {{"Amp", "VST3"}};
  scene.plugins.unresolved_keys = 2;
  scene.counters.wide_strips = {"Surr (6 control slots)"};
  scene.counters.fades_not_understood = 4;
  scene.counters.unmatched_tracks = 5;
  for (int i = 1; i <= 7; ++i)
    scene.counters.missing_files.push_back(format_text("%d%s.wav", i, std::string(70, 'x').c_str()));
  const ReportOutcome outcome = scene.report();
  EXPECT_EQ(outcome.needs_look, 8);
  EXPECT_TRUE(outcome.summary_line.ends_with(" needs_look=8"));
  EXPECT_FALSE(contains(outcome.text, "nothing - everything"));
  EXPECT_TRUE(contains(outcome.text, R"text(
NEEDS A LOOK
  AAX ONLY - no VST/VST3 version of these exists, so no converter
  can move them. Print or commit these tracks in Pro Tools:
    Big Room                 x3
    1 of these processed audio, so that much of the mix
    is not carried. The rest did not touch the sound.
  not recognized. An Avid stock plug-in is AAX only and cannot
  be transferred by any tool; anything else we can add - send
  this report to support@kestrel.example and say which one:
    AbcdEfgh                 x1
  installed in Pro Tools but NOT for REAPER on this machine
  (settings were written; install these and they load):
    Amp                      needs VST3
  1 mixer strip(s) of an unrecognized width (pan not converted):
    Surr (6 control slots)
  2 sidechain key input(s) could not be resolved
  4 fade record(s) not understood
  5 track(s) matched no strip row (appended at the end)
  7 referenced audio file(s) not in "Audio Files" or beside it:
)text"))
      << outcome.text;
  // All of them, in full.
  EXPECT_TRUE(contains(outcome.text, "    7" + std::string(70, 'x') + ".wav\n"));
}

TEST(Report, AaxOnlyPluginsThatDidNothing) {
  Scene scene;
  scene.plugins.aax_only = {{"DigiX", {"Meter", 2, 0}}};
  EXPECT_TRUE(contains(scene.text(),
                       "    Meter                    x2\n    None of these processed audio: the mix is unaffected.\n"));
  scene.plugins.aax_only = {{"DigiX", {"Room", 2, 2}}};
  EXPECT_TRUE(contains(scene.text(), "    2 of these processed audio, so that much of the mix\n    is not carried.\n"));
}

TEST(Report, WideTracks) {
  Scene scene;
  scene.counters.surround_folds = 1;
  EXPECT_TRUE(contains(scene.text(), "\nPICTURE AND WIDE TRACKS\n  1 surround track(s) folded"));
  EXPECT_FALSE(contains(scene.text(), "wider than stereo"));
  scene.counters.wide_strips = {"Surr (6 control slots)"};
  scene.counters.surround_pan_strips = 1;
  EXPECT_TRUE(contains(scene.text(), "    1 of them carries PAN automation"));
  scene.counters.surround_pan_strips = 2;
  EXPECT_TRUE(contains(scene.text(), "    2 of them carry PAN automation"));
  EXPECT_TRUE(contains(scene.text(), "    support@kestrel.example and say what is wrong with it.\n\nPRIVACY\n"));
}

TEST(Report, SharedUsageNamesThePrivacyPage) {
  Scene scene;
  scene.options.usage_shared = true;
  EXPECT_TRUE(contains(scene.text(), "  (https://kestrel.example/privacy). The summary holds no track, clip or\n"));
  EXPECT_FALSE(contains(scene.text(), "This conversion sent nothing"));
  EXPECT_TRUE(contains(scene.text(), "  This report is your property."));
}

TEST(ReportFile, Path) {
  const struct {
    const char *project, *report;
  } rows[] = {
      {"Song.rpp", "Song-kestrel-report.txt"},
      {"a.b/Song.v2.rpp", "a.b/Song.v2-kestrel-report.txt"},
      {"my.dir/Song", "my.dir/Song-kestrel-report.txt"},
      {"my.dir\\Song", "my.dir\\Song-kestrel-report.txt"},
      {"Song", "Song-kestrel-report.txt"},
      {"dir/.rpp", "dir/-kestrel-report.txt"},
  };
  for (const auto& row : rows) EXPECT_EQ(report_path(row.project), row.report);
}

TEST(ReportFile, IsWrittenWholeOrSaidNotToBe) {
  const std::string folder = testing::TempDir();
  const std::string path = folder + "/report_test-kestrel-report.txt", nowhere = folder + "/no such folder/x.txt";
  std::string console;
  NullSink quiet;
  FrtSink* const before = text_sink;
  text_sink = &quiet;
  text_capture = &console;
  EXPECT_TRUE(save_report(path, kQuiet));
  EXPECT_FALSE(save_report(nowhere, kQuiet));
  text_capture = nullptr;
  text_sink = before;
  EXPECT_EQ(console, "  report written: " + path + "\n  could not write report: " + nowhere + "\n");
  std::ostringstream written;
  written << std::ifstream(path, std::ios::binary).rdbuf();
  EXPECT_EQ(written.str(), kQuiet);
  std::filesystem::remove(path);
}

TEST(AppVersion, Text) {
  const struct {
    const char *version, *text;
  } rows[] = {
      {"1.0.1", "1.0.1"},
      {"1.2.0", "1.2"},
      {"1.0", "1.0"},
      {"1.0.0.0", "1.0.0.0"},
      {"2.1.0-beta.3", "2.1 beta 3"},
      {"2.1.4-rc-1.2", "2.1.4 rc 1 2"},
      {"2.1.0-", "2.1"},
      {"", "(unreleased)"},
      {"-", "(unreleased)"},
  };
  for (const auto& row : rows) EXPECT_EQ(app_version_text(row.version), row.text) << row.version;
}

}  // namespace
}  // namespace frt

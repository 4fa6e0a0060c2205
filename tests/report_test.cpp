// The conversion report and the summary line.
#include "report/report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/text.h"
#include "support/console.h"
#include "support/temp_folder.h"

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

TEST(Report, SessionLine) {
  const struct {
    int version, major;
    RecordingFormat recording;
    const char* text;
  } rows[] = {
      {10, 10, {true, 24, 24, false, 0}, "session  Pro Tools 10, 48000 Hz, 24-bit, 120 BPM\n\n"},
      {10, -1, {true, 20, 0, false, 0}, "session  Pro Tools 10, 48000 Hz, 120 BPM\n\n"},
      {12, -1, {true, 16, 16, false, 4}, " 12 or later, 48000 Hz, 16-bit, 120 BPM\naudio    AIFF files\n\n"},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.session_version = row.version;
    scene.version_major = row.major;
    scene.settings.recording = row.recording;
    EXPECT_TRUE(contains(scene.text(), row.text)) << scene.text();
  }
}

TEST(Report, TrackList) {
  Scene scene;
  OutputTrack laned = track("Vox", 2);
  laned.lanes = {{"Vox.01", std::vector<OutputItem>(3)}, {"Vox.02", {}}};
  OutputTrack alternate = track(std::string(34, 'n') + "ame", 1);
  alternate.pt_name.clear();
  scene.tracks = {laned, track("Aux 1", 0), track("Empty", 0), alternate};
  scene.plugins.inserts = {{"Aux 1", 4}, {alternate.name, 2}};
  EXPECT_TRUE(contains(scene.text(), R"text(
  1   Vox                                    5     0   0
  2   Aux 1                                  0     0   4
  3   Empty                                  0     0   0   (empty)
  4   nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn     1     0   2

)text"))
      << scene.text();
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
  // The first line of each, in this order.
  std::size_t at = outcome.text.find("\nNEEDS A LOOK\n");
  for (const char* line :
       {"\n  AAX ONLY - no VST/VST3", "\n    Big Room                 x3\n", "\n    1 of these processed",
        "\n  not recognized.", "\n    AbcdEfgh                 x1\n", "\n  installed in Pro Tools but NOT",
        "\n    Amp                      needs VST3\n", "\n  1 mixer strip(s) of an unrecognized width",
        "\n    Surr (6 control slots)\n", "\n  2 sidechain key input(s)", "\n  4 fade record(s)",
        "\n  5 track(s) matched no strip row", "\n  7 referenced audio file(s) not in \"Audio Files\""}) {
    const std::size_t next = outcome.text.find(line, at);
    EXPECT_NE(next, outcome.text.npos) << line << outcome.text;
    at = next;
  }
  // All of them, in full.
  EXPECT_TRUE(contains(outcome.text, "    7" + std::string(70, 'x') + ".wav\n"));
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
  const test::TempFolder folder;
  const std::string path = folder.at("report.txt"), nowhere = folder.at("no such folder/x.txt");
  test::Console console;
  EXPECT_TRUE(save_report(path, kQuiet));
  EXPECT_FALSE(save_report(nowhere, kQuiet));
  EXPECT_EQ(console.take(), "  report written: " + path + "\n  could not write report: " + nowhere + "\n");
  EXPECT_EQ(test::read_text(path), kQuiet);
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

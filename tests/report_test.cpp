// The conversion report, as far as no whole run reaches it.
#include "report/report.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/text.h"

namespace frt {
namespace {

// A run with nothing to tell; a test sets what its section needs.
struct Scene {
  ConversionOptions options;
  Session session;
  Problem problem;
  Plugins plugins;
  Told told{options, session, plugins, problem};
};

TEST(Report, NeedsALookCountsItsSectionsAndNamesAllInFull) {
  Scene scene;
  FxCounts& plugins = scene.told.mix.fx;
  plugins.aax_only = {{"DigiX", {"Big Room", 3, 1}}};
  plugins.unrecognized = {{"AbcdEfgh", 1}};
  plugins.not_installed = {{"Amp", "VST3"}};
  scene.told.mix.routing.keys.unresolved = 2;
  scene.told.wide_strips = {"Surr (6 control slots)"};
  scene.told.clips.fades.not_understood = 4;
  scene.told.order.unmatched_tracks = 5;
  scene.told.media.missing_files.assign(7, std::string(70, 'x'));
  const ReportOutcome outcome = build_report(scene.told);
  EXPECT_EQ(outcome.needs_look, 8);
  EXPECT_TRUE(outcome.summary_line.ends_with(" needs_look=8")) << outcome.summary_line;
  std::size_t at = outcome.text.find("\nNEEDS A LOOK\n");
  std::string missing;
  for (int i = 0; i < 7; ++i) missing += "    " + std::string(70, 'x') + "\n";
  for (const std::string& line : std::vector<std::string>{
           "    Big Room                 x3\n", "    1 of these processed", "    AbcdEfgh                 x1\n",
           "    Amp                      needs VST3\n", "    Surr (6 control slots)\n", "  2 sidechain key input(s)",
           "  4 fade record(s)", "  5 track(s) matched no", missing}) {
    const std::size_t next = outcome.text.find(line, at);
    ASSERT_NE(next, outcome.text.npos) << line << outcome.text;
    at = next;
  }
}

TEST(ReportFile, Path) {
  const std::pair<const char*, const char*> rows[] = {
      {"a.b/Song.v2.rpp", "a.b/Song.v2-kestrel-report.txt"},
      {"my.dir/Song", "my.dir/Song-kestrel-report.txt"},
      {"my.dir\\Song", "my.dir\\Song-kestrel-report.txt"},
      {"dir/.rpp", "dir/-kestrel-report.txt"},
  };
  for (const auto& [project, report] : rows) EXPECT_EQ(report_path(project), report);
}

TEST(AppVersion, Text) {
  const std::pair<const char*, const char*> rows[] = {
      {"1.0.1", "1.0.1"},
      {"1.2.0", "1.2"},
      {"1.0", "1.0"},
      {"1.0.0.0", "1.0.0.0"},
      {"2.1.0-beta.3", "2.1 beta 3"},
      {"2.1.4-rc-1.2", "2.1.4 rc 1 2"},
      {"2.1.0-", "2.1"},
      {"-", "(unreleased)"},
  };
  for (const auto& [version, text] : rows) EXPECT_EQ(app_version_text(version), text) << version;
}

}  // namespace
}  // namespace frt

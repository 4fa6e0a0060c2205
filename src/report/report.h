// The conversion report: the one text that a user sends in when something looks wrong, and the one-line summary of
// the run.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "model/tempo.h"
#include "model/tracks.h"
#include "report/plugin_tables.h"
#include "run/counters.h"
#include "run/options.h"
#include "run/problem.h"
#include "session/session_settings.h"

namespace frt {

// What the report reads.
struct ReportInput {
  const ConversionOptions& options;
  const RunCounters& counters;
  const Problem& problem;
  int session_version = 0;        // the version byte that the session library read
  int version_major = -1;         // of the Pro Tools that saved the session; -1 unknown
  std::int64_t session_rate = 0;  // Hz, as read
  const TempoMap& tempo;
  const SessionSettings& settings;
  std::span<const OutputTrack> tracks;  // as written
  const PluginTables& plugins;
  const std::string& output_path;  // the project as written
};

struct ReportOutcome {
  std::string text;
  std::string summary_line;
  int needs_look = 0;  // sections under NEEDS A LOOK
};

// Builds the text through print_report; the report target is null again when it returns.
ReportOutcome build_report(const ReportInput& in);

// The project's path with its extension replaced by "-kestrel-report.txt".
std::string report_path(std::string_view output_path);

// Writes the report in one piece and says on the console how that went. False if it could not be written.
bool save_report(const std::string& path, const std::string& text);

// A version as people read it: "2.1" for "2.1.0", "2.1 beta 3" for "2.1.0-beta.3", "(unreleased)" for none.
std::string app_version_text(std::string_view version);

}  // namespace frt

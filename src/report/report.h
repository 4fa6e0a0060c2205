// The conversion report: the one text that a user sends in when something looks wrong, and the one-line summary of
// the run.
#pragma once

#include <string>
#include <string_view>

#include "report/told.h"

namespace frt {

struct ReportOutcome {
  std::string text;
  std::string summary_line;
  int needs_look = 0;  // sections under NEEDS A LOOK
};

ReportOutcome build_report(const Told& told);

// The project's path with its extension replaced by "-kestrel-report.txt".
std::string report_path(std::string_view output_path);

// Writes the report in one piece and says on the console how that went. False if it could not be written.
bool save_report(const std::string& path, const std::string& text);

// A version as people read it: "2.1" for "2.1.0", "2.1 beta 3" for "2.1.0-beta.3", "(unreleased)" for none.
std::string app_version_text(std::string_view version);

}  // namespace frt

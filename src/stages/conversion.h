// One conversion: one session in, one project and its texts out.
#pragma once

#include <string>

#include "run/options.h"
#include "run/progress.h"

namespace frt {

// How a run ended.
struct RunOutcome {
  int status = 1;                            // 0 done, 1 every failure
  std::string problem_kind, problem_detail;  // empty unless something went wrong on this program's side
  std::string summary_line;                  // empty on a run that never reached the report stage
};

// Reads the session of the options and writes its project. Fills `result` and reports to `progress` if they are
// given. A run owns all of its state, so a second one in the same process gives the same bytes as the first.
RunOutcome run_conversion(const ConversionOptions& options, ConversionResult* result, frtgui::Progress* progress);

}  // namespace frt

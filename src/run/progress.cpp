#include "run/progress.h"

#include <cstdio>

namespace frtgui {

const char* name_of(Step step) {
  static constexpr const char* kNames[] = {"reading", "clips", "tracks", "writing", "media", "report", "done"};
  return kNames[number_of(step)];
}

void report_step(Progress* progress, Step step) {
  if (progress) progress->report(number_of(step), kSteps, name_of(step));
}

bool StderrProgress::report(int step, int total, const char* stage) {
  std::fprintf(stderr, "progress %d/%d %s\n", step, total, stage);
  std::fflush(stderr);
  return true;
}

}  // namespace frtgui

#include "run/progress.h"

#include <cstdio>

namespace frtgui {

bool StderrProgress::report(int step, int total, const char* stage) {
  std::fprintf(stderr, "progress %d/%d %s\n", step, total, stage);
  std::fflush(stderr);
  return true;
}

}  // namespace frtgui

#include <csignal>

#include "app/entry.h"
#include "base/memory.h"

int main(int argc, char** argv) {
#ifndef _WIN32
  // A closed console or a full disc is told by the write that fails; it must not end a conversion half way.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
#endif
  frt::prefer_large_pages();
  return frt::run_entry(argc, argv);
}

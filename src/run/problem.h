// The first thing that went wrong on this program's side, for a front end to offer as a problem report.
#pragma once

#include <string>

namespace frt {

struct Problem {
  std::string kind;  // "unreadable", "unmatched-tracks", or empty
  std::string detail;

  // The first problem of a run is the one reported.
  void set(std::string new_kind, std::string new_detail) {
    if (!kind.empty()) return;
    kind = std::move(new_kind);
    detail = std::move(new_detail);
  }
};

}  // namespace frt

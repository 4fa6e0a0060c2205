// A locale whose decimal point is a comma, as an embedding program may have set one. It is made on the spot: few
// machines have one installed.
#pragma once

#include <stdlib.h>

#include <clocale>
#include <string>

#include "support/process.h"

namespace frt::test {

// In force while it lives; `good` says whether numbers really print with a comma.
class CommaLocale {
 public:
  CommaLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    run_process("/usr/bin/localedef", {"-i", "de_DE", "-f", "UTF-8", folder_.at("de_DE.UTF-8")});
    ::setenv("LOCPATH", folder_.path().c_str(), 1);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    good = std::string(std::localeconv()->decimal_point) == ",";
  }
  ~CommaLocale() {
    std::setlocale(LC_ALL, before_.c_str());
    ::unsetenv("LOCPATH");
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  bool good = false;

 private:
  std::string before_;
  TempFolder folder_;
};

}  // namespace frt::test

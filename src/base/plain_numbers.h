// Numbers as in the "C" locale, whatever the environment says.
#pragma once

#include <locale.h>

namespace frt {

// printf takes its decimal point from the locale; while this stands, the calling thread's is the "C" locale. The
// program sets none itself, but a host that embeds it may have.
class PlainNumbers {
 public:
  PlainNumbers();
  ~PlainNumbers();
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  locale_t before_;
};

}  // namespace frt

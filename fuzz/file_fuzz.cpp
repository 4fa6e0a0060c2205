// Arbitrary files under a session's name.
#include "support/check_run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  frt::test::check_run({data, data + size});
  return 0;
}

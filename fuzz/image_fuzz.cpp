// Arbitrary decrypted sessions: the input is what stands behind the file's head.
#include "check_run.h"
#include "support/block_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  frt::fuzz::check_run(frt::test::encrypt(frt::test::image_of({data, data + size})));
  return 0;
}

// Arbitrary decrypted sessions: the input is what stands behind the file's head.
#include "support/block_writer.h"
#include "support/check_run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  frt::test::check_run(frt::test::encrypt(frt::test::image_of({data, data + size})));
  return 0;
}

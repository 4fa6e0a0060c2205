// Arbitrary decrypted sessions: the input is what stands behind the file's head.
#include "support/block_writer.h"
#include "support/check_run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> file = frt::test::encrypt(frt::test::image_of({data, data + size}));
  frt::test::check_run(file);
  frt::test::check_run(file, frt::test::CheckRun::kTables);
  return 0;
}

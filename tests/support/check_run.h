// A whole conversion of a file's bytes that writes nothing, for those who make many: fuzz targets and loops over
// damaged sessions. The bytes stand in memory only.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ptf/ptf_format.h"
#include "stages/conversion.h"
#include "support/console.h"

namespace frt::test {

enum class CheckRun { kConversion, kTables };

// The status of the run: of a conversion, or of printing the session's tables.
inline int check_run(const std::vector<std::uint8_t>& file_bytes, CheckRun what = CheckRun::kConversion) {
  static const int file = ::memfd_create("session.ptx", 0);
  if (::ftruncate(file, 0) != 0) std::abort();
  for (std::size_t at = 0; at < file_bytes.size();) {
    const ssize_t written = ::pwrite(file, file_bytes.data() + at, file_bytes.size() - at, static_cast<off_t>(at));
    if (written <= 0) std::abort();
    at += static_cast<std::size_t>(written);
  }
  const Console silent;
  PTFFormat::allow_unknown_version = false;
  ConversionOptions options;
  options.session_path = "/proc/self/fd/" + std::to_string(file);
  options.check_only = true;
  options.dump_tables = what == CheckRun::kTables;
  ConversionResult result;
  return run_conversion(options, &result, nullptr).status;
}

}  // namespace frt::test

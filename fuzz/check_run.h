// What the session fuzz targets do with a file's bytes: a whole conversion that writes nothing.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ptf/ptf_format.h"
#include "run/conversion.h"
#include "run/text_output.h"

namespace frt::fuzz {

inline void check_run(const std::vector<std::uint8_t>& file_bytes) {
  static NullSink silent;
  static const int file = ::memfd_create("session.ptx", 0);
  if (::ftruncate(file, 0) != 0) std::abort();
  for (std::size_t at = 0; at < file_bytes.size();) {
    const ssize_t written = ::pwrite(file, file_bytes.data() + at, file_bytes.size() - at, static_cast<off_t>(at));
    if (written <= 0) std::abort();
    at += static_cast<std::size_t>(written);
  }
  text_sink = &silent;
  PTFFormat::allow_unknown_version = false;
  ConversionOptions options;
  options.session_path = "/proc/self/fd/" + std::to_string(file);
  options.check_only = true;
  ConversionResult result;
  run_conversion(options, &result, nullptr);
}

}  // namespace frt::fuzz

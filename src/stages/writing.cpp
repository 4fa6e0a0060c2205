#include "stages/writing.h"

#include <filesystem>
#include <system_error>

#include "base/file.h"
#include "base/text.h"
#include "run/text_output.h"
#include "writer/project.h"

namespace frt {
namespace {

// What a check writes to.
class NullTarget final : public TextTarget {
 public:
  bool write(const char*, std::size_t) override { return true; }
};

// A name that no file bears yet: the path with " (n)" ahead of its extension; empty if there is none left.
std::string numbered_name(const std::string& path) {
  constexpr int kMost = 9999;
  const std::string base = without_extension(path), extension = extension_of(path);
  for (int n = 1; n <= kMost; ++n) {
    std::string candidate = base + format_text(" (%d)", n) + extension;
    if (!can_open(candidate)) return candidate;
  }
  return {};
}

// Opens the project's file under the name rules; false if it can't be written.
bool open_output(const ConversionOptions& options, std::string& output_path, OutputFile& file) {
  if (!options.overwrite && can_open(output_path)) {
    const std::string free_name = numbered_name(output_path);
    if (free_name.empty()) return false;
    print_text("\n  %s already exists - writing %s instead\n  (--overwrite to replace it)\n", output_path.c_str(),
               free_name.c_str());
    output_path = free_name;
  }
  // The session itself is never the target, whatever was asked for.
  std::error_code unknown;
  if (std::filesystem::equivalent(output_path, options.session_path, unknown)) return false;
  return file.open(output_path);
}

}  // namespace

std::string wanted_output_path(const ConversionOptions& options) {
  return options.output_path.empty() ? without_extension(options.session_path) + ".rpp" : options.output_path;
}

bool write_output(const Mix& mix, const ConversionOptions& options, std::string& output_path,
                  frtgui::Progress* progress) {
  if (options.check_only) {
    NullTarget nowhere;
    write_project(nowhere, mix, progress);
    return true;
  }
  OutputFile file;
  bool written = open_output(options, output_path, file);
  if (written) {
    write_project(file, mix, progress);
    written = file.commit();
  }
  if (!written) print_text("\nCould not write %s\n", output_path.c_str());
  return written;
}

}  // namespace frt

#include "support/convert.h"

#include "stages/conversion.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace frt::test {

namespace {

std::string without_folder(std::string text, const std::string& folder) {
  for (std::size_t at = text.find(folder); at != text.npos; at = text.find(folder, at)) {
    text.replace(at, folder.size(), "<folder>");
  }
  return text;
}

}  // namespace

Converted convert(const SessionBuilder& session, ConversionOptions options) {
  const TempFolder folder;
  options.session_path = folder.put("Song.ptx", session.file_bytes());
  if (!options.check_only && !options.list_only) options.output_path = folder.at("Song.rpp");

  const Console silent;
  ConversionResult result;
  Converted converted;
  converted.status = run_conversion(options, &result, nullptr).status;
  converted.project = without_folder(read_text(folder.at("Song.rpp")), folder.path().string());
  converted.console = without_folder(result.console_text, folder.path().string());
  return converted;
}

}  // namespace frt::test

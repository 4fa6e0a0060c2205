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

Converted convert_file(const std::vector<std::uint8_t>& file_bytes, ConversionOptions options) {
  const TempFolder folder;
  options.session_path = folder.put("Song.ptx", file_bytes);
  if (!options.check_only && !options.list_only) options.output_path = folder.at("Song.rpp");

  const Console silent;
  ConversionResult result;
  const RunOutcome outcome = run_conversion(options, &result, nullptr);
  Converted converted;
  converted.status = outcome.status;
  converted.project = without_folder(read_text(folder.at("Song.rpp")), folder.path().string());
  converted.console = without_folder(result.console_text, folder.path().string());
  if (!outcome.problem_kind.empty()) converted.error = outcome.problem_kind + ": " + outcome.problem_detail;
  return converted;
}

Converted convert(const SessionBuilder& session, ConversionOptions options) {
  return convert_file(session.file_bytes(), std::move(options));
}

}  // namespace frt::test

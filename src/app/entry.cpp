#include "app/entry.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/command_line.h"
#include "app/help.h"
#include "base/file.h"
#include "base/text.h"
#include "plugins/learn.h"
#include "report/usage_file.h"
#include "run/text_output.h"
#include "stages/conversion.h"

namespace frt {
namespace {

constexpr int kDone = 0, kFailed = 1, kMisused = 2;

// Ends a job: holds the window open if that is wanted.
int finish(const CommandLine& line, int status) {
  if (line.pause_at_exit) {
    print_text("\n  Press Enter to close.\n");
    std::fflush(stdout);
    std::getchar();
  }
  return status;
}

// A run that writes its report, which must stand on disc as the caller of the run got it.
int self_test(const ConversionOptions& given) {
  ConversionOptions options = given;
  options.write_report = true;
  ConversionResult result;
  const RunOutcome outcome = run_conversion(options, &result, nullptr);

  std::size_t on_disc = 0;
  bool equal = true;
  const auto file = read_file(result.report_path);
  if (file) {
    on_disc = file->size();
    equal = file->view().equals(0, result.report_text);
  }
  equal = equal && on_disc > 0 && on_disc == result.report_text.size();
  print_text("  API SELFTEST: rc=%d report_text=%d ondisk=%d %s\n", outcome.status,
             static_cast<int>(result.report_text.size()), static_cast<int>(on_disc), equal ? "IDENTICAL" : "DIFFER");
  print_text("  API SELFTEST: console_text=%d bytes\n", static_cast<int>(result.console_text.size()));
  return outcome.status;
}

// The conversion as a front end follows it: how it ended goes to standard error behind the stages.
RunOutcome convert_with_progress(const ConversionOptions& options) {
  frtgui::StderrProgress progress;
  RunOutcome outcome = run_conversion(options, nullptr, &progress);
  if (outcome.status == kDone) report_step(&progress, frtgui::Step::kDone);
  if (!outcome.problem_kind.empty()) {
    std::fprintf(stderr, "problem kind=%s %s\n", outcome.problem_kind.c_str(), outcome.problem_detail.c_str());
    std::fflush(stderr);
  }
  if (!outcome.summary_line.empty()) {
    std::fprintf(stderr, "%s\n", outcome.summary_line.c_str());
    std::fflush(stderr);
  }
  return outcome;
}

// A second pass beside the first one's output, for comparing the two.
int convert_again(const ConversionOptions& first) {
  if (first.output_path.empty()) {
    print_text("  --convert-twice needs -o: both passes would write the same file.\n");
    return kFailed;
  }
  ConversionOptions options = first;
  options.output_path = without_extension(first.output_path) + "-2nd.rpp";
  options.overwrite = true;
  return run_conversion(options, nullptr, nullptr).status;
}

int convert(CommandLine& line) {
  ConversionOptions& options = line.options;
  options.session_path = find_session_path(line.positionals);
  if (options.session_path.empty()) {
    print_text("ferrite: drag a .ptx file onto this program.\n");
    return finish(line, kFailed);
  }
  if (!options.audio_dir_given) options.audio_dir = default_audio_dir(options.session_path);

  if (std::getenv("FRT_API_SELFTEST")) return self_test(options);

  const RunOutcome outcome =
      line.show_progress ? convert_with_progress(options) : run_conversion(options, nullptr, nullptr);
  int status = outcome.status;
  if (!options.usage_json_path.empty() && !options.check_only && !options.list_only) {
    // The run gives no summary body yet.
    if (!write_usage_file(options.usage_json_path, status, /*body=*/"")) {
      print_text("  could not write the usage summary file\n");
    }
  }
  if (line.convert_twice && status == kDone) status = convert_again(options);
  return finish(line, status);
}

}  // namespace

int run_entry(int argc, const char* const* argv) {
  static StdoutSink standard_output;
  text_sink = &standard_output;
  CommandLine line = read_command_line(argc, argv);
  switch (line.job) {
    case CommandLine::Job::kTellVersion:
      std::printf("ferrite %s (build %s)\n", kVersion, kBuild);
      std::fflush(stdout);
      return kDone;
    case CommandLine::Job::kTellHelp:
      print_text("%s", help_text().c_str());
      return kDone;
    case CommandLine::Job::kRefuse:
      print_text(
          "\n  Unknown option: %s\n\n  Nothing was converted. Run  ferrite --help  for the options\n"
          "  this version understands.\n",
          line.unknown_option.c_str());
      return finish(line, kMisused);
    case CommandLine::Job::kLearnPlugin:
      return finish(line, learn_plugin(line.learn_chain_path, line.learn_signature, line.options.program_path));
    case CommandLine::Job::kConvertSession:
      break;
  }
  return convert(line);
}

}  // namespace frt

#include "report/report.h"

#include <algorithm>
#include <cstdio>

#include "base/text.h"
#include "report/report_sections.h"

namespace frt {
namespace {

void add_privacy(TextBuilder& report, bool usage_shared) {
  if (usage_shared) {
    report.print(
        "\nPRIVACY\n"
        "  The converter that wrote this report has no network code. It\n"
        "  wrote an anonymous summary of this conversion (counts, and\n"
        "  which plug-ins converted how), which kestrel sends because\n"
        "  usage summaries are on in Help > App settings\n"
        "  (%s). The summary holds no track, clip or\n"
        "  file names, no paths and no audio. Nothing else about this\n"
        "  session was transmitted from this computer.\n"
        "\n",
        kPrivacyPage);
  } else {
    report.print(
        "\nPRIVACY\n"
        "  This conversion sent nothing from this computer: the converter\n"
        "  that wrote this report has no network code, and there was no\n"
        "  upload, telemetry or usage reporting.\n"
        "\n");
  }
  report.print(
      "  This report is your property. It names your tracks, your\n"
      "  plug-ins and the paths to your files. No one receives it\n"
      "  unless you send it. Review its contents before providing it\n"
      "  to any third party.\n");
}

}  // namespace

ReportOutcome build_report(const Told& told) {
  ReportOutcome outcome;
  TextBuilder report;
  add_head(report, told);
  add_overview(report, told);
  add_track_list(report, told);
  add_plugin_rows(report, told.mix.fx);
  add_plugins(report, told);
  outcome.needs_look = add_needs_look(report, told);
  add_picture_and_wide(report, told);
  add_privacy(report, told.options.usage_shared);
  outcome.text = report.take();
  outcome.summary_line = format_text("summary tracks=%d clips=%d notes=%d fx=%d written=%d needs_look=%d%s",
                                     told.tracks_written(), told.mix.items.clips_written, told.mix.midi.notes,
                                     told.mix.fx.instances(), told.mix.fx.rows_of(FxOutcome::kSettings),
                                     outcome.needs_look, told.problem.kind.empty() ? "" : " problem=1");
  return outcome;
}

std::string report_path(std::string_view output_path) { return without_extension(output_path) + "-kestrel-report.txt"; }

bool save_report(const std::string& path, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  bool written = file != nullptr;
  if (file != nullptr) {
    written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    written = std::fclose(file) == 0 && written;
  }
  if (written) {
    print_text("  report written: %s\n", path.c_str());
  } else {
    print_text("  could not write report: %s\n", path.c_str());
  }
  return written;
}

std::string app_version_text(std::string_view version) {
  const std::size_t dash = version.find('-');
  std::string text(version.substr(0, dash));
  if (std::count(text.begin(), text.end(), '.') == 2 && text.ends_with(".0")) text.resize(text.size() - 2);
  std::string stage(dash == version.npos ? "" : version.substr(dash + 1));
  std::replace(stage.begin(), stage.end(), '-', ' ');
  std::replace(stage.begin(), stage.end(), '.', ' ');
  if (!stage.empty()) text += " " + stage;
  return text.empty() ? "(unreleased)" : text;
}

}  // namespace frt

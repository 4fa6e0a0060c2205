// The report on plug-ins: each one and what happened to it, and what REAPER needs to load them.
#include <algorithm>
#include <cstddef>

#include "report/report_sections.h"

namespace frt {
namespace {

void add_totals(TextBuilder& report, const FxCounts& plugins) {
  const int rows = static_cast<int>(plugins.rows.size());
  const int settings = plugins.rows_of(FxOutcome::kSettings);
  const int defaults = plugins.rows_of(FxOutcome::kDefaults);
  report.print(
      "  %d instance(s): %d arrived with Pro Tools settings, %d inserted at\n"
      "  the plug-in's own defaults, %d could not be inserted.\n",
      rows, settings, defaults, rows - settings - defaults);

  const auto marked = std::count_if(plugins.rows.begin(), plugins.rows.end(),
                                    [](const FxReportRow& row) { return row.waits_for_install(); });
  if (marked == 1) {
    report.print(
        "  1 is marked (not installed): its settings WERE written, and it\n"
        "  loads as soon as that plug-in is installed for REAPER.\n");
  } else if (marked > 1) {
    report.print(
        "  %d are marked (not installed): the settings WERE written, and\n"
        "  they load as soon as those plug-ins are installed for REAPER.\n",
        static_cast<int>(marked));
  }
  const int left_out = plugins.rows_of(FxOutcome::kNotInstalled);
  if (left_out == 1) {
    report.print("  1 is not installed for REAPER here and was left out, as asked.\n");
  } else if (left_out > 1) {
    report.print("  %d are not installed for REAPER here and were left out, as asked.\n", left_out);
  }
}

void add_plugin_row(TextBuilder& report, const FxReportRow& row) {
  constexpr std::size_t kLongestName = 26;
  const char* word = "[dropped ]";
  if (row.outcome == FxOutcome::kSettings) word = "[settings]";
  if (row.outcome == FxOutcome::kDefaults) word = "[defaults]";
  report.print("    %2d %s %-26s", row.slot, word, row.name.substr(0, kLongestName).c_str());
  if (row.automation_points > 0) report.print("  %d automation point(s)", row.automation_points);
  if (row.waits_for_install()) report.print("  (not installed for REAPER here)");
  if (!row.reason.empty() && row.outcome != FxOutcome::kSettings) report.print("  - %s", row.reason.c_str());
  report.print("\n");
}

void add_advice(TextBuilder& report) {
  report.print(
      "\n  WHAT REAPER NEEDS INSTALLED, AND WHAT IT DOES NOT\n"
      "    Nothing about Pro Tools has to be installed for this to work,\n"
      "    and neither do the AAX plug-ins. This read the session file.\n"
      "    REAPER is different: it cannot load an AAX, so every plug-in\n"
      "    listed above also has to exist on this machine as a VST, VST2\n"
      "    or VST3. Most makers ship that in the same installer, under\n"
      "    the same license, with the VST or VST3 option selected.\n"
      "\n    IF A PLUG-IN IS MISSING and you think it should be there,\n"
      "    check it in REAPER before assuming the conversion failed:\n"
      "      1. Click any insert slot in the project and search for that\n"
      "         plug-in by name.\n"
      "      2. NOT in the list? REAPER does not have it. Either install\n"
      "         the VST or VST3 build from the maker, or - if you know it\n"
      "         IS installed - have REAPER look again:\n"
      "         Options > Preferences > Plug-ins > VST > Re-scan\n"
      "         (\"Clear cache and re-scan\" if a plain one finds nothing).\n"
      "         The settings are already in this project either way, and\n"
      "         appear the moment REAPER can see the plug-in.\n"
      "      3. IS in the list, and it still did not come across? Then the\n"
      "         fault is in the conversion. Send THIS FILE to\n"
      "         %s and name the plug-in. Nothing else\n"
      "         is needed.\n"
      "\n    IF REAPER CRASHES OR HANGS opening the project, a plug-in is the\n"
      "    usual cause. Open it again with File > Open project and select\n"
      "    \"Open with FX offline (recovery mode)\" (or say Yes when REAPER\n"
      "    offers to load it with all FX offline), then bring the plug-ins\n"
      "    back online one at a time to find the one that fails.\n",
      kSupportAddress);
}

}  // namespace

void add_plugin_counts(TextBuilder& report, const std::map<std::string, int>& plugins) {
  for (const auto& [name, count] : plugins) report.print("    %-24s x%d\n", name.c_str(), count);
}

void add_plugin_rows(TextBuilder& report, const FxCounts& plugins) {
  if (plugins.rows.empty()) return;
  report.print("\nEVERY PLUG-IN, AND WHAT HAPPENED TO IT\n");
  add_totals(report, plugins);
  report.print(
      "\n  key:  [settings]  arrived with its Pro Tools settings\n"
      "        [defaults]  inserted, but Pro Tools stored nothing to carry\n"
      "        [dropped ]  not inserted; the line says why\n"
      "\n");

  const std::string* strip = nullptr;
  for (const FxReportRow& row : plugins.rows) {
    if (strip == nullptr || *strip != row.strip) report.print("  %s\n", row.strip.c_str());
    strip = &row.strip;
    add_plugin_row(report, row);
  }
}

void add_plugins(TextBuilder& report, const Told& told) {
  const FxCounts& plugins = told.mix.fx;
  report.print("\nPLUG-INS\n");
  const int instances = plugins.instances();
  report.print("  %d instance(s) found, %d written with their settings\n", instances,
               plugins.rows_of(FxOutcome::kSettings));
  add_plugin_counts(report, plugins.all);
  if (instances == 0) return;
  add_advice(report);
  if (told.plugins.cache.empty()) {
    report.print(
        "    This run could not check which of them you have: REAPER's\n"
        "    own plug-in list was not found on this computer. REAPER\n"
        "    writes that list when it scans plug-ins, so open REAPER\n"
        "    once, then check the session again and the missing ones\n"
        "    are named exactly.\n");
  }
}

}  // namespace frt

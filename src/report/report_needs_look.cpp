// The report on what needs a look: what did not come across whole, and what was little tested.
#include <map>

#include "base/text.h"
#include "report/name_list.h"
#include "report/report_sections.h"

namespace frt {
namespace {

// The parts of NEEDS A LOOK. Each gives 1 if there was something to say, else 0.

int add_aax_only(TextBuilder& report, const FxCounts& plugins) {
  if (plugins.aax_only.empty()) return 0;
  report.print(
      "  AAX ONLY - no VST/VST3 version of these exists, so no converter\n"
      "  can move them. Print or commit these tracks in Pro Tools:\n");
  int instances = 0, processing = 0;
  for (const auto& [name, plugin] : plugins.aax_only) {
    report.print("    %-24s x%d\n", plugin.display_name.c_str(), plugin.instances);
    instances += plugin.instances;
    processing += plugin.processing;
  }
  if (processing > 0) {
    report.print(
        "    %d of these processed audio, so that much of the mix\n"
        "    is not carried.%s\n",
        processing, instances > processing ? " The rest did not touch the sound." : "");
  } else {
    report.print("    None of these processed audio: the mix is unaffected.\n");
  }
  return 1;
}

int add_plugins_counted(TextBuilder& report, const std::string& heading, const std::map<std::string, int>& plugins) {
  if (plugins.empty()) return 0;
  report.print("%s", heading.c_str());
  add_plugin_counts(report, plugins);
  return 1;
}

int add_plugins_needed(TextBuilder& report, const char* heading, const std::map<std::string, std::string>& plugins) {
  if (plugins.empty()) return 0;
  report.print("%s", heading);
  for (const auto& [name, format] : plugins) report.print("    %-24s needs %s\n", name.c_str(), format.c_str());
  return 1;
}

// `heading` holds the number of names, "%d".
int add_names(TextBuilder& report, const char* heading, const NameVector& names) {
  if (names.empty()) return 0;
  report.print(heading, count_of(names));
  for (const std::string& name : names) report.print("    %s\n", name.c_str());
  return 1;
}

int add_count(TextBuilder& report, const char* line, int count) {
  if (count <= 0) return 0;
  report.print(line, count);
  return 1;
}

}  // namespace

int add_needs_look(TextBuilder& report, const Told& told) {
  const FxCounts& plugins = told.mix.fx;
  report.print("\nNEEDS A LOOK\n");
  int parts = add_aax_only(report, plugins);
  parts += add_plugins_counted(report,
                               format_text("  not recognized. An Avid stock plug-in is AAX only and cannot\n"
                                           "  be transferred by any tool; anything else we can add - send\n"
                                           "  this report to %s and say which one:\n",
                                           kSupportAddress),
                               plugins.unrecognized);
  parts +=
      add_plugins_counted(report, "  placed OFFLINE - named, settings not carried (reasons above):\n", plugins.offline);
  parts += add_plugins_counted(report, "  no transferable state stored by Pro Tools:\n", plugins.stateless);
  parts += add_plugins_needed(report,
                              "  installed in Pro Tools but NOT for REAPER on this machine\n"
                              "  (settings were written; install these and they load):\n",
                              plugins.not_installed);
  parts += add_plugins_needed(report,
                              "  NOT installed for REAPER on this machine, and LEFT OUT as asked\n"
                              "  (install these and convert again to keep them):\n",
                              plugins.left_out);
  parts += add_names(report, "  %d mixer strip(s) of an unrecognized width (pan not converted):\n", told.wide_strips);
  parts += add_names(report,
                     "  %d unlinked multi-mono instance(s) - only channel 1's settings\n"
                     "  were written; check these by hand:\n",
                     plugins.multi_mono);
  parts += add_count(report, "  %d sidechain key input(s) could not be resolved\n", told.mix.routing.keys.unresolved);
  parts += add_count(report, "  %d fade record(s) not understood\n", told.clips.fades.not_understood);
  parts += add_count(report, "  %d track(s) matched no strip row (appended at the end)\n", told.order.unmatched_tracks);
  parts += add_names(report, "  %d referenced audio file(s) not in \"Audio Files\" or beside it:\n",
                     told.media.missing_files);
  parts += add_names(report, "  %d audio file(s) differ in length from what the session says:\n",
                     told.media.differing_files);
  if (parts == 0) report.print("  nothing - everything in this session was carried across\n");
  return parts;
}

void add_picture_and_wide(TextBuilder& report, const Told& told) {
  const int wide = count_of(told.wide_strips), folded = told.folding.surround_folds;
  if (wide == 0 && folded == 0) return;  // a written video track is the third reason for this section
  report.print("\nPICTURE AND WIDE TRACKS\n");
  // Video.
  if (folded > 0) {
    report.print(
        "  %d surround track(s) folded from their Pro Tools legs into one\n"
        "  multichannel track each, the way a stereo pair is folded: one\n"
        "  track, one item, one insert chain, channels in the file's\n"
        "  order. Level, mute and their automation are carried.\n",
        folded);
  }
  if (const int auxes = told.mix.tracks.surround_aux_widths; auxes > 0) {
    report.print(
        "  %d aux(es) taking a surround bus arrive as wide as that bus, and\n"
        "  every track feeding it sends all of its channels.\n",
        auxes);
  }
  // Surround panners.
  if (wide > 0) {
    report.print(
        "  %d mixer strip(s) are wider than stereo. Level, mute and their\n"
        "  automation are right. The panner of a WIDE strip itself is not\n"
        "  converted (only a mono or stereo source panned into a surround\n"
        "  bus is, above), so if one was positioned, set it by hand in\n"
        "  REAPER. They are listed under NEEDS A LOOK above.\n",
        wide);
    if (const int strips = told.mix.tracks.envelopes.surround_pan_strips; strips > 0) {
      report.print(
          "    %d of them %s PAN automation that is NOT written: which\n"
          "    panner control each lane moves is not named in the session\n"
          "    yet. Volume, trim and mute automation ARE.\n",
          strips, strips == 1 ? "carries" : "carry");
    }
  }
  report.print(
      "    A surround session is the one thing this converter has had\n"
      "    least of to test on. If yours matters, send this report to\n"
      "    %s and say what is wrong with it.\n",
      kSupportAddress);
}

}  // namespace frt

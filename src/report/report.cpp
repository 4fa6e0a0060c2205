#include "report/report.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "base/text.h"
#include "report/notes.h"
#include "run/text_output.h"

namespace frt {
namespace {

int count_of(const std::vector<std::string>& names) { return static_cast<int>(names.size()); }

int rows_of(const PluginTables& plugins, PluginOutcome outcome) {
  return static_cast<int>(std::count_if(plugins.rows.begin(), plugins.rows.end(),
                                        [&](const PluginRow& row) { return row.outcome == outcome; }));
}

int instances_of(const PluginTables& plugins) {
  int instances = 0;
  for (const auto& [name, count] : plugins.all) instances += count;
  return instances;
}

void print_counted(const std::map<std::string, int>& plugins) {
  for (const auto& [name, count] : plugins) print_report("    %-24s x%d\n", name.c_str(), count);
}

void print_needed(const std::map<std::string, std::string>& plugins) {
  for (const auto& [name, format] : plugins) print_report("    %-24s needs %s\n", name.c_str(), format.c_str());
}

void print_lines(const std::vector<std::string>& names) {
  for (const std::string& name : names) print_report("    %s\n", name.c_str());
}

void print_head(const ReportInput& in) {
  print_report(
      "kestrel conversion report\n"
      "=========================\n"
      "\n");
  print_report("made with   kestrel %s\n", app_version_text(kVersion).c_str());
  print_report("conversion  Pro Tools session (.ptx) to REAPER project (.rpp)\n");
  print_report("converter   build %s\n", kBuild);
  if (!in.problem.kind.empty()) {
    print_report("problem     %s: %s\n", in.problem.kind.c_str(), in.problem.detail.c_str());
  }
  print_report("\n");
  print_report("source   %s\n", in.options.session_path.c_str());
  if (in.options.check_only) {
    print_report("output   (not written: %s)\n", "this was a check");
  } else {
    print_report("output   %s\n", in.output_path.c_str());
  }

  const RecordingFormat& recording = in.settings.recording;
  const TimecodeSettings& timecode = in.settings.timecode;
  const std::string long_label(timecode.long_label);
  // Everything after Pro Tools 12 still says 12.
  const bool or_later = in.session_version == 12 && in.version_major != 12;
  const std::string depth =
      recording.depth > 0 ? format_text(", %d-bit%s", recording.depth, recording.is_float ? " float" : "") : "";
  const std::string rate = long_label.empty() ? "" : format_text(", %s", long_label.c_str());
  print_report("session  Pro Tools %d%s, %lld Hz%s%s, %g BPM%s\n", in.session_version, or_later ? " or later" : "",
               static_cast<long long>(in.session_rate), depth.c_str(), rate.c_str(), in.tempo.session_tempo,
               in.tempo.events.size() >= 2 ? " (tempo map)" : "");
  if (recording.file_type == 4) {
    print_report("audio    AIFF files\n");
  } else if (recording.file_type == 3) {
    print_report("audio    WAV files\n");
  }
  if (!long_label.empty()) {
    print_report("start    %s\n", timecode_text(timecode.start_frames,
                                                static_cast<std::uint32_t>(timecode.timemode_rate), timecode.drop_frame)
                                      .c_str());
    const std::string ruler(timecode.ruler_label);
    if (!ruler.empty()) {
      print_report(
          "         (REAPER has no %s drop-frame ruler: the project's ruler\n"
          "         runs at %s non-drop)\n",
          ruler.c_str(), ruler.c_str());
    }
  }
  print_report("\n");
}

void print_overview(const ReportInput& in) {
  const RunCounters& counters = in.counters;
  const ConversionOptions& options = in.options;
  const auto midi =
      std::count_if(in.tracks.begin(), in.tracks.end(), [](const OutputTrack& track) { return track.is_midi; });
  const int tracks = static_cast<int>(in.tracks.size()), instruments = static_cast<int>(midi);
  print_report("%d tracks (%d audio/aux, %d instrument), %d clips, %d MIDI notes\n", tracks, tracks - instruments,
               instruments, counters.clips_written, counters.midi_notes);
  if (counters.return_tracks > 0) {
    print_report("plus %d send-return bus track(s)\n", counters.return_tracks);
  }
  if (counters.frozen_tracks_delivered > 0) {
    print_report(
        "%d frozen track(s) delivered FROZEN (--keep-frozen); Track > Unfreeze\n"
        "in REAPER restores the source and plug-ins\n",
        counters.frozen_tracks_delivered);
  }
  if (counters.soloed_and_muted > 0) {
    print_report(
        "%d track(s) soloed AND muted in Pro Tools arrive muted with their solo off\n"
        "(REAPER would play a soloed track through its mute)%s\n",
        counters.soloed_and_muted,
        counters.solo_keeper ? "; an empty soloed track,\n"
                               "\"Pro Tools solo (the soloed tracks were muted)\", keeps the rest silent"
                             : "");
  }
  if (counters.frozen_tracks_delivered == 0 && counters.freeze_records > 0) {
    print_report(
        "frozen track(s) converted UNFROZEN - original audio with the\n"
        "plug-ins live and editable (%d internal freeze record(s) left out)\n",
        counters.freeze_records);
  }
  // Clip Effects.
  if (options.keep_inaudible_midi) {
    print_report(
        "\"Play MIDI notes Pro Tools silences\" is on: %d MIDI event(s) Pro\n"
        "Tools does not play (outside a clip's boundary) written unmuted\n",
        counters.unmuted_midi_events);
  }
  if (options.truncate_midi_to_clip) {
    print_report(
        "\"Cut MIDI notes at clip edge\" is on: %d note(s) Pro Tools plays past\n"
        "a clip edge are cut there\n",
        counters.notes_past_clip_edges);
  }
  if (options.no_stand_ins) {
    const bool trims_lost = counters.one_sided_trims_lost > 0;
    if (counters.stand_ins_left_out <= 0 && !trims_lost) {
      print_report(
          "\"Replace Avid plug-ins with REAPER's\" is off; no Avid plug-in in this\n"
          "session had a REAPER stand-in\n");
    } else {
      print_report(
          "\"Replace Avid plug-ins with REAPER's\" is off: %d Avid plug-in(s) left\n"
          "as named, switched-off slots instead of REAPER's own%s\n",
          counters.stand_ins_left_out,
          trims_lost ? ";\n"
                       "one-sided Trim polarity not carried"
                     : "");
    }
  }
  // Stand-ins.
  if (options.no_track_colors) {
    print_report("\"Leave out track colors\" is on: tracks in REAPER's default color\n");
  }
  if (options.no_clip_colors) {
    print_report(
        "\"Leave out clip colors\" is on: %d clip(s) that would carry a color\n"
        "are in their track's color instead\n",
        counters.uncolored_by_option);
  }
  // Plug-in builds chosen: --prefer-vst2, Kontakt.
  if (!counters.master_name.empty()) {
    print_report("master fader \"%s\" carried onto the REAPER master\n", counters.master_name.c_str());
  }
}

void print_track_list(const ReportInput& in) {
  print_report("\nTRACK LIST (Pro Tools edit-window order)\n");
  print_report("  %-3s %-34s %5s %5s %3s\n", "#", "name", "clips", "notes", "fx");
  int number = 0;
  for (const OutputTrack& track : in.tracks) {
    std::size_t clips = track.items.size();
    for (const Lane& lane : track.lanes) clips += lane.items.size();
    const int notes = 0;  // the notes of the track's MIDI items, which no pass makes yet
    const auto inserts = in.plugins.inserts.find(track.pt_name.empty() ? track.name : track.pt_name);
    const int fx = inserts == in.plugins.inserts.end() ? 0 : inserts->second;
    const bool empty = clips == 0 && notes == 0 && fx == 0;
    print_report("  %-3d %-34s %5d %5d %3d%s\n", ++number, track.name.substr(0, 34).c_str(), static_cast<int>(clips),
                 notes, fx, empty ? "   (empty)" : "");
  }
}

void print_plugin_rows(const PluginTables& plugins) {
  if (plugins.rows.empty()) return;
  print_report("\nEVERY PLUG-IN, AND WHAT HAPPENED TO IT\n");
  const int rows = static_cast<int>(plugins.rows.size());
  const int settings = rows_of(plugins, PluginOutcome::kSettings);
  const int defaults = rows_of(plugins, PluginOutcome::kDefaults);
  print_report(
      "  %d instance(s): %d arrived with Pro Tools settings, %d inserted at\n"
      "  the plug-in's own defaults, %d could not be inserted.\n",
      rows, settings, defaults, rows - settings - defaults);

  const auto is_marked = [](const PluginRow& row) {
    return row.not_installed && row.outcome != PluginOutcome::kNotInstalled;
  };
  const auto marked = std::count_if(plugins.rows.begin(), plugins.rows.end(), is_marked);
  if (marked == 1) {
    print_report(
        "  1 is marked (not installed): its settings WERE written, and it\n"
        "  loads as soon as that plug-in is installed for REAPER.\n");
  } else if (marked > 1) {
    print_report(
        "  %d are marked (not installed): the settings WERE written, and\n"
        "  they load as soon as those plug-ins are installed for REAPER.\n",
        static_cast<int>(marked));
  }
  const int left_out = rows_of(plugins, PluginOutcome::kNotInstalled);
  if (left_out == 1) {
    print_report("  1 is not installed for REAPER here and was left out, as asked.\n");
  } else if (left_out > 1) {
    print_report("  %d are not installed for REAPER here and were left out, as asked.\n", left_out);
  }
  print_report(
      "\n  key:  [settings]  arrived with its Pro Tools settings\n"
      "        [defaults]  inserted, but Pro Tools stored nothing to carry\n"
      "        [dropped ]  not inserted; the line says why\n"
      "\n");

  const std::string* track = nullptr;
  for (const PluginRow& row : plugins.rows) {
    if (track == nullptr || *track != row.track) print_report("  %s\n", row.track.c_str());
    track = &row.track;
    const char* word = "[dropped ]";
    if (row.outcome == PluginOutcome::kSettings) word = "[settings]";
    if (row.outcome == PluginOutcome::kDefaults) word = "[defaults]";
    print_report("    %2d %s %-26s", row.slot, word, row.name.substr(0, 26).c_str());
    if (row.automation_points > 0) print_report("  %d automation point(s)", row.automation_points);
    if (is_marked(row)) print_report("  (not installed for REAPER here)");
    if (!row.reason.empty() && row.outcome != PluginOutcome::kSettings) print_report("  - %s", row.reason.c_str());
    print_report("\n");
  }
}

void print_plugins(const PluginTables& plugins) {
  print_report("\nPLUG-INS\n");
  const int instances = instances_of(plugins);
  print_report("  %d instance(s) found, %d written with their settings\n", instances,
               rows_of(plugins, PluginOutcome::kSettings));
  print_counted(plugins.all);
  if (instances == 0) return;
  print_report(
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
      "         "
      "%s"
      " and name the plug-in. Nothing else\n"
      "         is needed.\n"
      "\n    IF REAPER CRASHES OR HANGS opening the project, a plug-in is the\n"
      "    usual cause. Open it again with File > Open project and select\n"
      "    \"Open with FX offline (recovery mode)\" (or say Yes when REAPER\n"
      "    offers to load it with all FX offline), then bring the plug-ins\n"
      "    back online one at a time to find the one that fails.\n",
      kSupportAddress);
  if (!plugins.reaper_list_found) {
    print_report(
        "    This run could not check which of them you have: REAPER's\n"
        "    own plug-in list was not found on this computer. REAPER\n"
        "    writes that list when it scans plug-ins, so open REAPER\n"
        "    once, then check the session again and the missing ones\n"
        "    are named exactly.\n");
  }
}

void print_aax_only(const PluginTables& plugins) {
  print_report(
      "  AAX ONLY - no VST/VST3 version of these exists, so no converter\n"
      "  can move them. Print or commit these tracks in Pro Tools:\n");
  int instances = 0, processing = 0;
  for (const auto& [name, plugin] : plugins.aax_only) {
    print_report("    %-24s x%d\n", plugin.display_name.c_str(), plugin.instances);
    instances += plugin.instances;
    processing += plugin.processing;
  }
  if (processing > 0) {
    print_report(
        "    %d of these processed audio, so that much of the mix\n"
        "    is not carried.%s\n",
        processing, instances > processing ? " The rest did not touch the sound." : "");
  } else {
    print_report("    None of these processed audio: the mix is unaffected.\n");
  }
}

// Gives the number of sections printed.
int print_needs_look(const ReportInput& in) {
  const RunCounters& counters = in.counters;
  const PluginTables& plugins = in.plugins;
  int sections = 0;
  print_report("\nNEEDS A LOOK\n");
  if (!plugins.aax_only.empty()) {
    ++sections;
    print_aax_only(plugins);
  }
  if (!plugins.unrecognized.empty()) {
    ++sections;
    print_report(
        "  not recognized. An Avid stock plug-in is AAX only and cannot\n"
        "  be transferred by any tool; anything else we can add - send\n"
        "  this report to "
        "%s"
        " and say which one:\n",
        kSupportAddress);
    print_counted(plugins.unrecognized);
  }
  if (!plugins.offline.empty()) {
    ++sections;
    print_report("  placed OFFLINE - named, settings not carried (reasons above):\n");
    print_counted(plugins.offline);
  }
  if (!plugins.stateless.empty()) {
    ++sections;
    print_report("  no transferable state stored by Pro Tools:\n");
    print_counted(plugins.stateless);
  }
  if (!plugins.not_installed.empty()) {
    ++sections;
    print_report(
        "  installed in Pro Tools but NOT for REAPER on this machine\n"
        "  (settings were written; install these and they load):\n");
    print_needed(plugins.not_installed);
  }
  if (!plugins.left_out.empty()) {
    ++sections;
    print_report(
        "  NOT installed for REAPER on this machine, and LEFT OUT as asked\n"
        "  (install these and convert again to keep them):\n");
    print_needed(plugins.left_out);
  }
  if (!counters.wide_strips.empty()) {
    ++sections;
    print_report("  %d mixer strip(s) of an unrecognized width (pan not converted):\n", count_of(counters.wide_strips));
    print_lines(counters.wide_strips);
  }
  if (!plugins.multi_mono.empty()) {
    ++sections;
    print_report(
        "  %d unlinked multi-mono instance(s) - only channel 1's settings\n"
        "  were written; check these by hand:\n",
        count_of(plugins.multi_mono));
    print_lines(plugins.multi_mono);
  }
  if (plugins.unresolved_keys > 0) {
    ++sections;
    print_report("  %d sidechain key input(s) could not be resolved\n", plugins.unresolved_keys);
  }
  if (counters.fades_not_understood > 0) {
    ++sections;
    print_report("  %d fade record(s) not understood\n", counters.fades_not_understood);
  }
  if (counters.unmatched_tracks > 0) {
    ++sections;
    print_report("  %d track(s) matched no strip row (appended at the end)\n", counters.unmatched_tracks);
  }
  if (!counters.missing_files.empty()) {
    ++sections;
    print_report("  %d referenced audio file(s) not in \"Audio Files\" or beside it:\n",
                 count_of(counters.missing_files));
    print_lines(counters.missing_files);
  }
  if (sections == 0) {
    print_report("  nothing - everything in this session was carried across\n");
  }
  return sections;
}

void print_picture_and_wide(const RunCounters& counters) {
  const int wide = count_of(counters.wide_strips), folded = counters.surround_folds;
  if (wide == 0 && folded == 0) return;  // a written video track is the third reason for this section
  print_report("\nPICTURE AND WIDE TRACKS\n");
  // Video.
  if (folded > 0) {
    print_report(
        "  %d surround track(s) folded from their Pro Tools legs into one\n"
        "  multichannel track each, the way a stereo pair is folded: one\n"
        "  track, one item, one insert chain, channels in the file's\n"
        "  order. Level, mute and their automation are carried.\n",
        folded);
  }
  if (counters.surround_aux_widths > 0) {
    print_report(
        "  %d aux(es) taking a surround bus arrive as wide as that bus, and\n"
        "  every track feeding it sends all of its channels.\n",
        counters.surround_aux_widths);
  }
  // Surround panners.
  if (wide > 0) {
    print_report(
        "  %d mixer strip(s) are wider than stereo. Level, mute and their\n"
        "  automation are right. The panner of a WIDE strip itself is not\n"
        "  converted (only a mono or stereo source panned into a surround\n"
        "  bus is, above), so if one was positioned, set it by hand in\n"
        "  REAPER. They are listed under NEEDS A LOOK above.\n",
        wide);
    if (const int strips = counters.surround_pan_strips; strips > 0) {
      print_report(
          "    %d of them %s PAN automation that is NOT written: which\n"
          "    panner control each lane moves is not named in the session\n"
          "    yet. Volume, trim and mute automation ARE.\n",
          strips, strips == 1 ? "carries" : "carry");
    }
  }
  print_report(
      "    A surround session is the one thing this converter has had\n"
      "    least of to test on. If yours matters, send this report to\n"
      "    "
      "%s"
      " and say what is wrong with it.\n",
      kSupportAddress);
}

void print_privacy(bool usage_shared) {
  if (usage_shared) {
    print_report(
        "\nPRIVACY\n"
        "  The converter that wrote this report has no network code. It\n"
        "  wrote an anonymous summary of this conversion (counts, and\n"
        "  which plug-ins converted how), which kestrel sends because\n"
        "  usage summaries are on in Help > App settings\n"
        "  ("
        "%s"
        "). The summary holds no track, clip or\n"
        "  file names, no paths and no audio. Nothing else about this\n"
        "  session was transmitted from this computer.\n"
        "\n",
        kPrivacyPage);
  } else {
    print_report(
        "\nPRIVACY\n"
        "  This conversion sent nothing from this computer: the converter\n"
        "  that wrote this report has no network code, and there was no\n"
        "  upload, telemetry or usage reporting.\n"
        "\n");
  }
  print_report(
      "  This report is your property. It names your tracks, your\n"
      "  plug-ins and the paths to your files. No one receives it\n"
      "  unless you send it. Review its contents before providing it\n"
      "  to any third party.\n");
}

// Lets print_report write to a text for as long as it lives, so that no later print can reach it.
class ReportTarget {
 public:
  explicit ReportTarget(std::string& text) { report_target = &text; }
  ~ReportTarget() { report_target = nullptr; }
  ReportTarget(const ReportTarget&) = delete;
  ReportTarget& operator=(const ReportTarget&) = delete;
};

}  // namespace

ReportOutcome build_report(const ReportInput& in) {
  ReportOutcome outcome;
  const ReportTarget target(outcome.text);
  print_head(in);
  print_overview(in);
  print_track_list(in);
  print_plugin_rows(in.plugins);
  print_plugins(in.plugins);
  outcome.needs_look = print_needs_look(in);
  print_picture_and_wide(in.counters);
  print_privacy(in.options.usage_shared);
  outcome.summary_line = format_text("summary tracks=%d clips=%d notes=%d fx=%d written=%d needs_look=%d%s",
                                     in.counters.tracks_written, in.counters.clips_written, in.counters.midi_notes,
                                     instances_of(in.plugins), rows_of(in.plugins, PluginOutcome::kSettings),
                                     outcome.needs_look, in.problem.kind.empty() ? "" : " problem=1");
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

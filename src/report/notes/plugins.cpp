// Plug-ins: what arrived, what could not, and what REAPER needs to load them.
#include <map>
#include <string>

#include "report/notes/subjects.h"
#include "report/plugin_builds.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

using CountByName = std::map<std::string, int>;

int sum_of(const CountByName& counts) {
  int sum = 0;
  for (const auto& [name, count] : counts) sum += count;
  return sum;
}

// ---- automation of controls ----

// " Name (2), Other (1)"
std::string lanes_by_plugin(const CountByName& lanes) {
  std::string list;
  for (const auto& [name, count] : lanes)
    list += name_in_list(name + " (" + std::to_string(count) + ")", NameList::kCommas, list.empty());
  return list;
}

int lanes_switched_off(const Told& told) { return sum_of(told.mix.fx.parameters.switched_off); }
int lanes_on_stand_ins(const Told& told) { return sum_of(told.mix.fx.parameters.on_stand_ins); }
int lanes_without_settings(const Told& told) { return sum_of(told.mix.fx.parameters.no_settings); }

constexpr Note kParameterAutomation[] = {
    {in<&ParameterCounts::points>, "  %d plug-in parameter automation points\n"},
    {in<&ParameterCounts::by_number>,
     "      %d automated control(s) placed by the parameter number the\n"
     "      plug-in itself gave Pro Tools\n"},
    {in<&ParameterCounts::by_name>,
     "      %d automated control(s) placed by matching their name in the\n"
     "      plug-in's own parameter list\n"},
    {lanes_switched_off,
     "  %d automation lane(s) written SWITCHED OFF, titled \"ASSIGN\": which\n"
     "      knob each one drives is not verified for these plug-ins. Each sits\n"
     "      on its most likely knob and moves nothing until you check it: open\n"
     "      the lane, and if the knob it shows is the one Pro Tools automated\n"
     "      (the lane title names it), switch the lane on; if not, move its\n"
     "      points to the right knob. Until then each control stays at the\n"
     "      value the session saved:%s\n",
     [](const Told& told) { return lanes_by_plugin(told.mix.fx.parameters.switched_off); }},
    {lanes_without_settings,
     "  %d automation lane(s) NOT carried on plug-ins that arrive at their\n"
     "      defaults (their settings did not transfer, so neither did the\n"
     "      automation moving them):%s\n",
     [](const Told& told) { return lanes_by_plugin(told.mix.fx.parameters.no_settings); }},
    {lanes_on_stand_ins,
     "  %d automation lane(s) NOT carried on Avid plug-ins written as REAPER's\n"
     "      own stand-ins: each stand-in holds the value the session saved:%s\n",
     [](const Told& told) { return lanes_by_plugin(told.mix.fx.parameters.on_stand_ins); }},
    {in<&ParameterCounts::bypass_lanes>,
     "  %d plug-in bypass automation lane(s) NOT carried -- the plug-in stays\n"
     "      in the bypass state the session saved\n"},
};

// ---- the state in which plug-ins arrive ----

constexpr Note kInsertStates[] = {
    {in<&FxCounts::bypassed>, "  %d plug-in(s) carried across bypassed\n"},
    {in<&FxCounts::master_slots>, "  %d insert(s) on the Master Fader carried\n"},
    {in<&FxCounts::inactive>,
     "  %d plug-in(s) were INACTIVE in Pro Tools, written offline\n"
     "    (not instantiated, exactly as Pro Tools had them)\n"},
    {in<&FxCounts::offline_written>, "  %d of them written OFFLINE - no DSP, no RAM, one click to restore\n"},
};

constexpr Note kMidiTriggers[] = {
    {in<&FxCounts::midi_triggers_off>, NameList::kLines,
     "  %d plug-in(s) on MIDI tracks had MIDI triggering switched off:%s\n"
     "      Pro Tools leaves this on but routes nothing to it, so it does\n"
     "      nothing there. REAPER feeds a track's MIDI to every plug-in in\n"
     "      the chain, where a held note reads as a 0 dBFS side-chain signal\n"
     "      and pins the compressor at full gain reduction. Switching it off\n"
     "      reproduces what the session sounds like in Pro Tools. Plug-ins on\n"
     "      audio tracks are left exactly as saved; --keep-plugin-midi keeps\n"
     "      the literal value everywhere.\n"},
};

// ---- builds chosen ----

bool kontakt_is_measured(const Told& told) { return told.plugins.kontakt_measured; }
std::string kontakt(const Told& told) { return kontakt_name(told.plugins); }

constexpr Note kPluginBuilds[] = {
    {[](const Told& told) { return inserts_kept_on_vst3(told.plugins); },
     "  --prefer-vst2: %d plug-in(s) kept on their VST3 build so their settings\n"
     "      carry: %s.\n"
     "      Their VST2 builds keep settings in a form this version cannot\n"
     "      write yet.\n",
     [](const Told& told) { return plugins_kept_on_vst3(told.plugins); }},
    {in<&Plugins::kontakt_instances>, kontakt_is_measured,
     "  Kontakt: %d instance(s) written for %s, the Kontakt installed here.\n"
     "      Pro Tools saved them with Kontakt 6; %s plays those settings\n"
     "      unchanged.\n",
     kontakt, kontakt},
    {in<&Plugins::kontakt_instances>, unless(kontakt_is_measured),
     "  Kontakt: %d instance(s) written for %s, the Kontakt installed here.\n"
     "      Pro Tools saved them with Kontakt 6, and they are written the way\n"
     "      Kontakt 7 takes them. %s itself is untested, so check that\n"
     "      each instrument loads.\n",
     kontakt, kontakt},
};

constexpr Note kClapBuilds[] = {
    {in<&Plugins::clap_overrides>, "  %d plug-in(s) written as their CLAP build (--prefer-clap), settings carried\n"},
    {in<&Plugins::clap_refusals>, NameList::kCommas,
     "  %d plug-in(s) kept on their VST build under --prefer-clap: how the CLAP\n"
     "      build stores their settings is not measured yet, and the VST build\n"
     "      carries them. One .RfxChain export of each from REAPER would\n"
     "      measure it:%s\n"},
};

// ---- hardware ----

void print_hardware_inserts(const Told& told) {
  const std::vector<HardwareInsert>& inserts = told.session.mixer.inserts.hardware;
  if (inserts.empty()) return;
  print_text(
      "  %d hardware I/O insert(s) found. These route through a physical\n"
      "      interface path on your rig, so no converter can carry them:\n",
      static_cast<int>(inserts.size()));
  for (const HardwareInsert& insert : inserts)
    print_text("        %-24s %s\n", std::string(insert.slot).c_str(), std::string(insert.track).c_str());
  print_text(
      "      Whatever outboard sat on those inserts is NOT in the .rpp.\n"
      "      If it mattered to the sound, print those tracks before converting.\n");
}

constexpr Note kHardwareInserts[] = {
    {print_hardware_inserts},
};

// ---- what became of them all ----

bool has_plugins(const Told& told) { return told.mix.fx.instances() > 0; }

void print_counts(const CountByName& counts) {
  for (const auto& [name, count] : counts) print_text("      %-24s x%d\n", name.c_str(), count);
}

void print_needs(const std::map<std::string, std::string>& formats) {
  for (const auto& [name, format] : formats) print_text("      %-24s needs %s\n", name.c_str(), format.c_str());
}

void print_aax_only(const Told& told) {
  int instances = 0, processing = 0;
  for (const auto& [signature, plugin] : told.mix.fx.aax_only) {
    instances += plugin.instances;
    processing += plugin.processing;
  }
  if (instances == 0) return;
  print_text("    %d cannot transfer - AAX only, no VST/VST3 version exists:\n", instances);
  for (const auto& [signature, plugin] : told.mix.fx.aax_only)
    print_text("      %-24s x%d\n", plugin.display_name.c_str(), plugin.instances);
  if (processing > 0) {
    print_text(
        "      %d of these processed audio, so that much of the mix is\n"
        "      not carried. The rest did not touch the sound.\n",
        processing);
  } else {
    print_text("      None of these processed audio: the mix is unaffected.\n");
  }
  print_text(
      "      Avid ships these with Pro Tools in AAX form only. No converter\n"
      "      can move them. If you still have Pro Tools, print or commit\n"
      "      those tracks to audio before converting.\n");
}

void print_unrecognized(const Told& told) {
  const CountByName& unrecognized = told.mix.fx.unrecognized;
  if (unrecognized.empty()) return;
  print_text("    %d not recognized:\n", sum_of(unrecognized));
  const auto& names = told.session.mixer.inserts.plugin_names;
  for (const auto& [key, count] : unrecognized) {
    const auto name = names.find(key);
    if (name == names.end()) {
      print_text("      %-24s x%d\n", key.c_str(), count);
    } else {
      print_text("      %-24s x%d   %s\n", key.c_str(), count, std::string(name->second).c_str());
    }
  }
  print_text(
      "      Avid's own stock processors exist only as AAX and no tool can\n"
      "      move them. The AIR instruments bundled with Pro Tools are also\n"
      "      sold as VST: if one of these is installed for REAPER, or it is\n"
      "      anything else, send this report to %s\n"
      "      and say which one.\n",
      kSupportAddress);
}

void print_stateless(const Told& told) {
  const CountByName& stateless = told.mix.fx.stateless;
  if (stateless.empty()) return;
  print_text("    %d skipped - Pro Tools stored no transferable state:\n", sum_of(stateless));
  print_counts(stateless);
}

void print_offline(const Told& told) {
  const CountByName& offline = told.mix.fx.offline;
  if (offline.empty()) return;
  print_text(
      "    %d placed OFFLINE - the plug-in is named but its\n"
      "      Pro Tools settings were not carried (the report\n"
      "      says why for each). Switch one online in REAPER\n"
      "      and it loads at its own defaults:\n",
      sum_of(offline));
  print_counts(offline);
  if (const int markers = static_cast<int>(told.plugins.marker_only.size()); markers > 0) {
    print_text(
        "      (%d of these were named from a .vst3 entry, whose class\n"
        "       id the cache does not store - they may not resolve)\n",
        markers);
  }
}

void print_not_installed(const Told& told) {
  const auto& missing = told.mix.fx.not_installed;
  if (missing.empty()) return;
  print_text("    %d written but NOT INSTALLED for REAPER on this machine:\n", static_cast<int>(missing.size()));
  print_needs(missing);
  print_text(
      "      Their settings ARE in the project. Install the VST3 (or VST)\n"
      "      build of each and REAPER will pick them up on next load.\n"
      "      This is almost always the SAME PRODUCT YOU ALREADY OWN --\n"
      "      most Pro Tools users installed the AAX and nothing else.\n"
      "      Re-run the maker's installer and select VST3.\n");
}

void print_left_out(const Told& told) {
  const auto& missing = told.mix.fx.left_out;
  if (missing.empty()) return;
  print_text("    %d NOT INSTALLED for REAPER on this machine and LEFT OUT (as asked):\n",
             static_cast<int>(missing.size()));
  print_needs(missing);
}

void print_multi_mono(const Told& told) {
  constexpr std::size_t kMostNames = 8;
  const NameVector& names = told.mix.fx.multi_mono;
  if (names.empty()) return;
  print_text(
      "  WARNING: %d unlinked MULTI-MONO instance(s). Pro Tools stores a\n"
      "      separate set of settings per channel and this tool writes the\n"
      "      FIRST only, so the second channel's settings are lost. Check\n"
      "      these by hand:\n",
      count_of(names));
  print_first_names(names, kMostNames);
}

constexpr Note kPlugins[] = {
    {in<&FxCounts::instances>, "  %d plug-in instances found, %d written with their settings\n",
     [](const Told& told) { return told.mix.fx.rows_of(FxOutcome::kSettings); }},
    {print_aax_only},
    {in<&FxCounts::aax_slots>,
     "      %d empty slot(s) were left in place, named and BYPASSED, so\n"
     "      the chain order survives and you can see exactly where each\n"
     "      one sat. REAPER shows them red because there is no such\n"
     "      plug-in to load; drop a replacement on the slot, or delete\n"
     "      it. --no-aax-slots leaves them out.\n"},
    {print_unrecognized},
    {print_stateless},
    {print_offline},
    {in<&FxCounts::bypassed_left_out>, "    %d left out - bypassed or inactive in Pro Tools (--skip-bypassed-fx)\n"},
    {print_not_installed},
    {print_left_out},
    {has_plugins,
     "    WHAT REAPER NEEDS INSTALLED, AND WHAT IT DOES NOT:\n"
     "      Nothing about Pro Tools has to be installed for this to work,\n"
     "      and neither do the AAX plug-ins. This read the session file.\n"
     "      REAPER is different: it cannot load an AAX, so every plug-in\n"
     "      above also has to exist on this machine as a VST, VST2 or VST3.\n"
     "      Most makers ship that in the same installer, under the same\n"
     "      license, with the VST or VST3 option selected.\n"
     "\n"
     "      IF A PLUG-IN IS MISSING and you think it should be there,\n"
     "      check it in REAPER before assuming the conversion failed:\n"
     "        1. Click any insert slot in the project and search for that\n"
     "           plug-in by name.\n"
     "        2. NOT in the list? REAPER does not have it. Either install\n"
     "           the VST or VST3 build from the maker, or -- if you know\n"
     "           it IS installed -- have REAPER look again:\n"
     "           Options > Preferences > Plug-ins > VST > Re-scan\n"
     "           (\"Clear cache and re-scan\" if a plain one finds nothing).\n"
     "           The settings are already in this project either way, and\n"
     "           appear the moment REAPER can see the plug-in.\n"
     "        3. IS in the list, and it still did not come across? Then the\n"
     "           fault is in the conversion. Send the report .txt written\n"
     "           beside the .rpp -- add --report if it was not used --\n"
     "           to %s and name the plug-in. Nothing\n"
     "           else is needed.\n"
     "\n"
     "      IF REAPER CRASHES OR HANGS opening the project, a plug-in is the\n"
     "      usual cause. Open it again with File > Open project and select\n"
     "      \"Open with FX offline (recovery mode)\" (or say Yes when REAPER\n"
     "      offers to load it with all FX offline), then bring the plug-ins\n"
     "      back online one at a time to find the one that fails.\n",
     kSupportAddress},
    {print_multi_mono},
};

}  // namespace

NoteGroup insert_states() { return kInsertStates; }
NoteGroup midi_triggers() { return kMidiTriggers; }
NoteGroup parameter_automation() { return kParameterAutomation; }
NoteGroup plugin_builds() { return kPluginBuilds; }
NoteGroup clap_builds() { return kClapBuilds; }
NoteGroup hardware_inserts() { return kHardwareInserts; }
NoteGroup plugins() { return kPlugins; }

}  // namespace frt::notes

// The report down to its track list: what was converted, and how much of it there is.
#include <algorithm>
#include <cstddef>

#include "base/text.h"
#include "report/plugin_builds.h"
#include "report/report.h"
#include "report/report_sections.h"
#include "report/timecode_text.h"

namespace frt {
namespace {

constexpr int kVersionOf12 = 12;    // the version byte that everything after Pro Tools 12 still has
constexpr int kWav = 3, kAiff = 4;  // RecordingFormat::file_type

// Pro Tools version, rate, depth and tempo in one line, and what the session's files and timecode are.
void add_session(TextBuilder& report, const Told& told) {
  const Session& session = told.session;
  const RecordingFormat& recording = session.headers.settings.recording;
  const TimecodeSettings& timecode = session.headers.settings.timecode;
  const TempoMap& tempo = session.clock.tempo;
  const std::string long_label(timecode.long_label);
  const bool or_later = session.version == kVersionOf12 && session.saved_by.version_major != kVersionOf12;
  const std::string depth =
      recording.depth > 0 ? format_text(", %d-bit%s", recording.depth, recording.is_float ? " float" : "") : "";
  const std::string rate = long_label.empty() ? "" : format_text(", %s", long_label.c_str());
  report.print("session  Pro Tools %d%s, %lld Hz%s%s, %g BPM%s\n", session.version, or_later ? " or later" : "",
               static_cast<long long>(session.rate), depth.c_str(), rate.c_str(), tempo.session_tempo,
               tempo.events.size() >= 2 ? " (tempo map)" : "");
  if (recording.file_type == kAiff) {
    report.print("audio    AIFF files\n");
  } else if (recording.file_type == kWav) {
    report.print("audio    WAV files\n");
  }
  if (long_label.empty()) return;
  report.print("start    %s\n", session_start_text(timecode).c_str());
  if (const std::string ruler(timecode.ruler_label); !ruler.empty()) {
    report.print(
        "         (REAPER has no %s drop-frame ruler: the project's ruler\n"
        "         runs at %s non-drop)\n",
        ruler.c_str(), ruler.c_str());
  }
}

// What was switched on or off, and what that did.
void add_switches(TextBuilder& report, const Told& told) {
  const ConversionOptions& options = told.options;
  if (options.keep_inaudible_midi) {
    report.print(
        "\"Play MIDI notes Pro Tools silences\" is on: %d MIDI event(s) Pro\n"
        "Tools does not play (outside a clip's boundary) written unmuted\n",
        told.midi.kept_unmuted);
  }
  if (options.truncate_midi_to_clip) {
    report.print(
        "\"Cut MIDI notes at clip edge\" is on: %d note(s) Pro Tools plays past\n"
        "a clip edge are cut there\n",
        told.midi.notes_past_edges);
  }
  if (options.no_stand_ins) {
    const bool trims_lost = told.one_sided_trims_lost() > 0;
    if (told.mix.fx.stand_ins.left_out <= 0 && !trims_lost) {
      report.print(
          "\"Replace Avid plug-ins with REAPER's\" is off; no Avid plug-in in this\n"
          "session had a REAPER stand-in\n");
    } else {
      report.print(
          "\"Replace Avid plug-ins with REAPER's\" is off: %d Avid plug-in(s) left\n"
          "as named, switched-off slots instead of REAPER's own%s\n",
          told.mix.fx.stand_ins.left_out,
          trims_lost ? ";\n"
                       "one-sided Trim polarity not carried"
                     : "");
    }
  }
  if (const int stand_ins = told.mix.fx.stand_ins.all(); stand_ins > 0) {
    report.print(
        "%d Avid plug-in(s) written as REAPER's own equivalents (stand-ins;\n"
        "EQ exact in design, dynamics close, not identical)\n",
        stand_ins);
    if (const int filters = told.mix.fx.stand_ins.eq3.first_order_slots; filters > 0) {
      report.print(
          "%d EQ3 high-pass or low-pass filter(s) set to 6 or 18 dB/oct use\n"
          "REAPER's Simple 1-Pole Filter for 6 dB/oct of the slope, in the slot\n"
          "after the ReaEQ and named for the EQ3 filter (ReaEQ has no 6 dB/oct\n"
          "filter)\n",
          filters);
    }
  }
  if (options.no_track_colors) {
    report.print("\"Leave out track colors\" is on: tracks in REAPER's default color\n");
  }
  if (options.no_clip_colors) {
    report.print(
        "\"Leave out clip colors\" is on: %d clip(s) that would carry a color\n"
        "are in their track's color instead\n",
        told.uncolored_clips());
  }
}

// Builds that plug-ins were moved to, or kept from.
void add_builds_chosen(TextBuilder& report, const Plugins& plugins) {
  if (!plugins.kept_on_vst3.empty()) {
    report.print(
        "--prefer-vst2: %d plug-in(s) kept on their VST3 build so their\n"
        "settings carry: %s.\n"
        "Their VST2 builds keep settings in a form this version cannot\n"
        "write yet\n",
        inserts_kept_on_vst3(plugins), plugins_kept_on_vst3(plugins).c_str());
  }
  if (plugins.kontakt_instances <= 0) return;
  const std::string kontakt = kontakt_name(plugins);
  if (plugins.kontakt_measured) {
    report.print(
        "Kontakt: %d instance(s) written for %s, the Kontakt installed\n"
        "here. Pro Tools saved them with Kontakt 6; %s plays those\n"
        "settings unchanged\n",
        plugins.kontakt_instances, kontakt.c_str(), kontakt.c_str());
  } else {
    report.print(
        "Kontakt: %d instance(s) written for %s, the Kontakt installed\n"
        "here. Pro Tools saved them with Kontakt 6, and they are written\n"
        "the way Kontakt 7 takes them. %s itself is untested, so check\n"
        "that each instrument loads\n",
        plugins.kontakt_instances, kontakt.c_str(), kontakt.c_str());
  }
}

}  // namespace

void add_head(TextBuilder& report, const Told& told) {
  report.print(
      "kestrel conversion report\n"
      "=========================\n"
      "\n");
  report.print("made with   kestrel %s\n", app_version_text(kVersion).c_str());
  report.print("conversion  Pro Tools session (.ptx) to REAPER project (.rpp)\n");
  report.print("converter   build %s\n", kBuild);
  if (!told.problem.kind.empty()) {
    report.print("problem     %s: %s\n", told.problem.kind.c_str(), told.problem.detail.c_str());
  }
  report.print("\n");
  report.print("source   %s\n", told.options.session_path.c_str());
  if (told.options.check_only) {
    report.print("output   (not written: %s)\n", "this was a check");
  } else {
    report.print("output   %s\n", told.output_path.c_str());
  }
  add_session(report, told);
  report.print("\n");
}

void add_overview(TextBuilder& report, const Told& told) {
  const TrackCounts& counts = told.mix.tracks;
  const auto midi =
      std::count_if(told.tracks.begin(), told.tracks.end(), [](const OutputTrack& track) { return track.is_midi; });
  const int tracks = told.tracks_written(), instruments = static_cast<int>(midi);
  report.print("%d tracks (%d audio/aux, %d instrument), %d clips, %d MIDI notes\n", tracks, tracks - instruments,
               instruments, told.mix.items.clips_written, told.mix.midi.notes);
  if (told.mix.return_tracks > 0) {
    report.print("plus %d send-return bus track(s)\n", told.mix.return_tracks);
  }
  if (told.frozen_tracks_delivered > 0) {
    report.print(
        "%d frozen track(s) delivered FROZEN (--keep-frozen); Track > Unfreeze\n"
        "in REAPER restores the source and plug-ins\n",
        told.frozen_tracks_delivered);
  }
  if (counts.soloed_and_muted > 0) {
    report.print(
        "%d track(s) soloed AND muted in Pro Tools arrive muted with their solo off\n"
        "(REAPER would play a soloed track through its mute)%s\n",
        counts.soloed_and_muted,
        counts.solo_keeper ? "; an empty soloed track,\n"
                             "\"Pro Tools solo (the soloed tracks were muted)\", keeps the rest silent"
                           : "");
  }
  if (told.frozen_tracks_delivered == 0 && told.order.freeze_records > 0) {
    report.print(
        "frozen track(s) converted UNFROZEN - original audio with the\n"
        "plug-ins live and editable (%d internal freeze record(s) left out)\n",
        told.order.freeze_records);
  }
  // Clip Effects.
  add_switches(report, told);
  add_builds_chosen(report, told.plugins);
  if (const std::string master(told.session.mixer.master.name); !master.empty()) {
    report.print("master fader \"%s\" carried onto the REAPER master\n", master.c_str());
  }
}

void add_track_list(TextBuilder& report, const Told& told) {
  report.print("\nTRACK LIST (Pro Tools edit-window order)\n");
  report.print("  %-3s %-34s %5s %5s %3s\n", "#", "name", "clips", "notes", "fx");
  constexpr std::size_t kLongestName = 34;
  const StripInserts& strips = told.session.mixer.inserts.strips;
  int number = 0;
  for (const OutputTrack& track : told.tracks) {
    std::size_t clips = track.items.size();
    for (const Lane& lane : track.lanes) clips += lane.items.size();
    int notes = 0;
    for (const MidiItem& item : track.midi_items) notes += item.note_count;
    const auto inserts = strips.find(track.key());
    const int fx = inserts == strips.end() ? 0 : static_cast<int>(inserts->second.size());
    const bool empty = clips == 0 && notes == 0 && fx == 0;
    report.print("  %-3d %-34s %5d %5d %3d%s\n", ++number, track.name.substr(0, kLongestName).c_str(),
                 static_cast<int>(clips), notes, fx, empty ? "   (empty)" : "");
  }
}

}  // namespace frt

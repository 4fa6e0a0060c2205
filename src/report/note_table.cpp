// The console notes as rows, in printing order: the whole of what a run says after the project is written.
//
// A row needs a count (or a list of names) and a text; see note_row.h for the forms. Whoever counts something new
// adds a row in its place here, and no print anywhere else. A heading without rows holds the place of rows whose
// counts no pass makes yet. "Within that note" means: printed only if the row above it was.
#include "report/note_table.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "run/text_output.h"

namespace frt {
namespace {

const char* float_mark(const RecordingFormat& recording) { return recording.is_float ? " float" : ""; }

int count_of(const std::vector<std::string>& names) { return static_cast<int>(names.size()); }

// The events behind the first one, split into those that change the meter in force and those that repeat it.
struct MeterEvents {
  std::vector<MeterEvent> changes, repeats;
};
MeterEvents split_meter_events(std::span<const MeterEvent> events) {
  MeterEvents split;
  if (events.empty()) return split;
  MeterEvent in_force = events.front();
  for (const MeterEvent& event : events.subspan(1)) {
    const bool same = event.numerator == in_force.numerator && event.denominator == in_force.denominator;
    (same ? split.repeats : split.changes).push_back(event);
    if (!same) in_force = event;
  }
  return split;
}

// At most `limit` names, each as a line, and how many more there are.
void print_first_names(const std::vector<std::string>& names, std::size_t limit, std::size_t longest = SIZE_MAX) {
  const std::size_t shown = std::min(names.size(), limit);
  for (std::size_t i = 0; i < shown; ++i) {
    print_text("      %s\n", names[i].substr(0, longest).c_str());
  }
  if (names.size() > shown) {
    print_text("      ... and %d more\n", static_cast<int>(names.size() - shown));
  }
}

constexpr Note kRunNotes[] = {
    // ---- Result of the run ----
    {[](const NotesInput& in) {
      const double tempo = in.tempo.session_tempo;
      const long long rate = in.session_rate;
      if (in.saved_by.version.empty()) {
        print_text("\n  Read:  Pro Tools (this session does not record which version saved it), %lld Hz, %g BPM\n",
                   rate, tempo);
      } else {
        print_text("\n  Read:  %s %s, %lld Hz, %g BPM\n", std::string(in.saved_by.product).c_str(),
                   std::string(in.saved_by.version).c_str(), rate, tempo);
      }
    }},
    {[](const NotesInput& in) {
      if (in.options.check_only) {
        print_text("  Not written (%s).\n", "--check");
      } else {
        print_text("  Wrote: %s\n", in.output_path.c_str());
      }
    }},
    {[](const NotesInput& in) {
      const std::string version(in.saved_by.version);
      if (in.saved_by.version_major > 0 && !version.starts_with("12.5")) {
        print_text(
            "  NOTE: the sessions this tool is tested against were all saved\n"
            "      by Pro Tools 12.5. %s is outside that.\n"
            "      Anything it could not read is named above rather than\n"
            "      skipped silently, but please check the result against Pro\n"
            "      Tools before relying on it -- and send the session in\n"
            "      either way.\n",
            version.c_str());
      }
    }},
    {[](const NotesInput&) { print_text("\n"); }},

    // ---- Totals ----
    {[](const NotesInput& in) {
      print_text("  %d tracks, %d clips, %d MIDI notes\n", in.counters.tracks_written, in.counters.clips_written,
                 in.counters.midi_notes);
    }},

    // ---- MIDI controllers and SysEx ----

    // ---- Strips ----
    {[](const NotesInput& in) {
      print_text("  %d mixer strips (faders, pans, mute)\n", in.counters.strips_with_mixer_data);
    }},
    {[](const NotesInput& in) {
      if (in.counters.name_scan_count >= 0) {
        print_text("  track list taken from the strip rows (name scan found %d of %d)\n", in.counters.name_scan_count,
                   in.counters.strip_table_size);
      }
    }},

    // ---- Sends ----
    {[](const NotesInput& in) {
      print_text("  %d sends into %d return tracks\n", in.counters.sends_written, in.counters.return_tracks);
    }},
    {&RunCounters::prefader_faders_down, NameList::kLines,
     "  %d muted track(s) feed a pre-fader send, and are written UNMUTED with\n"
     "      the fader all the way down:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing; REAPER's\n"
     "      mute would silence them too. With the fader down the send plays\n"
     "      and the track itself is silent, as in Pro Tools.\n"},
    {&RunCounters::prefader_kept_muted, NameList::kLines,
     "  WARNING: %d muted track(s) feed a pre-fader send but have volume or mute\n"
     "      automation, so they stay muted and the send goes quiet in REAPER:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing.\n"},
    {&RunCounters::midi_tracks_muted, "  %d MIDI track(s) muted in Pro Tools arrive muted\n"},
    {&RunCounters::midi_mute_lanes, "  %d MIDI track(s) arrive with their mute automation\n"},
    {&RunCounters::midi_other_lanes, "  %d MIDI track automation lane(s) other than mute are NOT carried\n"},
    // Tracks without output; the click's player; send pans; switched-off sends.
    {[](const NotesInput& in) {
      if (in.counters.sends_written > 0) {
        print_text(
            "      Follow Main Pan on a send is not read yet: such a send keeps\n"
            "      its own pan setting\n");
      }
    }},
    // Outputs routed into an aux.

    // ---- Inserts and key inputs ----
    {&ConversionOptions::no_sidechain, "  --no-sidechain: key inputs left unwired\n"},

    // ---- Automation ----
    // Send automation.
    {[](const NotesInput& in) {
      if (!in.counters.master_name.empty()) {
        print_text("  master fader \"%s\" carried onto the REAPER master\n", in.counters.master_name.c_str());
      }
    }},
    {[](const NotesInput& in) {
      if (in.counters.automation_points > 0) {
        print_text("  %d automation points across %d tracks\n", in.counters.automation_points,
                   in.counters.tracks_with_points);
      }
    }},
    {[](const NotesInput& in) {
      const int muted = in.counters.muted_midi_events;
      if (muted > 0 && in.options.keep_inaudible_midi) {
        print_text(
            "  %d MIDI note event(s) kept but muted: notes too short to exist at\n"
            "      REAPER's resolution, which would retrigger the note beside them.\n",
            muted);
      } else if (muted > 0) {
        print_text(
            "  %d MIDI event(s) kept but muted -- outside a Pro Tools clip\n"
            "      boundary, so silent, exactly as Pro Tools plays them.\n"
            "      Nothing was deleted: drag a clip edge back in REAPER to see them.\n",
            muted);
      }
    }},
    {[](const NotesInput& in) {
      if (in.options.keep_inaudible_midi) {
        print_text(
            "  --keep-inaudible-midi: %d MIDI event(s) outside a Pro Tools clip\n"
            "      boundary were written UNMUTED. Pro Tools does not play them;\n"
            "      REAPER sounds any note that starts before an item and runs into it.\n",
            in.counters.unmuted_midi_events);
      }
    }},
    {[](const NotesInput& in) {
      const int notes = in.counters.notes_past_clip_edges;
      if (in.options.truncate_midi_to_clip && notes > 0) {
        print_text(
            "  --truncate-midi-to-clip: %d note(s) run past a clip edge and are CUT\n"
            "      there. Pro Tools plays them in full. Each note keeps its whole\n"
            "      length in the item: drag the item edge out to hear it ring.\n",
            notes);
      } else if (notes > 0) {
        print_text(
            "  %d note(s) run past a clip edge; those items were lengthened so\n"
            "      the notes ring in full, as Pro Tools plays them.\n",
            notes);
      } else if (in.options.truncate_midi_to_clip) {
        print_text("  --truncate-midi-to-clip: no note runs past a clip edge, so nothing is cut.\n");
      }
    }},
    // MIDI clips cut or covered by another.
    {[](const NotesInput& in) {
      std::size_t points = 0;
      int strips = 0;
      for (const StripRecord& strip : in.strips) {
        if (!strip.has_mixer_data || strip.dual_pan == 0) continue;
        const std::size_t here = strip.dual_left_lane.points.size() + strip.right_pan_lane.points.size();
        points += here;
        if (here > 0) ++strips;
      }
      if (points > 0) {
        print_text("  %d dual-pan point(s) on %d stereo track(s) (REAPER dual pan)\n", static_cast<int>(points),
                   strips);
      }
    }},
    // Plug-in parameter automation.
    {&RunCounters::automated_tracks,
     "  %d automated track(s) set to Read (Trim/Read would\n"
     "      apply the fader on top of its own automation)\n"},
    {&RunCounters::faders_at_unity,
     "  %d fader(s) parked at unity so the volume envelope alone\n"
     "      carries the level, not the fader times the envelope\n"},

    // ---- Tempo ----
    {&RunCounters::tempo_changes, "  tempo map with %d changes\n"},
    {[](const NotesInput& in) {
      const RunCounters& counters = in.counters;
      if (!in.options.tempo_ramps) return;
      if (counters.tempo_changes > 0 && counters.ramps_written > 0) {
        const double rate = in.session_rate == 0 ? 48000.0 : static_cast<double>(in.session_rate);
        print_text(
            "      --tempo-ramps: %d drawn ramp(s) written as a REAPER ramp you can grab\n"
            "      and reshape, instead of the run of fixed steps Pro Tools stores.\n"
            "      PAST EACH RAMP NOTHING MOVES: each point's tempo is solved so the ramp\n"
            "      comes out on Pro Tools' own beat count -- %.4f ms here, %.2f sample(s)\n"
            "      at %g Hz -- so every bar line, tick-based item and MIDI note after it\n"
            "      lands where Pro Tools puts it, and sample-based audio never moves at all.\n"
            "      INSIDE a ramp the two differ by up to %.2f ms: Pro Tools holds each tempo\n"
            "      for a step and jumps, REAPER glides between points, and no line reproduces\n"
            "      a staircase. That difference returns to zero at every point. If you want\n"
            "      the steps themselves, leave this switch off -- the default is exact.\n",
            counters.ramps_written, counters.ramp_point_error * 1000.0, counters.ramp_point_error * rate, rate,
            counters.ramp_inner_error * 1000.0);
      }
      if (counters.tempo_changes > 0 && counters.ramps_left > 0) {
        print_text(
            "      %d ramp(s) left as Pro Tools' steps: the tempos needed to come out on\n"
            "      Pro Tools' beat count were not tempos, so the run was left alone rather\n"
            "      than approximated\n",
            counters.ramps_left);
      }
      if (counters.ramps_written <= 0 && counters.ramps_left <= 0) {
        print_text("      --tempo-ramps: no drawn ramp here; every tempo event is a plain step\n");
      }
    }},

    // ---- Clips ----
    // Pitch and warp.
    {[](const NotesInput& in) {
      print_text("  %d clips stretched, %d of them read from the session\n", in.counters.stretched_clips,
                 in.counters.stretched_from_session);
    }},
    {[](const NotesInput& in) {
      print_text("  %d fade-ins, %d fade-outs, %d crossfades\n", in.counters.fade_ins, in.counters.fade_outs,
                 in.counters.crossfades);
    }},
    {[](const NotesInput& in) { print_text("  %d clips given clip gain\n", in.counters.clips_with_gain); }},
    {&RunCounters::group_gain_clips,
     "  %d clip(s) inside a clip group given the group's own clip gain as well,\n"
     "      as Pro Tools plays it.\n"},
    {[](const NotesInput& in) {
      std::string names;
      for (const std::string& name : in.counters.group_gain_lines) names += "\n      \"" + name + "\"";
      if (!names.empty()) {
        print_text(
            "  WARNING: %d clip(s) sit in a clip group whose own clip gain is a drawn\n"
            "      line, which is NOT carried (a fixed group gain is):%s\n",
            count_of(in.counters.group_gain_lines), names.c_str());
      }
    }},
    // Clip loops.
    {[](const NotesInput& in) {
      if (!in.options.no_stand_ins) return;
      const int slots = in.counters.stand_ins_left_out, trims = in.counters.one_sided_trims_lost;
      if (slots <= 0 && trims <= 0) {
        print_text("  --no-stand-ins: on; no Avid plug-in in this session had a REAPER stand-in.\n");
        return;
      }
      print_text(
          "  --no-stand-ins: %d Avid plug-in(s) left in their slot under their Pro\n"
          "      Tools name, switched off, instead of REAPER's own equivalent.\n",
          slots);
      if (trims > 0) {
        print_text(
            "      %d track(s) where a Trim flips one side only play both sides\n"
            "      upright: that flip is a REAPER plug-in, and the switch leaves it out.\n",
            trims);
      }
    }},

    // ---- Options and colours ----
    {&ConversionOptions::no_track_colors,
     "  --no-track-colors: every track is in REAPER's default color; the\n"
     "      session's track colors were left out.\n"},
    {[](const NotesInput& in) {
      if (in.options.no_clip_colors) {
        print_text(
            "  --no-clip-colors: %d clip(s) that would carry a color are drawn\n"
            "      in their track's color instead.\n",
            in.counters.uncolored_by_option);
      }
    }},
    // Plug-in builds chosen: --prefer-vst2, Kontakt.
    {&RunCounters::colored_tracks, "  %d track(s) carried a color onto REAPER track colors\n"},
    {&RunCounters::uncolored_tracks,
     "  %d track(s) have no color set. Pro Tools does not STORE a color\n"
     "      for those -- it draws them from a display setting, so the same\n"
     "      session shows different colors on a machine set up\n"
     "      differently. There is nothing to carry, so they keep REAPER's\n"
     "      own default rather than a color this tool guessed.\n"},
    // Track records off the palette.

    // ---- Meter ----
    {[](const NotesInput& in) {
      if (in.meters.empty()) {
        print_text("  no meter map in this session: 4/4 throughout\n");
      } else {
        print_text("  meter %d/%d, read from the session\n", static_cast<int>(in.meters.front().numerator),
                   static_cast<int>(in.meters.front().denominator));
      }
    }},
    {[](const NotesInput& in) {
      const std::vector<MeterEvent> changes = split_meter_events(in.meters).changes;
      if (changes.empty()) return;
      print_text("  NOTE: this session has %d meter change(s) after the first,\n", static_cast<int>(changes.size()));
      const std::size_t shown = std::min<std::size_t>(changes.size(), 8);
      for (std::size_t i = 0; i < shown; ++i) {
        print_text("      %u/%u at bar %u\n", changes[i].numerator, changes[i].denominator, changes[i].bar);
      }
      if (changes.size() > shown) {
        print_text("      ... and %d more\n", static_cast<int>(changes.size() - shown));
      }
    }},
    {&RunCounters::meter_changes_written,
     "      All %d are written as REAPER time signature changes, at\n"
     "      the same bars. Worth one look at the ruler after opening.\n"},
    {[](const NotesInput& in) {
      const std::vector<MeterEvent> repeats = split_meter_events(in.meters).repeats;
      if (repeats.empty()) return;
      print_text(
          "  %d meter event(s) repeat the meter already in force -- no bar line\n"
          "      moves, so there is nothing to carry:",
          static_cast<int>(repeats.size()));
      const std::size_t shown = std::min<std::size_t>(repeats.size(), 8);
      for (std::size_t i = 0; i < shown; ++i) {
        print_text("%s %u/%u at bar %u", i == 0 ? "" : ",", repeats[i].numerator, repeats[i].denominator,
                   repeats[i].bar);
      }
      if (repeats.size() > shown) {
        print_text(", ... and %d more", static_cast<int>(repeats.size() - shown));
      }
      print_text("\n");
    }},

    // ---- Markers ----
    {&RunCounters::markers, "  %d memory location(s) written as REAPER markers\n"},
    {&RunCounters::regions,
     "  %d written as REAPER REGIONS -- those are Pro Tools\n"
     "      Selection memory locations, which store a time RANGE\n"
     "      rather than a point\n"},
    {&RunCounters::colored_markers,
     "      %d of them carried a marker color. A marker Pro Tools\n"
     "      left unset keeps REAPER's default -- the color it shows\n"
     "      for those is generated for display and not stored.\n"},
    {[](const NotesInput& in) {
      const std::vector<std::string>& names = in.counters.unmapped_marker_colors;
      if (names.empty()) return;
      print_text(
          "      %d marker(s) carry a Pro Tools color this build cannot\n"
          "      map yet, and arrive in REAPER's default color:",
          count_of(names));
      print_comma_list(names);
      print_text("\n");
    }},
    {&RunCounters::markers_without_time,
     "  %d memory location(s) have time property NONE and were NOT\n"
     "      written. Those store no timeline position at all -- Pro\n"
     "      Tools does not draw them either, so there is nothing to\n"
     "      place. Their zoom, height and group settings are Pro\n"
     "      Tools view state and have no REAPER equivalent.\n"},
    {[](const NotesInput& in) {
      const RunCounters& counters = in.counters;
      if (counters.markers + counters.regions > 0 && counters.colored_markers == 0) {
        print_text(
            "      None carried a stored marker color, so REAPER shows them\n"
            "      in its default color. Pro Tools may still draw them in\n"
            "      colors it generates for display; those are not stored\n"
            "      in the session.\n");
      }
    }},

    // ---- Colour schemes ----
    // Track and clip coding.
    {[](const NotesInput& in) {
      const PanDepth& depth = in.settings.pan_depth;
      if (depth.was_read && (depth.value == 1 || depth.value == 3 || depth.value == 4)) {
        print_text(
            "  Pan law: %.1f dB, read from the session's Pan Depth\n"
            "      setting (Pro Tools' own default is -3.0 dB).\n",
            depth.db);
      } else if (depth.was_read && depth.value != 2) {
        print_text(
            "  *** Pan Depth enum %d is not one this build knows.\n"
            "      PANLAW was written as -3.0 dB, Pro Tools' default.\n"
            "      Check Setup > Pan Depth against REAPER's pan law.\n",
            depth.value);
      }
    }},
    // Clip colours and the Dark theme.
    {[](const NotesInput& in) {
      const bool classic = in.options.pt_theme == 1;
      if (classic && in.dark_theme_default && !in.options.no_clip_colors) {
        print_text("  Clip colors follow Pro Tools' Classic theme, as chosen.\n");
      }
    }},

    // ---- Clip gain lines ----
    {&RunCounters::gain_envelopes,
     "  %d of them carried a clip gain ENVELOPE, written as REAPER\n"
     "      take volume envelopes. Points outside the clip are kept by\n"
     "      interpolating to its edge, as Pro Tools plays them.\n"},
    {&RunCounters::gain_count_disagrees,
     "  WARNING: %d clip gain entr(ies) state a point count that disagrees\n"
     "      with their own length. The length was used, because the walk to\n"
     "      the next entry depends on it, but this session holds a variant of\n"
     "      the clip gain table nobody has seen. The gain on those clips may\n"
     "      be wrong. Please send the session in.\n"},

    // ---- Groups ----
    // Mix, VCA and edit groups.
    {[](const NotesInput& in) {
      if (in.counters.master_faders > 1) {
        print_text(
            "  WARNING: this session has %d MASTER FADERS. REAPER has exactly\n"
            "      one master, so only the first was carried. The others are\n"
            "      NOT in the .rpp -- neither their gain nor their inserts.\n"
            "      Pro Tools also allows them at any width (mono, stereo, LCR,\n"
            "      5.1); anything past stereo is untested here.\n"
            "      If a second master was doing real work, print through it\n"
            "      before converting.\n",
            in.counters.master_faders);
      }
    }},

    // ---- Track state ----
    {&RunCounters::hidden_tracks, NameList::kBlanks,
     "  %d track(s) are HIDDEN in Pro Tools and arrive hidden in both REAPER's\n"
     "      track panel and its mixer:%s\n"},
    {&RunCounters::tracks_with_height,
     "  %d track(s) carry their Pro Tools track HEIGHT, in pixels as Pro Tools\n"
     "      stores it. REAPER raises anything below its own minimum.\n"},
    {&RunCounters::soloed_tracks, NameList::kBlanks, "  %d track(s) are SOLOED in the session and arrive soloed:%s\n"},
    {&RunCounters::solo_safe_tracks, NameList::kBlanks, "  %d track(s) are SOLO SAFE and arrive solo-defeated:%s\n"},
    // MIDI faders, Real-Time Properties, instruments on other tracks.
    {&RunCounters::automation_off_tracks, NameList::kBlanks,
     "  %d track(s) have automation mode OFF in Pro Tools:%s\n"
     "      Pro Tools ignores their automation. They arrive in Trim/Read with\n"
     "      every envelope written INACTIVE, so the moves are kept but not\n"
     "      played -- the same thing Pro Tools does.\n"},
    {[](const NotesInput& in) {
      // Tracks in mode Off stand in this count and list too; they alone don't make it print.
      const RunCounters& counters = in.counters;
      if (counters.tracks_not_in_read <= count_of(counters.automation_off_tracks)) return;
      std::string list;
      for (const std::string& track : counters.other_mode_tracks) list += track;
      print_text(
          "  %d track(s) use an automation mode other than Read and arrive in it:%s\n"
          "      (Touch/Latch has no REAPER equivalent and lands on Latch.)\n",
          counters.tracks_not_in_read, list.c_str());
    }},
    // Patches.
    {&RunCounters::orphan_playlists,
     "  %d alternate playlist(s) could not be matched to a parent track by\n"
     "      name and arrive as their own tracks, MUTED -- Pro Tools plays one\n"
     "      playlist per track, so these never sounded there either. Unmute\n"
     "      one in REAPER to audition it.\n"},
    {&RunCounters::commented_tracks, NameList::kBlanks, "  %d track(s) carry a COMMENT in Pro Tools:%s\n"},
    {[](const NotesInput& in) {
      // Within that note.
      if (in.counters.commented_tracks.empty()) return;
      switch (in.options.comments_mode) {
        case 0:
          print_text(
              "      Each arrives as the notes of a small empty item at the start of\n"
              "      its track, named \"Pro Tools comment\". It plays nothing.\n");
          break;
        case 1:
          print_text(
              "      Each is a \"Track: comment\" line in the project notes window\n"
              "      (View > Project Notes). --comments item puts them on the tracks.\n");
          break;
        default:
          print_text("      NOT WRITTEN (--comments none).\n");
          break;
      }
    }},

    // ---- Trim and polarity ----

    // ---- Wide tracks, solo ----
    {&RunCounters::surround_folds,
     "  %d surround track(s) folded from their Pro Tools legs into one\n"
     "      multichannel track each, the way a stereo pair is folded: one\n"
     "      track, one item, one insert chain, channels in the file's order.\n"
     "      A wide strip's own panner is not carried; a mono or stereo\n"
     "      source panned into a surround bus gets ReaSurroundPan (below).\n"},
    {&RunCounters::soloed_and_muted,
     "  %d track(s) were soloed AND muted in Pro Tools, which keeps them silent.\n"
     "      REAPER would play them (a solo overrides a mute there), so they arrive\n"
     "      muted with their solo off.\n"},
    {[](const NotesInput& in) {
      // Within that note.
      if (in.counters.soloed_and_muted > 0 && in.counters.solo_keeper) {
        print_text(
            "      Every soloed track was muted, so the track \"Pro Tools solo (the\n"
            "      soloed tracks were muted)\" was added, soloed and empty: it keeps the\n"
            "      other tracks silent the way Pro Tools' solo does. Unsolo it to hear\n"
            "      everything; delete it when you like.\n");
      }
    }},
    {&RunCounters::soloed_with_mute_points,
     "  %d soloed, muted track(s) with mute automation keep their solo: REAPER\n"
     "      plays a soloed track through its mute, Pro Tools does not.\n"},

    // ---- Folders ----

    // ---- Clip Effects and Melodyne ----

    // ---- Stand-ins ----

    // ---- Timebase ----
    {[](const NotesInput& in) {
      const RunCounters& counters = in.counters;
      const int time = counters.timebase_time, beats = counters.timebase_beats;
      const int position = counters.timebase_beats_position;
      if (time > 0 || beats > 0 || position > 0) {
        print_text(
            "  Item timebase written per track: %d Time (sample-based), %d Beats\n"
            "      (tick-based MIDI), %d Beats-position (tick-based audio), so a tempo\n"
            "      edit in REAPER moves what Pro Tools would move.\n",
            time, beats, position);
      }
    }},

    // ---- Real-Time Properties ----

    // ---- Recording format and timecode ----
    {[](const NotesInput& in) {
      const RecordingFormat& recording = in.settings.recording;
      if (in.counters.recording_format_written) {
        print_text(
            "  Bit depth: %d-bit%s written as REAPER's recording format, so new\n"
            "      recordings in this project match the session's files.\n",
            recording.depth, float_mark(recording));
      } else if (recording.is_aiff() && recording.depth != 0 && recording.depth != 24) {
        print_text(
            "  Bit depth: %d-bit AIFF session; REAPER's recording format is left at\n"
            "      its default, since only the WAV config is measured.\n",
            recording.depth);
      }
    }},
    {[](const NotesInput& in) {
      if (!in.counters.timecode_written) return;
      const TimecodeSettings& timecode = in.settings.timecode;
      const std::string start =
          timecode_text(timecode.start_frames, static_cast<std::uint32_t>(timecode.timemode_rate), timecode.drop_frame);
      print_text(
          "  Timecode: %s fps, Session Start %s (%.4f s) written as REAPER's\n"
          "      frame rate and project start, so the ruler reads the same timecode.\n",
          std::string(timecode.rate_label).c_str(), start.c_str(), in.counters.project_offset);
      const std::string ruler(timecode.ruler_label);
      if (!ruler.empty()) {
        print_text("      REAPER has no %s drop-frame setting; the ruler runs at %s non-drop.\n", ruler.c_str(),
                   ruler.c_str());
      } else if (timecode.rate_code == 8) {
        print_text("      REAPER has no 30 drop-frame setting; the ruler runs at 30 non-drop.\n");
      }
    }},

    // ---- CLAP builds ----

    // ---- Surround buses and panners ----
    {&RunCounters::surround_aux_widths,
     "  %d aux(es) taking a surround bus written as wide as that bus, and\n"
     "      the tracks feeding it send every channel, not just the first two.\n"},
    // Panners set, panner automation written.
    {&RunCounters::surround_panner_lanes_left,
     "  %d surround panner automation lane(s) not written: a stereo source's\n"
     "      panner, or a session older than Pro Tools 2026.\n"},
    // Layouts that cannot be placed; Trims in no effect.

    // ---- Locks and grid ----
    {&RunCounters::locked_clips,
     "  %d clip(s) were locked in Pro Tools and are LOCKED in REAPER. REAPER\n"
     "      has one item lock, so a clip that was only Time-locked (kept in\n"
     "      place but still editable) is locked for edits as well.\n"},
    {[](const NotesInput& in) {
      if (!in.counters.grid_written) return;
      print_text("  Edit grid written as REAPER's grid (%g of a quarter note).\n", in.counters.grid_quarters);
      const MusicalStep& nudge = in.settings.grid.nudge;
      if (nudge.any()) {
        print_text(
            "      Nudge (%ld| %ld| %03ld) is not carried: REAPER keeps its nudge\n"
            "      amount outside the project file.\n",
            nudge.bars, nudge.beats, nudge.ticks);
      }
    }},
    // MIDI clips on sample-based tracks.

    // ---- Video ----

    // ---- Group checks, hardware inserts ----

    // ---- Timebase of tracks ----
    {[](const NotesInput& in) {
      print_text("  %d tick-based tracks, %d sample-based\n", in.counters.tick_based_tracks,
                 in.counters.sample_based_tracks);
    }},
    {[](const NotesInput& in) {
      const int tracks = in.counters.timebase_read_that_way;
      if (tracks > 0) {
        print_text(
            "      %d of them could not be paired with their own timebase record;\n"
            "      every record in the session says %s, so they were read that way\n",
            tracks, in.counters.timebase_all_samples ? "sample-based" : "tick-based");
      }
    }},
    {[](const NotesInput& in) {
      const int tracks = in.counters.timebase_judged;
      if (tracks > 0 && in.counters.timebase_records_exist) {
        print_text(
            "      %d of them could not be paired with their own timebase record, and\n"
            "      the records disagree, so they were judged by the size of their\n"
            "      positions -- check their timing\n",
            tracks);
      } else if (tracks > 0) {
        print_text(
            "      %d of them: this session holds no timebase records at all, so\n"
            "      they were judged by the size of their positions -- check their timing\n",
            tracks);
      }
    }},
    {&RunCounters::sync_point_clips,
     "  %d clip(s) carry a sync point and are placed by it, as Pro Tools\n"
     "      places them: the clip starts that far before its stored position\n"},
    {[](const NotesInput& in) {
      if (in.counters.sync_points_unmatched) {
        print_text(
            "  WARNING: this session has clips with sync points that could not be\n"
            "      matched to their placements; those clips may sit late by the\n"
            "      distance to their sync point. Please send the session in.\n");
      }
    }},

    // ---- Clip groups, stretched clips ----

    // ---- Folding ----
    {&RunCounters::owner_matches, "  %d alternate playlists matched to their parent track\n"},
    {&RunCounters::stereo_merges, "  %d Pro Tools stereo track(s) merged from split mono\n"},
    // Tracks fed to one side of a stereo output.
    {[](const NotesInput& in) {
      if (in.counters.surround_pan_points > 0) {
        print_text(
            "  %d surround/multichannel strip(s) carry PAN automation that is NOT\n"
            "      written: a surround strip has no single pan, and its panner lanes\n"
            "      are not named in the session. Volume, trim and mute automation ARE\n"
            "      carried. Please send the session: "
            "%s"
            "\n",
            in.counters.surround_pan_points, kSupportAddress);
      }
    }},
    {[](const NotesInput& in) {
      const std::vector<std::string>& strips = in.counters.wide_strips;
      if (strips.empty()) return;
      print_text(
          "  WARNING: %d mixer strip(s) are neither mono nor stereo and were\n"
          "      read as mono. Level and mute are right; PAN IS NOT. This is\n"
          "      what a surround or multichannel strip looks like, which this\n"
          "      tool does not convert. Please send the session:\n",
          count_of(strips));
      print_first_names(strips, 8);
    }},
    {&RunCounters::lanes, "  %d written as REAPER fixed lanes\n"},

    // ---- Selection and order ----
    {&RunCounters::empty_tracks, "  %d track(s) had no clips and were written empty, mixer state intact\n"},
    {[](const NotesInput& in) {
      if (in.counters.click_left_out > 0) {
        print_text("  %d Click track(s) left out (--no-click):%s\n", in.counters.click_left_out,
                   joined_names(in.counters.click_left_out_names, NameList::kQuoted).c_str());
      }
    }},
    // Hidden and inactive tracks left out or kept.
    {[](const NotesInput& in) {
      for (const std::string& name : in.counters.click_kept) {
        print_text(
            "  \"%s\" holds a Click II but also something else (inserts, sends, clips or\n"
            "      a name another track shares), so the click toggle leaves it in, whole.\n",
            name.c_str());
      }
    }},
    {&RunCounters::unmatched_tracks,
     "  %d track(s) matched no strip row and were appended at the end --\n"
     "      please send this session file, that should not happen\n"},
    {[](const NotesInput& in) {
      if (in.counters.frozen_tracks_delivered == 0 && in.counters.freeze_records > 0) {
        print_text(
            "  %d internal freeze record(s) left out (Pro Tools writes these when a\n"
            "      track is frozen). The track itself converts UNFROZEN: original\n"
            "      audio with its plug-ins live and editable.\n",
            in.counters.freeze_records);
      }
    }},
    // Frozen tracks delivered.
    {&RunCounters::inactive_tracks,
     "  %d track(s) were INACTIVE in Pro Tools and are written MUTED --\n"
     "      silent, as they were, with clips and plug-ins intact. Unmute\n"
     "      in REAPER to bring one back.\n"},
    {&RunCounters::voice_off_tracks,
     "  %d track(s) had VOICE set to OFF in Pro Tools and are\n"
     "      written MUTED -- silent, as they were, with clips and\n"
     "      plug-ins intact. REAPER has no voice limit, so unmute\n"
     "      to bring one back.\n"},
    {[](const NotesInput& in) {
      if (!in.counters.names_aligned) {
        print_text(
            "  WARNING: this session holds a track type this build does not\n"
            "      recognize, so CURRENT track names could not be bound and the\n"
            "      ORIGINAL names were kept instead. Track names and playlist\n"
            "      matching in this conversion may be wrong. Please send the\n"
            "      session in -- this is a gap in the tool, not in your session.\n");
      }
    }},

    // ---- Overlaps ----

    // ---- Fades, deleted placements, alternates ----
    {&RunCounters::fade_clips_dropped, "  %d fade references dropped as clips\n"},
    {&RunCounters::fades_unbound, "  %d fades sat on no kept clip edge\n"},
    {&RunCounters::fades_not_understood, "  %d fade records not understood\n"},
    {&RunCounters::s_curve_fades, "  %d S-curve fade(s) written as REAPER's S shape (5.1)\n"},
    {[](const NotesInput& in) {
      const int clips = in.counters.deleted_placements;
      if (clips > 0 && in.options.recover_deleted) {
        print_text(
            "  %d deleted clip placement(s) RECOVERED: written as MUTED \"[alt takes]\"\n"
            "      tracks beside their parent, at their original positions, because\n"
            "      --recover-deleted was given. Unmute one to audition it.\n",
            clips);
      } else if (clips > 0) {
        print_text(
            "  %d deleted clip placement(s) are still in this session: edits or takes\n"
            "      removed from a track that Pro Tools keeps in the file for its undo\n"
            "      queue and cannot show after a reopen. Left out, as the author removed\n"
            "      them; --recover-deleted brings them back as muted tracks beside their\n"
            "      parent, at their original positions.\n",
            clips);
      }
    }},
    {[](const NotesInput& in) {
      // All alternates of the session, so that the switch that leaves them out is named whenever there are any,
      // and told to have worked whenever it was given.
      const int playlists = in.counters.alternate_playlists;
      if (playlists > 0 && in.options.keep_alt_takes) {
        print_text("  %d alternate playlists kept as lanes (--drop-alt-takes to leave them out)\n", playlists);
      } else if (playlists > 0) {
        print_text("  %d alternate playlists set aside (--drop-alt-takes was given)\n", playlists);
      }
    }},
    // Renamed tracks.
    {[](const NotesInput&) { print_text("\n"); }},

    // ---- Plug-ins ----
};

constexpr Note kMediaNotes[] = {
    {[](const NotesInput& in) {
      const RunCounters& counters = in.counters;
      if (counters.sibling_hits <= 0) return;
      print_text(
          "  %d audio file(s) the session lists are in its own sibling folder(s)\n"
          "      rather than the media folder:",
          counters.sibling_hits);
      for (const auto& [folder, files] : counters.sibling_folders) {
        print_text(" %s (%d)", folder.c_str(), files);
      }
      if (counters.clips_in_sibling_folders > 0) {
        print_text("\n      %d clip(s) use them; their FILE lines point there.\n", counters.clips_in_sibling_folders);
      } else {
        print_text(
            "\n      No clip uses them (freeze renders are not needed: the frozen\n"
            "      track converts from its source with the plug-in live).\n");
      }
    }},
    {[](const NotesInput& in) {
      const std::vector<std::string>& files = in.counters.missing_files;
      if (files.empty()) return;
      print_text("  WARNING: %d referenced audio file(s) are not in \"Audio Files\" or beside it:\n", count_of(files));
      print_first_names(files, 6, 64);
      print_text(
          "      REAPER will search for these on load and may look frozen while\n"
          "      it does. Answering \"ignore missing files\" opens the rest fine.\n");
    }},
};

constexpr Note kClosingNotes[] = {
    {[](const NotesInput& in) {
      const LongClips& clips = in.long_clips;
      if (clips.count > 0) {
        print_text(
            "  note: %d clip(s) over 10 minutes (longest %.1f min, from a %.1f min\n"
            "        source). REAPER builds peaks for the whole file on first open --\n"
            "        it can sit on \"loading file\" for a while. That is not a hang.\n",
            clips.count, clips.longest_clip, clips.longest_file);
      }
    }},
    {[](const NotesInput& in) {
      const RecordingFormat& recording = in.settings.recording;
      if (recording.depth_read && recording.depth_byte > 0 && !in.counters.recording_format_written) {
        print_text(
            "  The session records at %d-bit%s. Existing audio is unaffected\n"
            "      (each file states its own depth), but REAPER's own recording\n"
            "      format is left at its default -- set it if you will overdub.\n",
            recording.depth_byte, float_mark(recording));
      }
    }},
    {[](const NotesInput& in) {
      print_text(
          "  Media folder written into %sFILE line:\n"
          "      %s\n",
          in.counters.clips_in_sibling_folders > 0 ? "every other " : "every ", in.media_folder.c_str());
      print_text(
          "  If REAPER shows OFFLINE, that path is wrong - re-run with\n"
          "      --audio-dir \"<the folder your .wav files are really in>\"\n");
    }},
    {[](const NotesInput& in) {
      if (in.options.usage_shared) {
        print_text(
            "\n  PRIVACY: this program contains no network code. It wrote an\n"
            "      anonymous summary of this conversion (counts, and which plug-ins\n"
            "      converted how), which kestrel sends because usage summaries are on\n"
            "      in Help > App settings. The summary holds no track, clip or file\n"
            "      names, no paths and no audio. Nothing else about this session\n"
            "      left this computer. A report reaches kestrel only when it is\n"
            "      attached to an email and sent.\n");
      } else {
        print_text(
            "\n  PRIVACY: this program contains no network code. No information\n"
            "      about this session was transmitted from this computer: no\n"
            "      upload, no telemetry, no usage reporting. A report reaches\n"
            "      kestrel only when it is attached to an email and sent.\n");
      }
    }},
};

}  // namespace

std::span<const Note> run_note_rows() { return kRunNotes; }
std::span<const Note> media_note_rows() { return kMediaNotes; }
std::span<const Note> closing_note_rows() { return kClosingNotes; }

}  // namespace frt

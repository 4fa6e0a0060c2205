// MIDI: tracks, what is sent with their clips, and notes that a clip's edge cuts or silences.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "base/text.h"
#include "mix/bind.h"
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool cuts_nothing(const Told& told) { return told.options.truncate_midi_to_clip && told.midi.notes_past_edges <= 0; }

std::string properties_of_track(std::string_view name, const RealTimeProperties& p) {
  std::string text = "\n      " + std::string(name) + ":";
  if (p.transpose_on) text += format_text(" transpose %+d oct %+d semi;", p.octaves, p.semitones);
  if (p.velocity_on) text += format_text(" velocity %d%% %+d;", p.velocity_percent, p.velocity_offset);
  if (p.delay_on) text += format_text(" delay %+d ticks;", p.delay_ticks);
  if (p.quantize_on) text += format_text(" quantize (swing %d%%);", 0);  // its grid and amount are not read yet
  if (p.duration_on) text += " duration;";
  return text;
}

// Calls take(name, properties) for each written MIDI track with Real-Time Properties, each name once.
template <typename Take>
void each_with_properties(const Told& told, Take take) {
  const Mixer& mixer = told.session.mixer;
  const auto properties = by_row_names<RealTimeProperties>(mixer.rows, [&](std::size_t k) {
    const bool has = k < mixer.midi_properties.size() && mixer.midi_properties[k].any_on();
    return has ? std::optional(mixer.midi_properties[k]) : std::nullopt;
  });
  if (properties.empty()) return;
  std::unordered_set<std::string_view> told_names;
  for (const OutputTrack& track : told.tracks) {
    if (!track.is_midi) continue;
    const RealTimeProperties* found = find_by_pt_name_first(properties, track);
    if (found && told_names.insert(track.key()).second) take(track.key(), *found);
  }
}

int tracks_with_properties(const Told& told) {
  int count = 0;
  each_with_properties(told, [&](std::string_view, const RealTimeProperties&) { ++count; });
  return count;
}

std::string properties(const Told& told) {
  std::string list;
  each_with_properties(
      told, [&](std::string_view name, const RealTimeProperties& found) { list += properties_of_track(name, found); });
  return list;
}

int tracks_elsewhere(const Told& told) { return static_cast<int>(told.session.mixer.midi_elsewhere.size()); }

std::string elsewhere(const Told& told) {
  std::string list;
  for (const MidiElsewhere& one : told.session.mixer.midi_elsewhere)
    ((((list += "\n      ") += one.track) += " -> ") += one.instrument);
  return list;
}

// Calls take(row, program) for each row whose clips send a patch, each name once.
template <typename Take>
void each_with_patch(const Told& told, Take take) {
  const Mixer& mixer = told.session.mixer;
  std::unordered_set<std::string_view> told_names;
  for (std::size_t k = 0; k < mixer.rows.size() && k < mixer.midi_setups.size(); ++k) {
    const MidiStripSetup& setup = mixer.midi_setups[k];
    const std::string_view name = mixer.rows[k].label();
    if (setup.cc7 < 0 || setup.program < 0 || name.empty()) continue;
    if (told_names.insert(name).second) take(mixer.rows[k], setup.program);
  }
}

int strips_with_patch(const Told& told) {
  int count = 0;
  each_with_patch(told, [&](const StripRow&, int) { ++count; });
  return count;
}

std::string patch_list(const Told& told) {
  std::string list;
  each_with_patch(told, [&](const StripRow& row, int program) {
    list += name_in_list(std::string(row.label()), NameList::kBlanks, list.empty()) + "=" + std::to_string(program);
  });
  return list;
}

// A clip can hold notes past the range by itself.
int transposed_too_far(const Told& told) {
  const MidiItemCounts& counts = told.mix.midi;
  return counts.processed_items > 0 ? counts.out_of_range : 0;
}

constexpr Note kMidiData[] = {
    {in<&MidiCounts::controllers>, "  %d MIDI controller events (pitch bend, CC, aftertouch)\n"},
    {in<&MidiCounts::sysex>, "  %d SysEx event(s)\n"},
    {in<&MidiCounts::sysex_outside>,
     "      %d of them lie OUTSIDE their clip in Pro Tools and would not play\n"
     "      there. REAPER cannot store a muted SysEx event, so they are written\n"
     "      live rather than lost; delete them in the MIDI editor if unwanted.\n"},
    {in<&MidiCounts::unmatched_regions>,
     "  note: %d MIDI region(s) had controller data that did not\n"
     "        match their note chunk; it was left out\n"},
};

constexpr Note kMidiTracks[] = {
    {in<&TrackCounts::midi_tracks_muted>, "  %d MIDI track(s) muted in Pro Tools arrive muted\n"},
    {in<&TrackCounts::midi_mute_lanes>, "  %d MIDI track(s) arrive with their mute automation\n"},
    {in<&TrackCounts::midi_other_lanes>, "  %d MIDI track automation lane(s) other than mute are NOT carried\n"},
};

constexpr Note kMidiEvents[] = {
    {in<&MidiItemCounts::muted_events>, in<&ConversionOptions::keep_inaudible_midi>,
     "  %d MIDI note event(s) kept but muted: notes too short to exist at\n"
     "      REAPER's resolution, which would retrigger the note beside them.\n"},
    {in<&MidiItemCounts::muted_events>, unless(in<&ConversionOptions::keep_inaudible_midi>),
     "  %d MIDI event(s) kept but muted -- outside a Pro Tools clip\n"
     "      boundary, so silent, exactly as Pro Tools plays them.\n"
     "      Nothing was deleted: drag a clip edge back in REAPER to see them.\n"},
    {in<&ConversionOptions::keep_inaudible_midi>,
     "  --keep-inaudible-midi: %d MIDI event(s) outside a Pro Tools clip\n"
     "      boundary were written UNMUTED. Pro Tools does not play them;\n"
     "      REAPER sounds any note that starts before an item and runs into it.\n",
     in<&MidiCounts::kept_unmuted>},
    {in<&MidiCounts::notes_past_edges>, in<&ConversionOptions::truncate_midi_to_clip>,
     "  --truncate-midi-to-clip: %d note(s) run past a clip edge and are CUT\n"
     "      there. Pro Tools plays them in full. Each note keeps its whole\n"
     "      length in the item: drag the item edge out to hear it ring.\n"},
    {in<&MidiCounts::notes_past_edges>, unless(in<&ConversionOptions::truncate_midi_to_clip>),
     "  %d note(s) run past a clip edge; those items were lengthened so\n"
     "      the notes ring in full, as Pro Tools plays them.\n"},
    {cuts_nothing, "  --truncate-midi-to-clip: no note runs past a clip edge, so nothing is cut.\n"},
    {in<&MidiCounts::cut_clips>,
     "  %d MIDI clip(s) cut where a later clip on the same track takes over,\n"
     "      as Pro Tools plays them. The notes past the cut are kept, muted:\n"
     "      drag the clip edge in REAPER to see them.\n"},
    {in<&MidiCounts::later_clips>,
     "  %d MIDI clip(s) start later, where the clip Pro Tools draws on top of\n"
     "      them ends. Their covered start is kept, muted.\n"},
    {in<&MidiCounts::emptied_clips>,
     "  WARNING: %d MIDI clip(s) are written EMPTY: this session places more\n"
     "      MIDI events than a project can hold.\n"},
};

constexpr Note kSampleBasedMidi[] = {
    {in<&MidiCounts::sample_based_clips>,
     "  %d MIDI clip(s) sit on a SAMPLE-BASED track, so their position and\n"
     "      length are read in samples rather than ticks. Read as ticks they\n"
     "      land days into the project once the session has a tempo change.\n"},
    {in<&MidiCounts::sample_based_covered>,
     "      %d of them overlap another clip. Pro Tools resolves an overlap by\n"
     "      comparing clip positions, and that comparison is not reliable in\n"
     "      this unit yet, so the clip keeps its full length and the overlap\n"
     "      SUMS rather than trimming. Trim the item edge in REAPER to match.\n"},
};

constexpr Note kMidiFaders[] = {
    {in<&MidiItemCounts::fader_tracks>,
     "  %d MIDI/instrument track(s) carry their MIDI fader and pan as a CC 7\n"
     "      and a CC 10 event at the start of each clip -- what Pro Tools\n"
     "      sends when playback starts. A clip that already streams one of\n"
     "      those controllers keeps its stream instead.\n"},
    {tracks_with_properties,
     "  WARNING: %d MIDI/instrument track(s) carry REAL-TIME PROPERTIES:%s\n"
     "      Pro Tools applies these on playback, not to the stored notes.\n"
     "      Which of them are applied here is said below.\n",
     properties},
    {tracks_elsewhere,
     "  WARNING: %d MIDI track(s) play an instrument on another track:%s\n"
     "      Not carried yet. In REAPER those notes stay on the MIDI track,\n"
     "      which has no instrument, so they are silent. To hear them, add a\n"
     "      send from the MIDI track to the instrument's track in REAPER,\n"
     "      MIDI only (Audio: None).\n",
     elsewhere},
};

constexpr Note kPatches[] = {
    {strips_with_patch,
     "  %d track(s) have a PATCH selected and send it as a program change\n"
     "      at the start of each clip:%s\n",
     patch_list},
};

constexpr Note kRealTimeProperties[] = {
    {in<&MidiItemCounts::processed_items>,
     "  MIDI Real-Time Properties APPLIED to the notes on %d track(s): transpose,\n"
     "      velocity and delay, so the track plays as Pro Tools played it.\n"},
    {transposed_too_far, "      %d note(s) transposed past the MIDI range are written MUTED, not lost.\n"},
    {in<&MidiItemCounts::unprocessed_items>,
     "  %d track(s) carry Real-Time quantize or duration, which are NOT applied:\n"
     "      their grid and amount are not decoded yet.\n"},
};

}  // namespace

NoteGroup midi_data() { return kMidiData; }
NoteGroup midi_tracks() { return kMidiTracks; }
NoteGroup midi_events() { return kMidiEvents; }
NoteGroup midi_faders() { return kMidiFaders; }
NoteGroup patches() { return kPatches; }
NoteGroup real_time_properties() { return kRealTimeProperties; }
NoteGroup sample_based_midi() { return kSampleBasedMidi; }

}  // namespace frt::notes

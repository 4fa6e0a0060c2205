// MIDI: tracks, and notes that a clip's edge cuts or silences.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool cuts_nothing(const Told& told) { return told.options.truncate_midi_to_clip && told.midi.notes_past_edges <= 0; }

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
    {in<&Told::muted_midi_events>, in<&ConversionOptions::keep_inaudible_midi>,
     "  %d MIDI note event(s) kept but muted: notes too short to exist at\n"
     "      REAPER's resolution, which would retrigger the note beside them.\n"},
    {in<&Told::muted_midi_events>, unless(in<&ConversionOptions::keep_inaudible_midi>),
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

}  // namespace

NoteGroup midi_data() { return kMidiData; }
NoteGroup midi_tracks() { return kMidiTracks; }
NoteGroup midi_events() { return kMidiEvents; }
NoteGroup sample_based_midi() { return kSampleBasedMidi; }

}  // namespace frt::notes

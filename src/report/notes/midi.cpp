// MIDI: tracks, and notes that a clip's edge cuts or silences.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool cuts_nothing(const Told& told) { return told.options.truncate_midi_to_clip && told.notes_past_clip_edges <= 0; }

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
     in<&Told::unmuted_midi_events>},
    {in<&Told::notes_past_clip_edges>, in<&ConversionOptions::truncate_midi_to_clip>,
     "  --truncate-midi-to-clip: %d note(s) run past a clip edge and are CUT\n"
     "      there. Pro Tools plays them in full. Each note keeps its whole\n"
     "      length in the item: drag the item edge out to hear it ring.\n"},
    {in<&Told::notes_past_clip_edges>, unless(in<&ConversionOptions::truncate_midi_to_clip>),
     "  %d note(s) run past a clip edge; those items were lengthened so\n"
     "      the notes ring in full, as Pro Tools plays them.\n"},
    {cuts_nothing, "  --truncate-midi-to-clip: no note runs past a clip edge, so nothing is cut.\n"},
    // MIDI clips cut or covered by another.
};

}  // namespace

NoteGroup midi_tracks() { return kMidiTracks; }
NoteGroup midi_events() { return kMidiEvents; }

}  // namespace frt::notes

// Sends, outputs and key inputs.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

constexpr Note kSends[] = {
    {always, "  %d sends into %d return tracks\n", in<&Told::sends_written>, in<&Told::return_tracks>},
    {in<&TrackCounts::prefader_faders_down>, NameList::kLines,
     "  %d muted track(s) feed a pre-fader send, and are written UNMUTED with\n"
     "      the fader all the way down:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing; REAPER's\n"
     "      mute would silence them too. With the fader down the send plays\n"
     "      and the track itself is silent, as in Pro Tools.\n"},
    {in<&TrackCounts::prefader_kept_muted>, NameList::kLines,
     "  WARNING: %d muted track(s) feed a pre-fader send but have volume or mute\n"
     "      automation, so they stay muted and the send goes quiet in REAPER:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing.\n"},
};

constexpr Note kSendSettings[] = {
    // Tracks without output; the click's player; send pans; switched-off sends.
    {[](const Told& told) { return told.sends_written > 0; },
     "      Follow Main Pan on a send is not read yet: such a send keeps\n"
     "      its own pan setting\n"},
    // Outputs routed into an aux.
};

constexpr Note kKeyInputs[] = {
    {in<&ConversionOptions::no_sidechain>, "  --no-sidechain: key inputs left unwired\n"},
};

}  // namespace

NoteGroup sends() { return kSends; }
NoteGroup send_settings() { return kSendSettings; }
NoteGroup key_inputs() { return kKeyInputs; }

}  // namespace frt::notes

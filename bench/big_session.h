// Large sessions, always the same for the same size.
#pragma once

#include <cstddef>
#include <string>

#include "support/session_builder.h"

namespace frt::bench {

// A session of about that many bytes. Everything in it grows with the size: at 64 MiB 256 strips with ten playlists
// each, some 25,000 entries of the clip list with fades, crossfades and gain, 370,000 MIDI notes, and plug-in state
// and other opaque bytes that fill it up as they do in real sessions. Up to about 160 MiB the clip list stays within
// the 65,536 entries that a session can number.
test::SessionBuilder big_session(std::size_t bytes);

// Sessions that are nothing but one kind of data, whose project text is larger than they are.
test::SessionBuilder automation_session(std::size_t points);  // volume, mute and pan lanes of 1,000 points each
test::SessionBuilder midi_session(std::size_t events);        // notes, two events each, in clips of 500 notes
test::SessionBuilder sends_session(std::size_t sends);        // eight sends a track, into 64 buses

// Inserts, eight a track, of as many plug-ins, each with that many bytes of settings, and REAPER's list of that many
// plug-ins. The list has half of the session's.
test::SessionBuilder inserts_session(std::size_t inserts, std::size_t state_bytes);
std::string plugin_list(std::size_t plugins);

}  // namespace frt::bench

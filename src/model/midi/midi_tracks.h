// The session's MIDI tracks with their items: every placement of a MIDI clip becomes an item with its place in seconds
// and what it plays.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/tracks.h"
#include "run/options.h"
#include "session/clips/clip_source.h"
#include "session/clock.h"

namespace frt {

struct MidiCounts {
  int cut_clips = 0;             // where a later clip takes over
  int later_clips = 0;           // starting where the clip on top of them ends
  int sample_based_clips = 0;    // on a sample-based track
  int sample_based_covered = 0;  // of them: overlapping another, which can't be resolved there
  int unmatched_regions = 0;     // controller data that belongs to other notes, left out
  int notes_past_edges = 0;      // cut under --truncate-midi-to-clip, else their items are longer
  int kept_unmuted = 0;          // events outside their clip that --keep-inaudible-midi leaves unmuted
  int controllers = 0;           // pitch bend, controllers, aftertouch inside their clip
  int sysex = 0, sysex_outside = 0;
  int emptied_clips = 0;  // without their events, of which the session places too many
};

struct MidiTracks {
  std::vector<OutputTrack> tracks;  // by track number, then name; items in the order of the placements
  // By the names that placements give.
  std::set<std::string, std::less<>> sample_based;
  MidiCounts counts;
};

// `midi` must live as long as the tracks.
//   audio        the audio tracks to be written, whose names no MIDI track takes
//   strip_table  the names of the session's strips
MidiTracks make_midi_tracks(const MidiSource& midi, const Clock& clock, std::span<const OutputTrack> audio,
                            std::span<const std::string_view> strip_table, const ConversionOptions& options);

}  // namespace frt

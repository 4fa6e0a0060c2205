// MIDI clips that lie on each other: which of the two gives way.
#pragma once

#include <cstdint>
#include <vector>

#include "model/midi/playlist_index.h"
#include "session/clips/clip_source.h"

namespace frt {

// What a clip loses to its neighbours, in raw units from its start.
struct MidiClipEdges {
  std::int64_t cut = -1;       // where the next clip takes over, -1 for nowhere
  std::int64_t head_trim = 0;  // how much of its head the clip before covers

  bool covered() const { return cut >= 0 || head_trim > 0; }
};

// By placement. Those without notes take no part.
std::vector<MidiClipEdges> find_midi_overlaps(const MidiSource& midi, const PlacedMidiTracks& tracks,
                                              const MidiPlaylistIndex& playlists);

}  // namespace frt

// Everything that the session tells of its audio clips, and of its MIDI clips.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "ptf/ptf_format.h"
#include "session/clips/clip_gain.h"
#include "session/clips/clip_groups.h"
#include "session/clips/clip_tables.h"
#include "session/clips/midi_tables.h"
#include "session/clock.h"

namespace frt {

struct ClipSource {
  std::vector<ClipRecord> clips;
  std::vector<Placement> placements;  // by track_index, then in file order
  // How many distinct channel numbers the session's list of playlists gives.
  std::size_t channel_count = 0;

  std::vector<PlaylistRecord> playlists;  // fades marked
  std::vector<TrackPlaylist> track_playlists;
  std::vector<FadeRecord> fades;
  ClipGain gain;
  std::vector<ClipGroupRow> groups;
  // Sync points by clip, in samples from its start; empty if they don't line up with the clips one by one. Then
  // placements can't be moved by them, which is told if there was something to move.
  std::vector<std::int64_t> sync_samples;
  bool sync_points_unmatched = false;
};

struct MidiSource {
  std::vector<ClipRecord> clips;
  std::vector<Placement> placements;
  std::vector<NoteChunk> chunks;
  // By the same numbers; fewer where the MIDI data is broken.
  std::vector<MidiChunk> streams;
  MidiPlaylists playlists;
};

// Reads them. An image under 65 bytes, or one of a big-endian session, gives no clips, placements or chunks. With a
// song start MIDI placements before the tick origin keep their sign.
ClipSource read_clip_source(const SessionImage& image, const std::vector<Block>& roots,
                            const std::vector<AudioFileEntry>& files, const std::vector<AudioFileFacts>& facts,
                            const Clock& clock, Skips& skips);
MidiSource read_midi_source(const SessionImage& image, const std::vector<Block>& roots, const Clock& clock,
                            Skips& skips);

// The track names of all audio placements, then of all MIDI placements, repeats kept.
std::vector<std::string_view> placement_names(const ClipSource& audio, const MidiSource& midi);

}  // namespace frt

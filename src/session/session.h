// The session as tables: filled once by read_session, never changed after. Behind it nobody sees bytes of the session.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "image/blocks.h"
#include "image/damage.h"
#include "image/skips.h"
#include "ptf/ptf_format.h"
#include "session/clips/clip_source.h"
#include "session/clock.h"
#include "session/headers/headers.h"
#include "session/headers/saved_by.h"
#include "session/media/file_folders.h"
#include "session/mixer/mixer.h"

namespace frt {

// What the file itself tells, beside the tables in its image.
struct FileFacts {
  int version = 0;        // the version byte
  std::int64_t rate = 0;  // Hz as stated; positions of a session that states none count at kUsualRate
  const std::vector<AudioFileEntry>& audio_files;
  const std::vector<std::int64_t>& audio_file_lengths;  // samples, by file
  const std::vector<AudioFileFacts>& audio_file_facts;  // by file number
};

struct Media {
  std::span<const AudioFileEntry> files;  // the session's audio files in the order of its list
  std::span<const std::int64_t> lengths;  // samples, by file
  std::span<const AudioFileFacts> facts;  // by file number
  AudioFileFolders folders;
  std::vector<std::string_view> own_chain;  // the session's own folder, from the volume down; empty if not told
  // By clip number: the audio file of a freeze render; nothing for a row that names no file.
  std::vector<std::optional<std::uint16_t>> freeze_files;
};

struct Session {
  int version = 0;        // the version byte
  std::int64_t rate = 0;  // Hz, as stated
  SavedBy saved_by;
  Damage damage;
  Clock clock;
  Headers headers;
  ClipSource clips;
  MidiSource midi;
  Mixer mixer;
  TrackList track_list;
  Media media;
  Skips skipped;  // what readers refused
};

struct ReadOptions {
  double tempo_override = 0;  // BPM, 0 for none
};

// Reads every table of the session. The image and the vectors of `file` must live as long as the result.
Session read_session(const SessionImage& image, const FileFacts& file, const ReadOptions& options);

// Every table as readable rows, for looking at a session and for tests of its readers. Behind the tables stands what
// readers refused: content type, position, why.
std::string dump(const Session& session);

}  // namespace frt

// The one list of readers.
#include "session/headers/tempo_map.h"
#include "session/media/freeze_table.h"
#include "session/media/own_chain.h"
#include "session/mixer/display_rows.h"
#include "session/session.h"

namespace frt {

Session read_session(const SessionImage& image, const FileFacts& file, const ReadOptions& options) {
  Session session;
  Skips& skips = session.skipped;
  const std::vector<Block> roots = walk_roots(image.bytes());
  session.version = file.version;
  session.rate = file.rate > 0 ? file.rate : kUsualRate;
  session.saved_by = read_saved_by(image);
  session.damage = measure_damage(image);

  session.clock.rate = static_cast<double>(session.rate);
  session.clock.tempo = read_tempo(image, session.clock.rate, options.tempo_override);
  session.headers.meters = read_meter_map(image, skips);
  session.headers.locations = read_memory_locations(image, skips);
  session.headers.settings = read_session_settings(image);

  session.clips = read_clip_source(image, roots, file.audio_files, file.audio_file_facts, session.clock, skips);
  session.midi = read_midi_source(image, roots, session.clock, skips);

  std::vector<DisplayRow> display_rows = read_display_rows(image, skips);
  session.mixer = read_mixer(image, roots, placement_names(session.clips, session.midi), display_rows);
  session.track_list = read_track_list(image, session.mixer, std::move(display_rows));

  session.media.files = file.audio_files;
  session.media.lengths = file.audio_file_lengths;
  session.media.facts = file.audio_file_facts;
  session.media.own_chain = read_own_chain(image);
  session.media.folders = read_audio_file_folders(image, skips);
  session.media.freeze_files = read_freeze_table(image);
  return session;
}

}  // namespace frt

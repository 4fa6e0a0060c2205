// The project's tracks: one <TRACK block each, every value of its lines, and what stands inside.
#pragma once

#include <vector>

#include "run/counters.h"
#include "run/progress.h"
#include "writer/audio_item.h"
#include "writer/rpp_text.h"
#include "writer/writer_tables.h"

namespace frt {

// Writes all track blocks: the tracks in list order and, if every soloed track was muted, the track that keeps the
// others silent. Reports each track to `progress` if there is one.
void write_tracks(ProjectText& out, const std::vector<OutputTrack>& tracks, const WriterTables& tables,
                  AudioItems& items, RunCounters& counters, frtgui::Progress* progress);

}  // namespace frt

// The project's tracks: one <TRACK block each and what stands inside.
#pragma once

#include <span>

#include "mix/track_page.h"
#include "run/progress.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes a block for each page. Reports each to `progress` if there is one.
void write_tracks(ProjectText& out, std::span<const TrackPage> pages, frtgui::Progress* progress);

// Writes the blocks that stand for send targets alone, behind all others.
void write_return_tracks(ProjectText& out, std::span<const ReturnPage> pages);

// The empty, soloed track that keeps all others silent.
void write_solo_keeper(ProjectText& out);

}  // namespace frt

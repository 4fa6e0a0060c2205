// The whole project as pages: what the writer prints, top to bottom, and what was counted on the way.
#pragma once

#include <span>
#include <vector>

#include "mix/header_page.h"
#include "mix/items.h"
#include "mix/midi_items.h"
#include "mix/routing.h"
#include "mix/track_page.h"

namespace frt {

struct MixCounts {
  HeaderCounts header;
  RoutingCounts routing;
  TrackCounts tracks;
  int return_tracks = 0;  // written behind the others
  FxCounts fx;
  TrimCounts trims;
  ItemCounts items;
  MidiItemCounts midi;
};

struct Mix {
  HeaderPage header;
  Routing routing;
  std::vector<TrackPage> tracks;
  std::vector<ReturnPage> returns;
  bool solo_keeper = false;  // every soloed track was muted: an empty one keeps the others silent
  MixCounts counts;
};

// Decides every value of the project. Finishes the items of `tracks`, which, like `session`, `plugins` and `tables`,
// must live as long as the result.
Mix mix_tracks(const Session& session, const Plugins& plugins, std::vector<OutputTrack>& tracks,
               const TrackFacts& facts, const MixTables& tables, MediaFiles& media, const ConversionOptions& options);

}  // namespace frt

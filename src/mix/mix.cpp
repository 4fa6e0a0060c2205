#include "mix/mix.h"

#include <string_view>
#include <utility>
#include <vector>

namespace frt {

Mix mix_tracks(const Session& session, std::vector<OutputTrack>& tracks, const TrackFacts& facts,
               const MixTables& tables, MediaFiles& media, const ConversionOptions& options) {
  Mix mix;
  Header header = make_header_page(session, options);
  mix.header = std::move(header.page);
  mix.counts.header = std::move(header.counts);

  mix.routing = route_tracks(session.mixer, tracks, options);
  mix.counts.routing = std::move(mix.routing.counts);
  std::vector<std::string_view> returns;
  for (const auto& [name, index] : mix.routing.return_index) returns.push_back(name);
  mix.counts.return_tracks = static_cast<int>(returns.size());
  const Bound bound = bind_tracks(session, tracks, facts, returns);
  // Groups, folders and colours are worked out here, on the final list, when they are built.
  TrackPages pages = make_track_pages(session, bound, tracks, mix.routing, tables, options);
  mix.returns = std::move(pages.returns);
  mix.tracks = std::move(pages.pages);
  mix.counts.tracks = std::move(pages.counts);
  mix.solo_keeper = mix.counts.tracks.solo_keeper;
  mix.counts.midi = mix_midi_items(session, mix.tracks, options);
  mix.counts.items = mix_items(tracks, media, session.clock, options);
  return mix;
}

}  // namespace frt

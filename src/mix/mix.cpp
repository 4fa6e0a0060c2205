#include "mix/mix.h"

#include <string_view>
#include <utility>
#include <vector>

namespace frt {
namespace {

// The chains in the order of the project: the master's, those of tracks, those of return tracks.
FxCounts mix_fx_chains(const Session& session, const Plugins& plugins, const TrackFacts& facts, const Trims& trims,
                       const ConversionOptions& options, Mix& mix) {
  FxChainMaker maker(session, plugins, mix.routing.keys, trims, options);
  const auto strip = [&](std::string_view name) {
    const auto width = facts.width.find(name);
    return FxStrip{.name = name, .channels = width == facts.width.end() ? 2 : width->second};
  };
  FxStrip master = strip(session.mixer.master.name);
  master.of_master = true;
  mix.header.master.fx = maker.make(master);
  for (TrackPage& page : mix.tracks) {
    FxStrip track = strip(page.track->key());
    track.has_midi = !page.track->midi_items.empty();
    track.flipped = page.flipped_side;
    page.fx = maker.make(track);
  }
  for (ReturnPage& page : mix.returns) {
    FxStrip bus = strip(page.name);
    bus.flipped = page.flipped_side;
    page.fx = maker.make(bus);
  }
  return maker.take_counts();
}

}  // namespace

Mix mix_tracks(const Session& session, const Plugins& plugins, std::vector<OutputTrack>& tracks,
               const TrackFacts& facts, const MixTables& tables, MediaFiles& media, const ConversionOptions& options) {
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
  const Trims trims = measure_trims(session.mixer.inserts);
  TrimPolarity polarity(trims);
  TrackPages pages = make_track_pages(session, bound, tracks, mix.routing, tables, polarity, options);
  mix.returns = std::move(pages.returns);
  mix.tracks = std::move(pages.pages);
  mix.counts.tracks = std::move(pages.counts);
  mix.solo_keeper = mix.counts.tracks.solo_keeper;
  mix.counts.trims = polarity.counts();
  mix.counts.fx = mix_fx_chains(session, plugins, facts, trims, options, mix);
  mix.counts.midi = mix_midi_items(session, mix.tracks, options);
  mix.counts.items = mix_items(tracks, media, session.clock, options);
  return mix;
}

}  // namespace frt

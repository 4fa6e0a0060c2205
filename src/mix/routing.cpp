#include "mix/routing.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace frt {
namespace {

// A source's first pair leaves by its main output; channels 1 and 2 of a leg route are its second pair.
void route_legs(const Mixer& mixer, const RouteEnds& ends, Routing& routing) {
  for (const LegRoute& route : mixer.leg_routes) {
    const std::string_view name = mixer.routing[route.source].display_name;
    const std::optional<TrackIndex> source = ends.source(name);
    if (!source) continue;
    const int pair = (route.first_channel + 1) / 2;
    int& channels = routing.leg_channels[name];
    channels = std::max(channels, 2 * pair + 2);
    routing.bus_legs[mixer.routing[route.target].display_name].push_back({*source, 2 * pair});
  }
}

// Return tracks stand behind the written tracks. Video tracks come between them when they are built.
ReturnIndex index_returns(const Receives& receives, const RouteEnds& ends, std::size_t tracks) {
  ReturnIndex returns;
  auto position = static_cast<TrackIndex>(tracks);
  for (const auto& [target, records] : receives) {
    if (!ends.is_written(target)) returns.emplace_hint(returns.end(), target, position++);
  }
  return returns;
}

// A track whose output is a bus that some aux takes feeds that aux and nothing else. One whose bus nobody takes stays
// on the main output.
void feed_auxes(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, Routing& routing) {
  for (const TrackRouting& row : mixer.routing) {
    if (row.output.empty() || !buses.channels.contains(row.output)) continue;
    const std::string_view aux = resolve_bus(buses, row.output).aux;
    if (aux.empty() || aux == row.display_name) continue;
    const std::optional<TrackIndex> source = ends.source(row.display_name);
    if (!source || !ends.is_key(aux)) continue;
    routing.no_main_send.insert(row.display_name);
    routing.bus_feeds[aux].push_back(*source);
  }
}

void close_outputs(const Mixer& mixer, const RouteEnds& ends, Routing& routing) {
  for (const TrackRouting& row : mixer.routing) {
    if (!row.no_output || !ends.source(row.display_name)) continue;
    if (routing.no_main_send.insert(row.display_name).second)
      routing.counts.no_output_names.emplace_back(row.display_name);
  }
}

void widen_auxes(const Mixer& mixer, Routing& routing) {
  constexpr std::size_t kStereo = 2;
  std::unordered_map<std::string_view, std::size_t> channels;  // of several buses of one name the last
  for (const Route& route : mixer.routes) {
    if (route.kind == Route::kBus) channels.insert_or_assign(route.name, route.channels.size());
  }
  for (const TrackRouting& row : mixer.routing) {
    if (row.input_kind != Route::kBus) continue;
    const auto bus = channels.find(row.input_bus);
    if (bus != channels.end() && bus->second > kStereo)
      routing.aux_width.insert_or_assign(row.display_name, static_cast<int>(bus->second));
  }
}

}  // namespace

Routing route_tracks(const Mixer& mixer, std::span<const OutputTrack> tracks, const ConversionOptions& options) {
  Routing routing;
  const RouteEnds ends(tracks);
  route_legs(mixer, ends, routing);
  const BusMaps buses = build_bus_maps(mixer.routes, mixer.routing);
  routing.sends = route_sends(mixer, buses, ends, tracks.size());
  routing.return_index = index_returns(routing.sends.receives, ends, tracks.size());
  routing.counts.multi_mono_pairs = find_multi_mono_pairs(mixer);
  feed_auxes(mixer, buses, ends, routing);
  close_outputs(mixer, ends, routing);
  widen_auxes(mixer, routing);
  if (!options.no_sidechain)
    routing.keys = wire_key_inputs(mixer, buses, ends, routing.return_index, routing.counts.multi_mono_pairs);
  routing.counts.sends = std::move(routing.sends.counts);
  routing.counts.keys = std::move(routing.keys.counts);
  return routing;
}

}  // namespace frt

#include "model/bus_maps.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace frt {

std::span<const std::uint16_t> BusMaps::channels_of(std::string_view bus) const {
  const auto found = channels.find(bus);
  return found == channels.end() ? std::span<const std::uint16_t>() : found->second;
}

BusMaps build_bus_maps(std::span<const Route> routes, std::span<const TrackRouting> rows) {
  BusMaps maps;
  std::unordered_map<std::string_view, int> uses;
  std::unordered_map<std::uint64_t, const Route*> by_ids;
  const auto key = [](std::uint32_t id0, std::uint32_t id1) { return std::uint64_t{id0} << 32 | id1; };
  for (const Route& route : routes) {
    if (route.kind != Route::kBus) continue;
    ++uses[route.name];
    maps.channels.try_emplace(route.name, route.channels);
    by_ids.try_emplace(key(route.id0, route.id1), &route);
  }
  std::erase_if(maps.channels, [&](const auto& entry) { return uses[entry.first] > 1; });

  for (const TrackRouting& row : rows) {
    if (row.input_kind != Route::kBus || row.input_bus.empty()) continue;
    const std::string_view aux = row.display_name.empty() ? row.name : row.display_name;
    maps.bus_aux.insert_or_assign(row.input_bus, aux);
    const auto route = by_ids.find(key(row.input_id0, row.input_id1));
    if (route == by_ids.end()) continue;
    for (const std::uint16_t channel : route->second->channels) maps.channel_aux.insert_or_assign(channel, aux);
  }
  return maps;
}

ResolvedBus resolve_bus(const BusMaps& maps, std::string_view bus) {
  if (const auto taken = maps.bus_aux.find(bus); taken != maps.bus_aux.end()) return {taken->second, 1};
  ResolvedBus resolved;
  std::array<std::string_view, Route::kMostChannels> met;
  for (const std::uint16_t channel : maps.channels_of(bus)) {
    const auto aux = maps.channel_aux.find(channel);
    const auto end = met.begin() + resolved.count;
    if (aux == maps.channel_aux.end() || end == met.end() || std::find(met.begin(), end, aux->second) != end) continue;
    if (resolved.count == 0) resolved.aux = aux->second;
    *end = aux->second;
    ++resolved.count;
  }
  return resolved;
}

}  // namespace frt

// Which track stands for a bus: the session knows buses by name and by channel, and a row by the path it takes in.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>

#include "session/mixer/mixer_tables.h"

namespace frt {

// Points into the routes and rows that it was made of.
struct BusMaps {
  std::unordered_map<std::string_view, std::span<const std::uint16_t>> channels;  // of buses whose name is theirs alone
  std::unordered_map<std::uint16_t, std::string_view> channel_aux;  // the aux that takes a bus with this channel
  std::unordered_map<std::string_view, std::string_view> bus_aux;   // the aux that takes the bus of this name

  // None for a name that no bus or several bear.
  std::span<const std::uint16_t> channels_of(std::string_view bus) const;
};

BusMaps build_bus_maps(std::span<const Route> routes, std::span<const TrackRouting> rows);

struct ResolvedBus {
  std::string_view aux;  // empty if nobody takes the bus
  int count = 0;         // auxes that take it, or parts of it
};

ResolvedBus resolve_bus(const BusMaps& maps, std::string_view bus);

}  // namespace frt

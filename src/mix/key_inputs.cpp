#include "mix/key_inputs.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <utility>

namespace frt {
namespace {

std::optional<std::string_view> key_bus(const Mixer& mixer, const InsertRecord& insert) {
  if (insert.key_id < 0 || insert.key_id > UINT16_MAX) return std::nullopt;
  const auto found = mixer.key_buses.find(static_cast<std::uint16_t>(insert.key_id));
  return found == mixer.key_buses.end() ? std::nullopt : std::optional(found->second);
}

// "Snare.L" is a leg of "Snare".
std::string_view without_leg(std::string_view bus) {
  constexpr std::size_t kLongestLeg = 2;
  const std::size_t dot = bus.rfind('.');
  return dot != bus.npos && bus.size() - dot - 1 <= kLongestLeg ? bus.substr(0, dot) : bus;
}

// ---- one pass over the plug-ins ----

class KeyWiring {
 public:
  KeyWiring(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, const ReturnIndex& returns,
            const std::vector<MultiMonoPair>& pairs)
      : mixer_(mixer), buses_(buses), ends_(ends), returns_(returns) {
    for (const MultiMonoPair& pair : pairs) second_legs_.insert(pair.second_leg);
  }

  KeyInputs wire() {
    for (const auto& [strip, chain] : mixer_.inserts.strips) wire_strip(strip, chain);
    close_key_only_returns();
    return std::move(keys_);
  }

 private:
  struct Source {
    TrackIndex index = 0;
    std::string_view bus;
  };

  void wire_strip(std::string_view strip, const std::vector<std::uint32_t>& chain) {
    std::unordered_map<std::string_view, int> slots;  // by bus
    StripKeys keys;
    int unresolved_behind_first = 0;
    const std::vector<InsertRecord>& records = mixer_.inserts.records;
    for (const std::uint32_t i : chain) {
      const InsertRecord& insert = records[i];
      if (insert.key_id < 0) continue;
      const std::optional<Source> source = source_of(insert);
      if (!source) {
        ++keys_.counts.unresolved;
        if (!slots.empty()) ++unresolved_behind_first;
        continue;
      }
      const auto [entry, is_new] = slots.try_emplace(source->bus, static_cast<int>(slots.size()));
      const int slot = entry->second;
      if (is_new && slot == 0) {
        keys.first_key = source->index;
        keys.first_key_bus = source->bus;
        ++keys_.counts.wired;
      } else if (is_new) {
        keys.extra_keys.push_back(source->index);
        ++keys_.counts.more_wired;
      }
      keys_.insert_key_slot.emplace(&insert, slot);
      if (slot > 0) keys_.keyed_inserts.insert(&insert);
    }
    if (slots.empty()) return;
    // A plug-in listens to channels 3/4 whether its own key came there or not.
    if (unresolved_behind_first > 0) {
      keys_.counts.unresolved -= unresolved_behind_first;
      keys_.counts.key_mismatch[std::string(strip)] += unresolved_behind_first;
    }
    for (const std::uint32_t i : chain) {
      if (key_bus(mixer_, records[i]) == keys.first_key_bus) keys_.keyed_inserts.insert(&records[i]);
    }
    keys_.strips.emplace(strip, std::move(keys));
  }

  // The track that the plug-in listens to, and the bus by which it does; nothing where the key can't be resolved.
  std::optional<Source> source_of(const InsertRecord& insert) {
    const std::optional<std::string_view> bus = key_bus(mixer_, insert);
    if (!bus || second_legs_.contains(&insert)) return std::nullopt;
    const std::string_view base = without_leg(*bus);
    std::string_view full = *bus;
    std::string_view source = resolve_bus(buses_, full).aux;
    if (source.empty() && base != full) {
      source = resolve_bus(buses_, base).aux;
      if (!source.empty()) full = base;
    }
    const bool resolved = !source.empty();
    if (!resolved) {
      if (!buses_.channels.contains(full) && !buses_.channels.contains(base)) return std::nullopt;
      source = full;
    }
    std::optional<TrackIndex> index = track_of(source);
    if (!index && base != source) {
      source = base;
      index = track_of(source);
    }
    if (!index) return std::nullopt;
    if (!resolved) keys_.key_only_returns.insert(source);
    return Source{*index, full};
  }

  std::optional<TrackIndex> track_of(std::string_view name) const {
    if (const auto track = ends_.by_either_name(name)) return track;
    const auto found = returns_.find(name);
    return found == returns_.end() ? std::nullopt : std::optional(found->second);
  }

  // A return track that shares a channel with a key bus which no aux takes is a key source alone.
  void close_key_only_returns() {
    std::unordered_map<std::uint16_t, std::vector<std::string_view>> returns_on;  // by channel
    for (const auto& [name, index] : returns_) {
      for (const std::uint16_t channel : buses_.channels_of(name)) returns_on[channel].push_back(name);
    }
    if (returns_on.empty()) return;
    for (const auto& [strip, chain] : mixer_.inserts.strips) {
      for (const std::uint32_t i : chain) {
        const std::optional<std::string_view> bus = key_bus(mixer_, mixer_.inserts.records[i]);
        if (!bus || !resolve_bus(buses_, *bus).aux.empty()) continue;
        for (const std::uint16_t channel : buses_.channels_of(*bus)) {
          const auto found = returns_on.find(channel);
          if (found == returns_on.end()) continue;
          for (const std::string_view name : found->second) keys_.key_only_returns.insert(name);
          returns_on.erase(found);  // all of them are closed
        }
      }
    }
  }

  const Mixer& mixer_;
  const BusMaps& buses_;
  const RouteEnds& ends_;
  const ReturnIndex& returns_;
  std::unordered_set<const InsertRecord*> second_legs_;
  KeyInputs keys_;
};

}  // namespace

std::vector<MultiMonoPair> find_multi_mono_pairs(const Mixer& mixer) {
  using Pair = std::pair<std::uint16_t, std::uint16_t>;
  const auto pair_of = [](std::uint16_t a, std::uint16_t b) { return Pair(std::minmax(a, b)); };
  std::unordered_map<std::string_view, std::uint16_t> mono;  // of several buses of one name the last
  std::set<Pair> stereo;
  for (const Route& route : mixer.routes) {
    if (route.kind != Route::kBus) continue;
    if (route.channels.size() == 1) mono.insert_or_assign(route.name, route.channels[0]);
    if (route.channels.size() == 2) stereo.insert(pair_of(route.channels[0], route.channels[1]));
  }

  std::vector<MultiMonoPair> pairs;
  const std::vector<InsertRecord>& records = mixer.inserts.records;
  for (const auto& [strip, chain] : mixer.inserts.strips) {
    for (std::size_t k = 1; k < chain.size(); ++k) {
      const InsertRecord &first = records[chain[k - 1]], &second = records[chain[k]];
      if (first.signature != second.signature || first.key_id == second.key_id) continue;
      const auto first_bus = key_bus(mixer, first), second_bus = key_bus(mixer, second);
      if (!first_bus || !second_bus) continue;
      const auto left = mono.find(*first_bus), right = mono.find(*second_bus);
      if (left == mono.end() || right == mono.end() || !stereo.contains(pair_of(left->second, right->second))) continue;
      pairs.push_back({strip, *first_bus, *second_bus, &first, &second});
    }
  }
  return pairs;
}

KeyInputs wire_key_inputs(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, const ReturnIndex& returns,
                          const std::vector<MultiMonoPair>& pairs) {
  return KeyWiring(mixer, buses, ends, returns, pairs).wire();
}

}  // namespace frt

#include "model/midi/placed_tracks.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

namespace frt {

PlacedMidiTracks number_midi_tracks(const std::vector<Placement>& placements) {
  PlacedMidiTracks placed;
  // Told apart by where their names stand, then those of one name are one.
  using Place = std::tuple<std::uint16_t, const char*, std::size_t>;
  std::map<Place, std::uint32_t> number_at;
  for (const Placement& placement : placements)
    number_at.try_emplace({placement.track_index, placement.track_name.data(), placement.track_name.size()});
  for (const auto& [place, number] : number_at) {
    const auto& [index, text, size] = place;
    placed.tracks.push_back({index, std::string_view(text, size), 0});
  }
  const auto key = [](const PlacedMidiTracks::Track& track) { return std::tie(track.index, track.name); };
  std::sort(placed.tracks.begin(), placed.tracks.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
  placed.tracks.erase(std::unique(placed.tracks.begin(), placed.tracks.end(),
                                  [&](const auto& a, const auto& b) { return key(a) == key(b); }),
                      placed.tracks.end());

  std::unordered_map<std::string_view, std::uint32_t> numbers;
  for (PlacedMidiTracks::Track& track : placed.tracks) {
    const auto [found, is_new] = numbers.try_emplace(track.name, static_cast<std::uint32_t>(placed.names.size()));
    if (is_new) placed.names.push_back(track.name);
    track.name_number = found->second;
  }
  for (auto& [place, number] : number_at) {
    const auto& [index, text, size] = place;
    const PlacedMidiTracks::Track wanted{index, std::string_view(text, size), 0};
    const auto track = std::lower_bound(placed.tracks.begin(), placed.tracks.end(), wanted,
                                        [&](const auto& a, const auto& b) { return key(a) < key(b); });
    number = static_cast<std::uint32_t>(track - placed.tracks.begin());
  }
  placed.track_of.reserve(placements.size());
  for (const Placement& placement : placements) {
    placed.track_of.push_back(
        number_at.at({placement.track_index, placement.track_name.data(), placement.track_name.size()}));
  }
  return placed;
}

}  // namespace frt

#include "model/midi/midi_names.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/text.h"
#include "model/clips/shape_clips.h"

namespace frt {
namespace {

constexpr std::size_t kShortestHead = 3;

// By what an old name is known again: what stands before its first number or extension.
std::string head_of(std::string_view name) {
  const std::size_t end = name.find_first_of(".0123456789");
  return lower_ascii(name.substr(0, end == name.npos ? end : std::max(end, kShortestHead)));
}

// The names that are still to be had.
class FreeNames {
 public:
  FreeNames(std::span<const std::string_view> names, const std::unordered_set<std::string_view>& audio_names)
      : names_(names), free_(names.size()) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      free_[i] = !names[i].empty() && !audio_names.contains(names[i]);
      if (free_[i]) places_[names[i]].push_back(i);
    }
    for (auto& [name, places] : places_) std::reverse(places.begin(), places.end());
  }

  std::string_view name(std::size_t place) const { return names_[place]; }

  std::optional<std::size_t> take_equal(std::string_view name) {
    const auto found = places_.find(name);
    if (found == places_.end() || found->second.empty()) return std::nullopt;
    const std::size_t place = found->second.back();
    found->second.pop_back();
    free_[place] = false;
    return place;
  }

  // Only behind all of take_equal.
  std::optional<std::size_t> take_alike(const std::string& head) {
    if (keys_.empty()) make_keys();
    const auto from = std::lower_bound(keys_.begin(), keys_.end(), head,
                                       [](const Key& key, const std::string& text) { return key.text < text; });
    const auto to = std::partition_point(from, keys_.end(), [&](const Key& key) { return key.text.starts_with(head); });
    const std::size_t place = least(static_cast<std::size_t>(from - keys_.begin()),  //
                                    static_cast<std::size_t>(to - keys_.begin()));
    if (place >= names_.size()) return std::nullopt;
    take(place);
    return place;
  }

  std::optional<std::size_t> take_at(std::size_t place) {
    if (place >= names_.size() || !free_[place]) return std::nullopt;
    take(place);
    return place;
  }

 private:
  struct Key {
    std::string text;
    std::size_t place;
  };

  void make_keys() {
    for (std::size_t i = 0; i < names_.size(); ++i) keys_.push_back({file_key(names_[i]), i});
    std::sort(keys_.begin(), keys_.end(),
              [](const Key& a, const Key& b) { return std::tie(a.text, a.place) < std::tie(b.text, b.place); });
    // A tree over the keys: node 1 is the root, the children of k are 2k and 2k + 1, each holds the least free place.
    least_.assign(keys_.size() * 2, names_.size());
    leaf_of_.resize(names_.size());
    for (std::size_t k = 0; k < keys_.size(); ++k) {
      leaf_of_[keys_[k].place] = k + keys_.size();
      if (free_[keys_[k].place]) least_[k + keys_.size()] = keys_[k].place;
    }
    for (std::size_t node = keys_.size(); node-- > 1;) least_[node] = std::min(least_[2 * node], least_[2 * node + 1]);
  }

  void take(std::size_t place) {
    free_[place] = false;
    std::size_t node = leaf_of_[place];
    least_[node] = names_.size();
    while (node /= 2) least_[node] = std::min(least_[2 * node], least_[2 * node + 1]);
  }

  std::size_t least(std::size_t from, std::size_t to) const {
    std::size_t found = names_.size();
    for (std::size_t a = from + keys_.size(), b = to + keys_.size(); a < b; a /= 2, b /= 2) {
      if (a & 1) found = std::min(found, least_[a++]);
      if (b & 1) found = std::min(found, least_[--b]);
    }
    return found;
  }

  std::span<const std::string_view> names_;
  std::vector<bool> free_;
  std::unordered_map<std::string_view, std::vector<std::size_t>> places_;  // the first at the end
  std::vector<Key> keys_;
  std::vector<std::size_t> least_, leaf_of_;
};

}  // namespace

void bring_midi_names_up_to_date(std::vector<OutputTrack>& midi, std::span<const OutputTrack> audio,
                                 std::span<const std::string_view> strip_table) {
  std::unordered_set<std::string_view> audio_names;
  for (const OutputTrack& track : audio) {
    audio_names.insert(track.name);
    audio_names.insert(track.pt_name);
  }
  FreeNames names(strip_table, audio_names);
  std::vector<std::size_t> left;
  for (std::size_t i = 0; i < midi.size(); ++i)
    if (!names.take_equal(midi[i].name)) left.push_back(i);
  for (const std::size_t i : left) {
    OutputTrack& track = midi[i];
    std::optional<std::size_t> place = names.take_alike(head_of(track.name));
    if (!place) place = names.take_at(i);
    if (!place || names.name(*place) == track.name) continue;
    track.name = names.name(*place);
    track.pt_name.clear();
  }
}

}  // namespace frt

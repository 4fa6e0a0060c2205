#include "mix/bind.h"

#include <optional>
#include <unordered_set>

namespace frt {
namespace {

using StripsByName = std::unordered_map<std::string_view, const StripRecord*>;

StripsByName index_strips(const std::vector<StripRecord>& strips) {
  StripsByName index;
  index.reserve(strips.size());
  for (const StripRecord& strip : strips) {
    if (strip.has_mixer_data) index.try_emplace(strip.name, &strip);
  }
  return index;
}

template <typename T>
T value_or(const T* value, T other) {
  return value ? *value : other;
}

}  // namespace

Bound bind_tracks(const Session& session, std::span<const OutputTrack> tracks, const TrackFacts& facts,
                  std::span<const std::string_view> returns) {
  const Mixer& mixer = session.mixer;
  const StripsByName strips = index_strips(mixer.strips);
  // The row with the name under which it stands: what a row says is told once for each such name.
  struct NamedRow {
    const TrackRow* row = nullptr;
    std::string_view name;
  };
  auto rows = by_row_names<NamedRow>(mixer.rows, [&](std::size_t k) {
    return k < mixer.track_rows.size() ? std::optional(NamedRow{&mixer.track_rows[k], {}}) : std::nullopt;
  });
  for (auto& [name, named] : rows) named.name = name;

  Bound bound;
  bound.tracks.reserve(tracks.size());
  std::unordered_set<std::string_view> rows_met;
  const auto bind_row = [&](BoundTrack& binding, const NamedRow* named) {
    if (!named) return;
    binding.row = named->row;
    binding.row_name = named->name;
    binding.first_of_row = rows_met.insert(named->name).second;
  };
  for (const OutputTrack& track : tracks) {
    BoundTrack& binding = bound.tracks.emplace_back();
    binding.strip = value_or(find_by_names(strips, track), static_cast<const StripRecord*>(nullptr));
    bind_row(binding, find_by_names(rows, track));
    binding.timebase = value_or(find_by_names(facts.timebase, track), Timebase::kDefault);
    binding.width = value_or(find_by_names(facts.width, track), 0);
    binding.surround_legs = value_or(find_by_names(facts.surround_legs, track), 0);
  }
  for (const std::string_view name : returns) {
    BoundTrack& binding = bound.returns.emplace_back();
    if (const auto strip = strips.find(name); strip != strips.end()) binding.strip = strip->second;
    const auto row = rows.find(name);
    bind_row(binding, row == rows.end() ? nullptr : &row->second);
  }
  return bound;
}

std::vector<TrackComment> track_comments(const Mixer& mixer) {
  std::vector<TrackComment> comments;
  for (std::size_t k = 0; k < mixer.rows.size() && k < mixer.track_rows.size(); ++k) {
    if (!mixer.track_rows[k].comment.empty()) comments.emplace_back(mixer.rows[k].label(), mixer.track_rows[k].comment);
  }
  return comments;
}

}  // namespace frt

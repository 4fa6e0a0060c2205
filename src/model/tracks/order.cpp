#include "model/tracks/order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/name_hash.h"
#include "base/next_free.h"
#include "base/text.h"

namespace frt {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The tracks of each name, in list order; what is claimed is passed over for good.
class ByTrackName {
 public:
  void add(std::string_view name, std::size_t index) { tracks_[std::string(name)].indices.push_back(index); }
  std::size_t first_free(std::string_view name, const NextFree& claims) {
    if (name.empty()) return kNone;
    const auto found = tracks_.find(name);
    if (found == tracks_.end()) return kNone;
    auto& [indices, at] = found->second;
    while (at < indices.size() && claims.taken(indices[at])) ++at;
    return at < indices.size() ? indices[at] : kNone;
  }

 private:
  struct Indices {
    std::vector<std::size_t> indices;
    std::size_t at = 0;
  };
  HashByName<Indices> tracks_;
};

OutputTrack empty_track(std::string_view name, bool is_midi = false) {
  OutputTrack track;
  track.name = track.pt_name = name;
  track.is_midi = is_midi;
  return track;
}

class StripWalk {
 public:
  explicit StripWalk(OrderInput& input)
      : input_(input), audio_claims_(input.folded.size()), midi_claims_(input.midi.size()) {
    for (std::size_t i = 0; i < input.folded.size(); ++i) {
      // Names are kept apart from the tracks: a claimed track has moved away.
      if (!input.folded[i].pt_name.empty()) audio_by_name_.add(input.folded[i].pt_name, i);
    }
    for (std::size_t i = 0; i < input.midi.size(); ++i) midi_by_name_.add(input.midi[i].name, i);
    for (const StripRow& row : input.rows) current_names_.insert(row.current_name);
    tracks_.reserve(input.folded.size() + input.midi.size() + input.rows.size());
    ordered_.facts = std::move(input.facts);
  }

  OrderedTracks run() {
    for (std::size_t r = 0; r < input_.rows.size(); ++r) place_row(input_.rows[r], click_test(r));
    house_lanes();
    leave_out_freeze_records();
    append_unmatched();
    insert_basic_folders();
    set_flags();
    ordered_.tracks = std::move(tracks_);
    return std::move(ordered_);
  }

 private:
  ClickTest click_test(std::size_t row) const {
    return row < input_.click_tests.size() ? input_.click_tests[row] : ClickTest{};
  }

  void place_row(const StripRow& row, ClickTest click) {
    const std::string_view name = row.label();
    switch (row.kind) {
      case StripKind::kMaster:
        return;  // the project's master, written in its header
      case StripKind::kVca:
        if (input_.vca_masters.contains(name)) tracks_.push_back(empty_track(name));
        return;
      case StripKind::kVideo:
        ordered_.counts.video_tracks.emplace_back(name);
        return;
      default:
        break;
    }
    if (name.empty()) return;
    const bool no_click = input_.options.no_click;
    if (no_click && click.holds_click && !click.candidate) ordered_.counts.click_kept.emplace_back(name);
    const bool midi = plays_midi(row.kind);
    const std::size_t before = tracks_.size();
    if (midi ? take_midi(row) : take_audio(row)) {
      if (no_click && click.candidate) ordered_.counts.click_kept.push_back(tracks_[before].name);
    } else if (no_click && click.candidate) {
      ++ordered_.counts.click_left_out;
      ordered_.counts.click_left_out_names.emplace_back(name);
    } else {
      tracks_.push_back(empty_track(name, midi));
      ++ordered_.counts.empty_tracks;
    }
  }

  // NextFree the row's track and those directly behind it that belong to it: its other legs, its "[alt takes]".
  bool take_audio(const StripRow& row) {
    const std::string_view name = row.label();
    std::size_t hit = audio_by_name_.first_free(name, audio_claims_);
    // A renamed track's playlist can still bear the name the track had; unless another track bears it now.
    if (hit == kNone && row.original_name != name && !current_names_.contains(row.original_name)) {
      hit = audio_by_name_.first_free(row.original_name, audio_claims_);
    }
    if (hit == kNone) return false;
    const std::string pt_name = input_.folded[hit].pt_name;
    const std::string companion = pt_name + " [";
    take_folded(hit);
    for (std::size_t i = audio_claims_.from(hit + 1); i < input_.folded.size(); i = audio_claims_.from(i + 1)) {
      const OutputTrack& next = input_.folded[i];
      const bool belongs =
          next.pt_name == pt_name || (next.pt_name.empty() && std::string_view(next.name).starts_with(companion));
      if (!belongs) break;
      take_folded(i);
    }
    return true;
  }

  void take_folded(std::size_t i) {
    audio_claims_.take(i);
    tracks_.push_back(std::move(input_.folded[i]));
  }

  bool take_midi(const StripRow& row) {
    const std::size_t hit = std::min(midi_by_name_.first_free(row.current_name, midi_claims_),
                                     midi_by_name_.first_free(row.original_name, midi_claims_));
    if (hit == kNone) return false;
    midi_claims_.take(hit);
    tracks_.push_back(std::move(input_.midi[hit]));
    tracks_.back().is_midi = true;
    return true;
  }

  // Lanes whose owner has no clips of its own: the owner stands in the list by now, as an empty track.
  void house_lanes() {
    HashByName<std::size_t> first_of_name;
    for (std::size_t i = 0; i < tracks_.size(); ++i) first_of_name.try_emplace(tracks_[i].pt_name, i);
    for (std::size_t i = audio_claims_.from(0); i < input_.folded.size(); i = audio_claims_.from(i + 1)) {
      OutputTrack& lane = input_.folded[i];
      if (lane.lane_parent.empty()) continue;
      const auto home = first_of_name.find(lane.lane_parent);
      if (home == first_of_name.end()) continue;
      tracks_[home->second].lanes.push_back({std::move(lane.lane_name), std::move(lane.items)});
      audio_claims_.take(i);
      ++ordered_.counts.homeless_lanes;
    }
  }

  void leave_out_freeze_records() {
    std::optional<FreezeFiles> files;  // made only if there is a record
    for (std::size_t i = audio_claims_.from(0); i < input_.folded.size(); i = audio_claims_.from(i + 1)) {
      const OutputTrack& record = input_.folded[i];
      if (!record.freeze_record) continue;
      audio_claims_.take(i);
      ++ordered_.counts.freeze_records;
      if (record.frozen_track.empty() || record.items.empty()) continue;
      if (!files) files.emplace(input_.freeze_files, input_.audio_files);
      auto& renders = ordered_.freeze_renders[record.frozen_track];
      for (const OutputItem& item : record.items) {
        renders.emplace_back(std::string(files->of_clip(item.clip_index)), item.position);
      }
    }
  }

  // The audio file of a freeze render, by its clip's number.
  class FreezeFiles {
   public:
    FreezeFiles(std::span<const std::optional<std::uint16_t>> file_numbers, std::span<const AudioFileEntry> audio_files)
        : file_numbers_(file_numbers) {
      for (const AudioFileEntry& file : audio_files) names_.try_emplace(file.index, file.name);
    }
    // The file's base name; empty if the table has no such row or the list no such file.
    std::string_view of_clip(std::uint32_t clip) const {
      if (clip >= file_numbers_.size() || !file_numbers_[clip]) return {};
      const auto name = names_.find(*file_numbers_[clip]);
      if (name == names_.end()) return {};
      const std::size_t separator = last_separator(name->second);
      return separator == std::string_view::npos ? name->second : name->second.substr(separator + 1);
    }

   private:
    std::span<const std::optional<std::uint16_t>> file_numbers_;
    std::unordered_map<std::uint16_t, std::string_view> names_;
  };

  void append_unmatched() {
    int unmatched = 0;
    for (std::size_t i = audio_claims_.from(0); i < input_.folded.size(); i = audio_claims_.from(i + 1)) {
      if (!input_.folded[i].orphan_playlist) ++unmatched;
      take_folded(i);
    }
    for (std::size_t i = midi_claims_.from(0); i < input_.midi.size(); i = midi_claims_.from(i + 1)) {
      ++unmatched;
      midi_claims_.take(i);
      tracks_.push_back(std::move(input_.midi[i]));
    }
    ordered_.counts.unmatched_tracks = unmatched;
  }

  // Basic folders have no strip: each gets an empty track before the first track of a later row.
  void insert_basic_folders() {
    const std::span<const DisplayRow> rows = input_.display_rows;
    HashByName<std::size_t> first_of_name;
    for (std::size_t i = 0; i < tracks_.size(); ++i) first_of_name.try_emplace(tracks_[i].pt_name, i);
    // Where the tracks of all rows behind row r begin in the list; its end if they have none.
    std::vector<std::size_t> later_begin(rows.size(), tracks_.size());
    for (std::size_t r = rows.size(); r-- > 1;) {
      const auto track = rows[r].name.empty() ? first_of_name.end() : first_of_name.find(rows[r].name);
      later_begin[r - 1] = std::min(later_begin[r], track == first_of_name.end() ? tracks_.size() : track->second);
    }
    struct Insertion {
      std::size_t before;
      std::string_view name;
    };
    std::vector<Insertion> insertions;
    for (std::size_t r = 0; r < rows.size(); ++r) {
      const DisplayRow& row = rows[r];
      if (row.row_type != DisplayRow::kBasicFolder || !row.has_track) continue;
      if (!first_of_name.try_emplace(std::string(row.name), tracks_.size()).second) continue;
      insertions.push_back({later_begin[r], row.name});
      ordered_.facts.width.insert_or_assign(std::string(row.name), 2);
    }
    if (insertions.empty()) return;
    std::stable_sort(insertions.begin(), insertions.end(),
                     [](const Insertion& a, const Insertion& b) { return a.before < b.before; });
    std::vector<OutputTrack> merged;
    merged.reserve(tracks_.size() + insertions.size());
    auto next = insertions.begin();
    for (std::size_t i = 0; i <= tracks_.size(); ++i) {
      for (; next != insertions.end() && next->before == i; ++next) merged.push_back(empty_track(next->name));
      if (i < tracks_.size()) merged.push_back(std::move(tracks_[i]));
    }
    tracks_ = std::move(merged);
  }

  void set_flags() {
    std::unordered_set<std::string_view> inactive, voice_off;
    for (const StripRow& row : input_.rows) {
      if (row.row_active) continue;
      inactive.insert(row.current_name);
      inactive.insert(row.original_name);
    }
    inactive.insert(input_.inactive_names.begin(), input_.inactive_names.end());
    voice_off.insert(input_.voice_off_names.begin(), input_.voice_off_names.end());

    // A name counts once, however many tracks bear it.
    std::unordered_set<std::string_view> counted_inactive, counted_voice_off;
    for (OutputTrack& track : tracks_) {
      if (track.pt_name.empty()) continue;
      if (inactive.contains(track.pt_name)) {
        track.inactive = true;
        if (counted_inactive.insert(track.pt_name).second) ++ordered_.counts.inactive_tracks;
      }
      if (voice_off.contains(track.pt_name)) {
        track.voice_off = true;
        if (counted_voice_off.insert(track.pt_name).second) ++ordered_.counts.voice_off_tracks;
      }
    }
  }

  OrderInput& input_;
  OrderedTracks ordered_;
  NextFree audio_claims_, midi_claims_;
  ByTrackName audio_by_name_, midi_by_name_;
  std::unordered_set<std::string_view> current_names_;
  std::vector<OutputTrack> tracks_;
};

}  // namespace

OrderedTracks order_tracks(OrderInput input) { return StripWalk(input).run(); }

}  // namespace frt

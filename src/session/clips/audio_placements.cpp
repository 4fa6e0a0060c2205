#include "session/clips/audio_placements.h"

#include <algorithm>
#include <utility>

#include "image/content_types.h"
#include "session/clips/placement_layout.h"

namespace frt {
namespace {

// Track entry, from its mark
//   + 9        counted name of n bytes
//   + 14 + n   u32  number of channels
//   + 18 + n   u16  each: the channel's track number
namespace track_entry {
constexpr std::uint64_t kName = 9, kChannels = 14, kFirstChannel = 18;
constexpr std::uint32_t kMostChannels = 1024;
}  // namespace track_entry

class AudioPlacements {
 public:
  AudioPlacements(ByteView image, const TrackNames& tracks, const std::vector<ClipRecord>& clips)
      : image_(image), tracks_(tracks), clips_(clips) {}

  // The older form: placements stand where their clips say.
  void add_older(const Block& root) {
    std::uint32_t number = 0;
    for (const Block& track : children_of(image_, root, content::kOldTrackPlacements)) {
      for (const Block& list : children_of(image_, track, content::kOldPlacementList)) {
        for (const Block& entry : children_of(image_, list, content::kOldPlacement)) {
          if (!image_.has(entry.start, placement::kOldSize)) continue;
          const std::uint16_t clip = *image_.u16(entry.start + placement::kClip);
          if (clip >= clips_.size()) continue;
          const std::int64_t start = clips_[clip].start;
          add(number, clip, static_cast<std::uint64_t>(start), start, false);
        }
      }
      ++number;
    }
  }

  void add_newer(const Block& root) {
    std::uint32_t number = 0;
    for (const Block& track : children_of(image_, root, content::kPlaylist)) {
      for (const Block& list : children_of(image_, track, content::kPlacementList)) {
        // In sessions of Pro Tools 10 the last list ends with its playlist: the byte behind it is another block's.
        const std::uint64_t mark = list.end() + placement_list::kPassedOver;
        if (mark < track.end() && image_.u8_or(mark, 0) == 1) continue;
        const bool muted = image_.u8_or(list.start + placement_list::kMuted, 0) == 1;
        for (const Block& entry : children_of(image_, list, content::kPlacement)) {
          if (!image_.has(entry.start, placement::kSize)) continue;
          const std::uint64_t at = entry.start + placement::kPosition;
          const std::uint32_t low = *image_.u32(at);
          add(number, *image_.u16(entry.start + placement::kClip), image_.u40(at).value_or(low), low, muted);
        }
      }
      ++number;
    }
  }

  std::vector<Placement> take() { return std::move(placements_); }

 private:
  // `position` is the stored value, `start` what of it counts on a sample-based track.
  void add(std::uint32_t number, std::uint16_t clip, std::uint64_t position, std::int64_t start, bool muted) {
    if (number > placement::kLastTrack || clip >= clips_.size()) return;
    const auto track = tracks_.find(static_cast<std::uint16_t>(number));
    if (track == tracks_.end()) return;
    Placement placed;
    placed.track_name = track->second;
    placed.track_index = placed.stored_track_index = static_cast<std::uint16_t>(number);
    placed.clip = clip;
    placed.position40 = position;
    placed.raw_start = static_cast<std::uint32_t>(position);
    placed.start = start;
    placed.muted = muted;
    placements_.push_back(placed);
  }

  ByteView image_;
  const TrackNames& tracks_;
  const std::vector<ClipRecord>& clips_;
  std::vector<Placement> placements_;
};

// Track numbers run from 0 without gaps: a track with no placement leaves none behind.
void close_up_numbers(std::vector<Placement>& placements) {
  std::stable_sort(placements.begin(), placements.end(),
                   [](const Placement& a, const Placement& b) { return a.track_index < b.track_index; });
  std::uint16_t next = 0;
  for (std::size_t i = 0; i < placements.size(); ++i) {
    if (i > 0 && placements[i].stored_track_index != placements[i - 1].stored_track_index) ++next;
    placements[i].track_index = next;
  }
}

}  // namespace

TrackNames read_track_names(ByteView image, const std::vector<Block>& roots) {
  TrackNames tracks;
  TrackNameLength length(image.size());
  for (const Block& root : roots) {
    if (root.content_type != content::kTrackEntries) continue;
    for (const Block& entry : children_of(image, root, content::kTrackEntry)) {
      const std::string_view name = read_counted(image, entry.start + track_entry::kName);
      const std::uint64_t behind = entry.start + name.size();
      const std::uint32_t channels =
          std::min(image.u32_or(behind + track_entry::kChannels, 0), track_entry::kMostChannels);
      for (std::uint32_t k = 0; k < channels; ++k) {
        const auto number = image.u16(behind + track_entry::kFirstChannel + 2 * k);
        if (!number) break;
        const auto [track, is_new] = tracks.emplace(*number, name);
        if (is_new) track->second = length.limit(name);
      }
    }
  }
  return tracks;
}

std::vector<Placement> read_audio_placements(ByteView image, const std::vector<Block>& roots, const TrackNames& tracks,
                                             const std::vector<ClipRecord>& clips) {
  AudioPlacements audio(image, tracks, clips);
  for (const Block& root : roots) {
    if (root.content_type == content::kOldPlacements) audio.add_older(root);
    if (root.content_type == content::kPlaylists) audio.add_newer(root);
  }
  std::vector<Placement> placements = audio.take();
  close_up_numbers(placements);
  return placements;
}

}  // namespace frt

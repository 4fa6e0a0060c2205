#include "session/clips/midi_playlists.h"

#include <string>
#include <string_view>

#include "image/content_types.h"
#include "session/clips/placement_layout.h"
#include "session/clips/playlists.h"
#include "session/clock.h"

namespace frt {
namespace {

// A MIDI playlist as far as its positions go: the counted name, then placement lists anywhere inside the block.
namespace positions_layout {
constexpr std::uint64_t kName = 9, kNameText = 13;
constexpr std::uint32_t kLongestName = 200, kLeastSize = 12, kMostSize = 400000;
constexpr std::uint32_t kLeastListSize = 20, kMostListSize = 4000;
}  // namespace positions_layout

std::uint64_t from_origin(std::uint64_t position) {
  return position > kTickOrigin ? position - kTickOrigin : kTickOrigin - position;
}

// Whatever byte stands behind the entries: unlike an audio playlist's it tells no timebase.
void add_info(const SessionImage& image, const FlatBlock& block, std::uint64_t& steps_left, MidiPlaylists& playlists,
              Skips& skips) {
  std::uint64_t behind = 0;
  const auto record = read_playlist_entries(image.bytes(), block.start, 1, steps_left, behind);
  if (!record || !record->entries_read) {
    skips.add(content::kMidiPlaylist, block.start, "name or entries");
    return;
  }
  std::vector<MidiInfoEntry>& info = playlists.info[std::string(record->name)];
  for (const PlaylistEntry& entry : record->entries)
    info.push_back({entry.clip_or_fade_index, entry.color, entry.kind, entry.locked, from_origin(entry.position)});
}

void add_positions(const SessionImage& image, const FlatBlock& block, std::uint64_t& steps_left,
                   MidiPlaylists& playlists) {
  namespace at = positions_layout;
  if (block.size < at::kLeastSize || block.size > at::kMostSize) return;
  const ByteView bytes = image.bytes();
  const auto length = bytes.u32(block.start + at::kName);
  if (!length || *length > at::kLongestName) return;
  const auto name = bytes.text(block.start + at::kNameText, *length);
  if (!name) return;
  std::vector<MidiPosition> positions;
  for (const std::uint32_t i : image.of_type(content::kMidiPlacementList, block.start, block.end())) {
    if (steps_left == 0) break;
    --steps_left;
    const FlatBlock& list = image.block(i);
    if (list.size < at::kLeastListSize || list.size > at::kMostListSize) continue;
    const FlatBlock* placed = image.first_of_type(content::kPlacement, list.start, list.end());
    if (!placed) continue;
    const auto clip = bytes.u16(placed->start + placement::kClip);
    const auto position = bytes.u40(placed->start + placement::kPosition);
    if (clip && position) positions.push_back({*clip, *position});
  }
  if (positions.empty()) return;
  std::vector<MidiPosition>& of_name = playlists.positions[std::string(*name)];
  of_name.insert(of_name.end(), positions.begin(), positions.end());
}

}  // namespace

MidiPlaylists read_midi_playlists(const SessionImage& image, Skips& skips) {
  MidiPlaylists playlists;
  // Playlists of a session don't share their entries; blocks made to overlap could.
  std::uint64_t info_steps = image.size() / 7, position_steps = image.size() / 7;
  for (const std::uint32_t i : image.of_type(content::kMidiPlaylist)) {
    add_info(image, image.block(i), info_steps, playlists, skips);
    add_positions(image, image.block(i), position_steps, playlists);
  }
  return playlists;
}

}  // namespace frt

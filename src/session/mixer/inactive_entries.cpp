#include "session/mixer/inactive_entries.h"

#include <cstdint>

#include "image/content_types.h"

namespace frt {
namespace {

// One entry of the track table, from its mark
//   p + 11  u32  name length n, 1 to 80
//   p + 15       name
//   end - 1 u8   0 for an inactive track, in entries of exactly n + 72 bytes of size
// Sessions saved before 2024 have entries of other sizes, or end theirs with a u16, the track's colour, whose high
// byte is always 0: read as a mark it would mute every track. There the rows' own marks tell the inactive ones.
namespace entry_layout {
constexpr std::uint64_t kName = 11;
constexpr std::uint32_t kLongestName = 80, kSizeBeyondName = 72;
}  // namespace entry_layout

// Indices of the track palette stand in rows of 23; multiples of 24 do not exist.
bool is_track_color(std::uint16_t value) { return value >= 25 && value <= 95 && value % 24 != 0; }

}  // namespace

std::vector<std::string_view> read_inactive_entries(const SessionImage& image) {
  using namespace entry_layout;
  std::vector<std::string_view> names;
  for (const std::uint32_t index : image.of_type(content::kTrackTableEntry)) {
    const FlatBlock& entry = image.block(index);
    const std::string_view name = read_name(image.bytes(), entry.start + kName, 1, kLongestName);
    if (name.empty() || entry.size != name.size() + kSizeBeyondName) continue;
    const auto tail = image.bytes().u16(entry.end() - 2);
    if (!tail || *tail >> 8 != 0 || is_track_color(*tail)) continue;
    names.push_back(name);
  }
  return names;
}

}  // namespace frt

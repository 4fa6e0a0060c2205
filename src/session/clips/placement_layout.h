// Layout of a placement and of the list it stands in, shared by audio and MIDI.
#pragma once

#include <cstdint>

namespace frt {

// Placement, from its mark
//   + 11  u16  number of the clip
//   + 16  u40  position: samples or biased ticks; the older form has none
namespace placement {
constexpr std::uint64_t kClip = 11, kPosition = 16, kOldSize = 15, kSize = 20, kMidiSize = 21;
constexpr std::uint32_t kLastTrack = 65535;
}  // namespace placement

// Placement list, from its mark; a byte that marks it as passed over stands behind its end
namespace placement_list {
constexpr std::uint64_t kMuted = 18, kPassedOver = 2;
}  // namespace placement_list

}  // namespace frt

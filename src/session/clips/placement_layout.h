// Layout of a placement and of the list it stands in, shared by audio and MIDI.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

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

// Every track, and each of its placements, carries its name on. Longer names than usual are kept while all of them
// together stay below a part of the session; then they are cut, or a few tracks with a name made to reach to the
// session's end would multiply it.
class TrackNameLength {
 public:
  explicit TrackNameLength(std::uint64_t session_size) : long_names_left_(session_size / kLongNamesShare) {}

  std::string_view limit(std::string_view name) {
    if (name.size() <= kUsualName) return name;
    if (name.size() > long_names_left_) return name.substr(0, kUsualName);
    long_names_left_ -= name.size();
    return name;
  }

 private:
  static constexpr std::size_t kUsualName = 512, kLongNamesShare = 8;
  std::uint64_t long_names_left_;
};

}  // namespace frt

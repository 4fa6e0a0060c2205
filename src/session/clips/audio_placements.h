// Where each audio clip stands on which track.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "image/blocks.h"
#include "session/clips/clip_tables.h"

namespace frt {

// Track numbers and the name that each was first given; a stereo track gives two numbers of one name.
using TrackNames = std::unordered_map<std::uint16_t, std::string_view>;
TrackNames read_track_names(ByteView image, const std::vector<Block>& roots);

// All placements of the clips given, by the closed-up number of their track, then in file order.
std::vector<Placement> read_audio_placements(ByteView image, const std::vector<Block>& roots, const TrackNames& tracks,
                                             const std::vector<ClipRecord>& clips);

}  // namespace frt

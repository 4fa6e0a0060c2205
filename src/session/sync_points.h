// The sync points of the audio clips.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "session/blocks.h"

namespace frt {

struct SyncPoint {
  std::string_view clip_name;
  std::int64_t samples = 0;  // from the clip's start; 0 for none
};

// One per audio clip entry (0x2629, older 0x1008) of the audio clip lists (0x262a, 0x100b), in file order.
std::vector<SyncPoint> read_sync_points(const SessionImage& image);

}  // namespace frt

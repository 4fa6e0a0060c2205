// The sync points of the audio clips.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "image/blocks.h"

namespace frt {

struct SyncPoint {
  std::string_view clip_name;
  std::int64_t samples = 0;  // from the clip's start; 0 for none
};

// One per audio clip entry of the audio clip lists, newer and older form, in file order.
std::vector<SyncPoint> read_sync_points(const SessionImage& image);

}  // namespace frt

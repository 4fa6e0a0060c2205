// A surround panner that places a track.
#pragma once

#include <cstddef>

namespace frt {

struct SurroundPanner {
  int speakers = 0;
  bool stereo_source = false;
  std::size_t lanes = 0;  // panner lanes of its source
};

}  // namespace frt

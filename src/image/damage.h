// Whether the blocks of an image reach its last byte: a session that was cut or broken on its way still opens.
#pragma once

#include <cstdint>

#include "image/blocks.h"

namespace frt {

// How far the session's blocks reach. Positions are byte offsets in the image.
struct Damage {
  std::uint64_t image_size = 0;
  std::uint64_t last_end = 0;   // the end of the last whole block, 0 if there is none
  bool walked = false;          // the blocks reach the image's end, so the top level was walked
  std::uint64_t break_pos = 0;  // where that walk stopped

  // Bytes are missing at the end.
  bool incomplete() const { return last_end != 0 && last_end < image_size; }
  // All bytes are there; the chain of blocks breaks.
  bool broken() const { return !incomplete() && walked && break_pos < image_size; }
};

// Measures damage; an image under 10 bytes is not measured.
Damage measure_damage(const SessionImage& image);

}  // namespace frt

// The session's fade table: the lengths and shapes that playlist entries refer to by number.
#pragma once

#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One record per block 0x262f, in file order. A record that can't be made sense of has kind 0, so that the numbers
// of those behind it stay. Lengths are in samples or ticks, whichever the playlist that refers to the fade counts in.
std::vector<FadeRecord> read_fades(const SessionImage& image);

}  // namespace frt

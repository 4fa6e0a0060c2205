// The clip table by which a freeze render finds its audio file (0x2632).
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "session/blocks.h"

namespace frt {

// The audio file number of each row of the session's first 0x2632 block, in file order; nothing for a row that
// names no file. Empty without such a block.
std::vector<std::optional<std::uint16_t>> read_freeze_table(const SessionImage& image);

}  // namespace frt

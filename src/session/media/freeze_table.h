// The clip table by which a freeze render finds its audio file.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "image/blocks.h"

namespace frt {

// The audio file number of each row of the session's first freeze table, in file order; nothing for a row that
// names no file. Empty without such a block.
std::vector<std::optional<std::uint16_t>> read_freeze_table(const SessionImage& image);

}  // namespace frt

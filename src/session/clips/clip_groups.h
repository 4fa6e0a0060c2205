// Clip groups: the session's group definitions.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"

namespace frt {

struct ClipGroupRow {
  std::string_view name;
  bool is_trim = false;           // flag behind the name: a trim of another group
  bool trailer_flag = false;      // the first byte behind the header block is not 0; audio groups have both flags clear
  std::uint8_t trailer_byte = 0;  // the sixth byte there
  std::int64_t source = 0;        // position in the group's own time, bias removed
  std::int64_t length = 0;        // samples
  std::int64_t start = 0;
  bool valid = false;  // source, length and start were read
};

// One row per group of the session's first group list, in file order; a playlist's group
// entries refer to them by number. A group of another shape gives a row that is not valid.
std::vector<ClipGroupRow> read_clip_group_rows(const SessionImage& image, Skips& skips);

}  // namespace frt

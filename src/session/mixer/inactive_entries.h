// Tracks that the track table itself marks as inactive.
#pragma once

#include <string_view>
#include <vector>

#include "image/blocks.h"

namespace frt {

// The names of the track table entries whose last byte is 0, in file order, repeats kept. Only the entries whose
// last byte is such a mark are looked at; of other sessions no entry gives a name.
std::vector<std::string_view> read_inactive_entries(const SessionImage& image);

}  // namespace frt

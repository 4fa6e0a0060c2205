// The paths of the session's I/O setup.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The names of the buses, in file order, each once, without those that are single legs of another path. Nothing where
// the session holds no I/O setup or one that doesn't read to its end.
std::optional<std::vector<std::string_view>> read_listed_buses(ByteView image, const std::vector<Block>& roots);

// The paths that bear ids, by which rows name what they take in; equal ones once.
std::vector<Route> find_routes(const SessionImage& image);

}  // namespace frt

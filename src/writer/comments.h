// Track comments: as the project's notes, or as an empty item with notes at the start of the track.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "writer/rpp_text.h"

namespace frt {

// The comment of one track, by the track's name.
using TrackComment = std::pair<std::string_view, std::string_view>;

// A comment as lines that cannot break the project's text: no control bytes but tabs, no line that is only ">", no
// empty lines at the end. Empty for a comment without text.
std::vector<std::string> comment_lines(std::string_view comment);

// The project's NOTES block with every comment, in the order given; empty text if there are no comments.
std::string project_notes(const std::vector<TrackComment>& comments);

// The item that bears a comment on its track. `track_seed` is the seed of the track's GUID.
void write_comment_item(ProjectText& out, std::string_view comment, std::uint32_t track_seed);

}  // namespace frt

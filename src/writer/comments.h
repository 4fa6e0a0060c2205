// Track comments: as the project's notes, or as an empty item with notes at the start of the track.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mix/bind.h"
#include "writer/rpp_text.h"

namespace frt {

// A comment as lines that cannot break the project's text: no control bytes but tabs, no line that is only ">", no
// empty lines at the end. Empty for a comment without text.
std::vector<std::string> comment_lines(std::string_view comment);

// The project's NOTES block with every comment, in the order given; nothing if there are no comments.
void write_project_notes(ProjectText& project, const std::vector<TrackComment>& comments);

// The item that bears a comment on its track. `track_seed` is the seed of the track's GUID.
void write_comment_item(ProjectText& out, std::string_view comment, std::uint32_t track_seed);

}  // namespace frt

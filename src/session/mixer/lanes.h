// Automation lanes: small blocks that don't say what they drive. Their place among their sisters and how
// many there are tell volume, mute, pan and trim apart.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The lane whose block stands at the position; an empty lane if its size is too small or passes the image's end.
AutomationLane read_lane(ByteView image, std::uint64_t position);

// The positions of the lanes that stand in a range.
struct LaneSet {
  std::vector<std::uint64_t> flat;                 // all of them, in file order
  std::vector<std::uint64_t> free;                 // those in no group
  std::vector<std::vector<std::uint64_t>> groups;  // one list for each lane group, in file order
  bool grouped = false;                            // some group holds at least two
};
LaneSet collect_lanes(const SessionImage& image, std::uint64_t start, std::uint64_t end);

// How wide the strip of a row is: 0 one channel, 1 two, 2 more. 1 where the row doesn't tell.
int strip_width_code(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end);

// Gives each strip with mixer data the lanes of its row: which drives what, whether the strip is stereo, its dual
// pan, and the resting fader, which the volume lane knows better than the level record.
void read_strip_lanes(const SessionImage& image, std::vector<StripRecord>& strips);

// "name (3 control slots)" of each strip with mixer data and lanes whose number fits neither a mono nor a stereo strip.
// A strip without any lane tells nothing of its width and is not among them.
std::vector<std::string> strips_of_unknown_width(const std::vector<StripRecord>& strips);

// For FRT_DUMP_LANES: the lanes of each strip that has volume, mute or pan points, on standard error.
void dump_lanes(const std::vector<StripRecord>& strips);

}  // namespace frt

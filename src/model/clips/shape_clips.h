// The stage "clips": every placement of an audio clip becomes an item with its place in seconds, fades, gain, lock and
// colour.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/clips/deleted_placements.h"
#include "model/clips/fades.h"
#include "model/clips/pairing.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/clips/clip_source.h"
#include "session/clock.h"

namespace frt {

struct GainCounts {
  int clips = 0;
  int group_clips = 0;                   // inside a clip group with a fixed gain of its own
  std::vector<std::string> group_lines;  // inside a clip group whose gain is a drawn line: item names
  int count_disagrees = 0;               // gain entries whose stated point count disagrees with their length
};

// Clips that keep REAPER busy with their peaks on first open.
struct LongClips {
  int count = 0;               // clips over ten minutes
  double longest_minutes = 0;  // over all clips
};

struct ClipCounts {
  PairingCounts pairing;
  bool sync_points_unmatched = false;
  DeletedCounts deleted;
  FadeCounts fades;
  GainCounts gain;
  LongClips long_clips;
};

struct ShapedClips {
  std::vector<TrackNode> tracks;  // by track number; each track's items by position
  ClipGain gain;                  // what OutputItem::gain_envelope points into: it must live as long as the items
  ClipCounts counts;
};

// Runs the passes of the stage in their order; takes the clips over, as the session's largest tables. Texts of the
// result are views into the image. Tables that can't be read leave items without what they would have given.
ShapedClips shape_clips(ClipSource source, const Clock& clock, const ConversionOptions& options);

// True if an item that starts `raw_offset` samples into the file of a clip of that name plays the file from its start
// and the clip is no cut piece ("Take-02").
bool is_whole_file(std::string_view clip_name, std::uint32_t raw_offset);

// By what audio files are compared: the base name without a short extension and without digits behind "_" or "-" at
// its end, in lower case.
std::string file_key(std::string_view base_name);

}  // namespace frt

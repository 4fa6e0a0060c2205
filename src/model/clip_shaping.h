// The stage "clips": every placement of an audio clip becomes an item with its place in seconds, fades, gain, lock
// and colour.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/tempo.h"
#include "model/tracks.h"
#include "run/counters.h"
#include "run/options.h"
#include "session/blocks.h"
#include "session/clip_gain.h"
#include "session/tables.h"

namespace frt {

struct ShapedClips {
  std::vector<TrackNode> tracks;  // by track number; each track's items by position
  // What OutputItem::gain_envelope points into: it must live as long as the items.
  std::unique_ptr<const ClipGain> gain;
};

// Runs the passes of the stage in their order. `sample_rate` in Hz. Texts of the result are views into the image
// and the clip tables. Tables that can't be read leave items without what they would have given.
ShapedClips shape_clips(const SessionImage& image, const ClipTables& clips, const TempoMap& tempo, double sample_rate,
                        const ConversionOptions& options, RunCounters& counters);

// True if an item that starts `raw_offset` samples into the file of a clip of that name plays the file from its start
// and the clip is no cut piece ("Take-02").
bool is_whole_file(std::string_view clip_name, std::uint32_t raw_offset);

// By what audio files are compared: the base name without a short extension and without digits behind "_" or "-" at
// its end, in lower case.
std::string file_key(std::string_view base_name);

}  // namespace frt

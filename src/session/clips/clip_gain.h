// Clip gain: the session's gain table and the clips that point into it.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "session/clips/clip_tables.h"

namespace frt {

struct ClipGainEntry {
  double db = 0;                  // the first point's gain
  std::vector<GainPoint> points;  // two or more; empty for a fixed gain
};

struct ClipGain {
  std::vector<ClipGainEntry> entries;
  std::unordered_map<std::string_view, std::uint32_t> index_of;  // by clip name; every index is inside `entries`
  int stated_counts_wrong = 0;  // entries whose stated point count disagrees with their length

  // The entry of a clip or clip group by its exact name; null for none.
  const ClipGainEntry* find(std::string_view clip_name) const;
};

// Reads the gain table and the headers of all clips and clip groups. Without a table no clip has a gain.
ClipGain read_clip_gain(const SessionImage& image, Skips& skips);

// Where the gain index (u32) of a name block that ends at `end` stands. `trailer` is the position of the last
// trailer mark (the six bytes ff ff 04 00 04 00) in it, `end` if it holds none.
std::uint64_t gain_index_offset(ByteView image, std::uint64_t end, std::uint64_t trailer);

}  // namespace frt

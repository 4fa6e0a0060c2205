// Key inputs of plug-ins: what each of them listens to, and on which of its track's channels that arrives.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "mix/route_ends.h"
#include "model/bus_maps.h"
#include "session/mixer/mixer.h"

namespace frt {

// Two records that look like one plug-in with unlinked settings for left and right.
struct MultiMonoPair {
  std::string_view strip;
  std::string_view first_bus, second_bus;
  const InsertRecord* first_leg = nullptr;
  const InsertRecord* second_leg = nullptr;
};

// In name order of the strips.
std::vector<MultiMonoPair> find_multi_mono_pairs(const Mixer& mixer);

// What the plug-ins of one strip listen to.
struct StripKeys {
  TrackIndex first_key = 0;  // on channels 3/4
  std::string_view first_key_bus;
  std::vector<TrackIndex> extra_keys;  // on channels 5/6 and up
};

struct KeyCounts {
  int wired = 0;       // strips with a first key
  int more_wired = 0;  // further keys of such strips
  int unresolved = 0;
  std::map<std::string, int> key_mismatch;  // by strip: plug-ins that hear its first key instead of their own
};

struct KeyInputs {
  std::unordered_map<std::string_view, StripKeys> strips;
  // Position of the insert's key among its strip's: 0 on channels 3/4, 1 on 5/6 and so on.
  std::unordered_map<const InsertRecord*, int> insert_key_slot;
  std::unordered_set<const InsertRecord*> keyed_inserts;  // that hear their own key
  std::unordered_set<std::string_view> key_only_returns;  // return tracks that nothing but a key input listens to
  KeyCounts counts;
};

// Positions of return tracks by their name.
using ReturnIndex = std::map<std::string_view, TrackIndex>;

// The result points into the mixer.
KeyInputs wire_key_inputs(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, const ReturnIndex& returns,
                          const std::vector<MultiMonoPair>& pairs);

}  // namespace frt

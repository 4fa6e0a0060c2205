// The order of the written tracks: Pro Tools' edit window, top to bottom.
#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/tracks.h"
#include "run/counters.h"
#include "run/options.h"
#include "run/problem.h"
#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// What is known of a strip row as a click track.
struct ClickTest {
  bool candidate = false;    // it holds the click and nothing else
  bool holds_click = false;  // a click plug-in is among its inserts
};

struct OrderInput {
  const SessionImage& image;  // for the track table's own marks and the freeze renders' files
  const std::vector<StripRow>& rows;
  const ConversionOptions& options;
  TrackMaps& maps;                                     // gains `freeze_renders` and the widths of Basic folders
  std::vector<OutputTrack> folded = {};                // the audio tracks
  std::vector<OutputTrack> midi = {};                  // empty until MIDI tracks are made
  std::vector<DisplayRow> display_rows = {};           // as `read_display_rows` gives them
  std::vector<std::string_view> voice_off_names = {};  // as `read_inactive_names` gives them
  std::span<const AudioFileEntry> audio_files = {};
  std::set<std::string, std::less<>> vca_masters = {};  // those that link something; none until groups are read
  // One per row; none until inserts and routing are read: then no row is a click track.
  std::vector<ClickTest> click_tests = {};
};

// Puts the tracks into the order of the strip rows, adds an empty one for each strip without clips, finds lanes and
// freeze renders their place, appends what no row names, and sets `inactive` and `voice_off`. No track is dropped
// but freeze renders and, under --no-click, empty click tracks. Tracks that no row named set the problem
// "unmatched-tracks".
std::vector<OutputTrack> order_tracks(OrderInput input, RunCounters& counters, Problem& problem);

}  // namespace frt

// The order of the written tracks: Pro Tools' edit window, top to bottom.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/tracks.h"
#include "ptf/ptf_format.h"
#include "run/options.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// What is known of a strip row as a click track.
struct ClickTest {
  bool candidate = false;    // it holds the click and nothing else
  bool holds_click = false;  // a click plug-in is among its inserts
};

struct OrderInput {
  const std::vector<StripRow>& rows;
  const ConversionOptions& options;
  std::vector<OutputTrack> folded = {};  // the audio tracks
  std::vector<OutputTrack> midi = {};    // the MIDI tracks
  TrackFacts facts = {};
  std::span<const DisplayRow> display_rows = {};
  std::span<const std::string_view> inactive_names = {};  // by the track table's own marks
  std::span<const std::string_view> voice_off_names = {};
  std::span<const AudioFileEntry> audio_files = {};
  std::span<const std::optional<std::uint16_t>> freeze_files = {};  // by clip number
  std::set<std::string, std::less<>> vca_masters = {};  // those that link something; none until groups are read
  // One per row; none until inserts and routing are read: then no row is a click track.
  std::vector<ClickTest> click_tests = {};
};

struct OrderCounts {
  int empty_tracks = 0;    // strips without clips
  int homeless_lanes = 0;  // lanes of a parent that has no clips of its own
  int freeze_records = 0;
  int unmatched_tracks = 0;
  int inactive_tracks = 0, voice_off_tracks = 0;
  std::vector<std::string> video_tracks;
  int click_left_out = 0;
  std::vector<std::string> click_left_out_names, click_kept;
};

struct OrderedTracks {
  std::vector<OutputTrack> tracks;
  TrackFacts facts;  // those given, with the widths of Basic folders
  FreezeRenders freeze_renders;
  OrderCounts counts;
};

// Puts the tracks into the order of the strip rows, adds an empty one for each strip without clips, finds lanes and
// freeze renders their place, appends what no row names, and sets `inactive` and `voice_off`. No track is dropped
// but freeze renders and, under --no-click, empty click tracks.
OrderedTracks order_tracks(OrderInput input);

}  // namespace frt

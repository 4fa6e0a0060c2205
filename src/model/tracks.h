// The tracks and items of the project to be, as the passes of the model make them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/by_name.h"
#include "model/midi/midi_item.h"
#include "session/clips/clip_tables.h"

namespace frt {

struct MediaFile;

// One point of an item's gain line, in seconds from the item's start.
struct ItemGainPoint {
  double time = 0;
  double db = 0;
};

enum class FadeShape : std::uint8_t { kLinear, kCurved, kSCurve };

// One placed audio clip, times in seconds.
struct OutputItem {
  std::uint32_t clip_index = 0;    // index of the clip (its number in the audio clip list)
  std::uint32_t raw_position = 0;  // as stored: samples or biased ticks, low 32 bits
  std::uint32_t raw_offset = 0;    // samples
  std::uint32_t ordinal = 0;       // running number of this placement on its track
  double position = 0, length = 0, source_offset = 0;
  std::string_view clip_name;
  std::string_view file_name;   // the audio file's base name
  std::string_view group_name;  // the clip group it came from
  std::uint16_t file_index = 0;
  bool muted = false;
  bool whole_file = false;
  bool crossfaded = false;  // its end belongs to a crossfade
  bool stretched = false;
  bool over_next = false;      // drawn over the clip after it
  bool over_previous = false;  // drawn over the clip before it
  bool has_gain = false;
  bool locked = false;
  bool polarity = false;
  double playrate = 1.0;
  double fade_in = 0, fade_out = 0;
  FadeShape fade_in_shape = FadeShape::kLinear, fade_out_shape = FadeShape::kLinear;
  double gain_db = 0;
  double pitch_semitones = 0;
  std::vector<std::pair<double, double>> warp;  // item time, source time
  // Clip gain line: a view into the session's gain table; null for none.
  const std::vector<GainPoint>* gain_envelope = nullptr;
  int channel_mode = 0;          // 0 plays the file as it is, 3 + n its channel n alone
  double pan_side = 0;           // -1 and 1 for the legs of a folded stereo pair
  std::int32_t color = -2;       // palette index, -2 for none
  std::uint32_t clip_color = 0;  // the clip's colour in REAPER's form, 0 for none
  double sync_offset = 0;        // from the clip's start to its sync point
  std::int32_t ara_index = -1;
  double original_length = 0, original_offset = 0, original_position = 0;

  // Set when the written tracks are mixed.
  const MediaFile* media = nullptr;      // where the audio file lies
  std::vector<ItemGainPoint> gain_line;  // what is written of the gain line
};

// One per session track number that has a placement, before folding.
struct TrackNode {
  std::uint16_t track_index = 0;         // closed up
  std::uint16_t stored_track_index = 0;  // as the session numbers it
  std::string_view name;
  bool ticks = false;  // tick-based, else sample-based
  // Index of its playlist; nothing without one whose entries could be read.
  std::optional<std::size_t> playlist;
  // The name of its playlist, empty for none; where playlists go by number, one without a name bears its track's.
  std::string_view record_name;
  std::vector<OutputItem> items;
  std::vector<OutputItem> alternates;  // set aside: deleted placements (under --recover-deleted), stacked takes
};

struct Lane {
  std::string name;
  std::vector<OutputItem> items;
};

struct OutputTrack {
  std::string name;         // the text written as NAME
  std::string pt_name;      // the name by which strips, lanes and routes are found; empty for alternates
  std::string lane_parent;  // alternate playlist of a known owner: the owner's strip name
  std::string alt_parent;   // "[alt takes]" track of such a playlist: the owner's strip name
  std::string lane_name;    // a lane: the playlist's own name
  std::vector<Lane> lanes;  // playlists that ride on this track as fixed lanes
  double forced_pan = 0;    // -1 and 1 for a leg written alone
  bool is_midi = false;
  std::vector<OutputItem> items;  // by position
  std::vector<MidiItem> midi_items;
  bool freeze_record = false;
  std::string frozen_track;
  bool inactive = false;
  bool voice_off = false;
  bool alt_takes = false;        // holds set-aside placements of another track
  bool orphan_playlist = false;  // an alternate playlist without a known owner, or what was set aside from one

  bool is_leg() const { return forced_pan != 0; }
  // Its place in the look-ups: the Pro Tools name, or the written one if that is empty.
  std::string_view key() const { return pt_name.empty() ? std::string_view(name) : std::string_view(pt_name); }
};

// What a track's items and positions follow when the tempo changes.
enum class Timebase : std::uint8_t { kDefault, kTime, kBeats, kBeatsPosition };

// What folding knows of tracks by name: by the name they bear in the session.
struct TrackFacts {
  ByName<Timebase> timebase;
  ByName<int> width;          // folded legs
  ByName<int> surround_legs;  // only surround folds
};

// Frozen track -> (audio file name, position in seconds) of its renders.
using FreezeRenders = ByName<std::vector<std::pair<std::string, double>>>;

}  // namespace frt

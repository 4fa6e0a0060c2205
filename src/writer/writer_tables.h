// What the track blocks are printed from: the finished tables of a run, looked up by track name.
//
// The tables at the end are those of passes that are yet to come. Empty, as they are until then, each leaves its
// values at rest; the writer already asks them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/tempo.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/tables.h"

namespace frt {

using Names = std::set<std::string, std::less<>>;

// The strips that hold mixer data, by name; of equal names the first. Looked up, never walked.
using StripIndex = std::unordered_map<std::string_view, const StripRecord*>;
StripIndex index_strips(const std::vector<StripRecord>& strips);

// Palette indices of tracks.
struct TrackColors {
  ByName<std::int32_t> stored;  // set by hand
  ByName<std::int32_t> coded;   // what the session's colour coding shows
};

// What a track's group flags link, in the order of kGroupFields.
struct TrackGroups {
  enum Mask { kVolume, kMute, kSolo, kAutomationMode, kVcaMaster, kVcaMember, kMasks };
  std::array<ByName<std::uint32_t>, kMasks> masks;
  ByName<double> vca_master_db;  // the faders of VCA masters
};

// Names here are track keys: the Pro Tools name, or the written one if that is empty.
struct TrackRoutes {
  Names no_main_send;                 // no output, or an aux alone takes it
  ByName<int> one_sided;              // -1 or 1: fed to one channel of a stereo output
  Names prefader_sources;             // some send of theirs is taken before the fader
  ByName<int> extra_key_sources;      // tracks keyed by another; how many beyond the first
  ByName<int> surround_aux_channels;  // auxes that take a surround bus: its width
  ByName<int> bus_leg_channels;       // channels that a route to single legs of a bus needs
  Names inverted;                     // polarity switched over
};

struct TrackFolders {
  std::vector<std::string> bus_texts;  // ISBUS by index in the written list; empty text or none: no folder
  Names basic_folders;                 // folders without an audio path
};

struct SurroundPanner {
  int speakers = 0;
  bool stereo_source = false;
  std::size_t lanes = 0;  // panner lanes of its source
};

// What the session tells of a MIDI track beside its notes.
struct MidiTrackState {
  bool muted = false;
  bool has_mute_lane = false;
  bool other_lanes = false;
  AutomationLane mute_lane;
};

struct WriterTables {
  const ConversionOptions& options;
  const TempoMap& tempo;
  double sample_rate = 48000.0;  // Hz, never 0
  const StripIndex& strips;
  const ByName<TrackRow>& track_rows;
  const TrackMaps& maps;

  TrackColors colors = {};
  TrackGroups groups = {};
  TrackRoutes routes = {};
  TrackFolders folders = {};
  Names wide_strips = {};                        // wider than stereo or of unknown width
  ByName<SurroundPanner> surround_panners = {};  // by track key
  ByName<MidiTrackState> midi_states = {};       // by track key
  Names sample_based_midi = {};
};

}  // namespace frt

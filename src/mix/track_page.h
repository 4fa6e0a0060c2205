// One page a written track, and one a return track: every value that its block prints, decided.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/by_name.h"
#include "mix/bind.h"
#include "mix/envelopes.h"
#include "mix/fx_chain.h"
#include "mix/midi_items.h"
#include "mix/receives.h"
#include "mix/routing.h"
#include "mix/surround_panner.h"
#include "model/palette.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/session.h"
#include "standins/trim.h"

namespace frt {

enum class PanMode : std::uint8_t {
  kDefault,  // the project's
  kBalance,  // of a mono strip
  kDual,     // left and right panned apart
};

// Where a track stands in its folder.
struct FolderPlace {
  int kind = 0;   // 0 an ordinary track, 1 a folder's first, 2 the last of one or more folders
  int depth = 0;  // what the nesting changes by behind it
};

// Which group fields a track is in: bits of up to 32 groups, by what they link.
struct GroupLinks {
  enum Link { kVolume, kMute, kSolo, kAutomationMode, kVcaMaster, kVcaMember, kLinks };
  std::array<std::uint32_t, kLinks> masks{};
};

// What every track has of a mixer strip.
struct StripPage {
  std::uint32_t color = kDefaultTrackColor;
  AutomationMode automation_mode = AutomationMode::kOff;
  double volume = 1;                             // gain
  double pan = 0, left_pan = -1, right_pan = 1;  // -1 to 1
  bool mute = false;
  bool solo = false;
  bool solo_safe = false;
  bool inverted = false;                                        // polarity
  TrimPolarity::Side flipped_side = TrimPolarity::Side::kNone;  // of the strip, in its chain
  bool hidden = false;
  GroupLinks groups;
  int height = 0;  // pixels, 0 for REAPER's own
  bool main_send = true;
  FxChain fx;
  std::vector<SendReceive> send_receives;
  std::vector<Envelope> envelopes;
  std::string_view comment;  // written as an item of its own; empty for none
};

struct TrackPage : StripPage {
  const OutputTrack* track = nullptr;  // its name, items and lanes

  Timebase timebase = Timebase::kDefault;
  FolderPlace folder;
  PanMode pan_mode = PanMode::kDefault;
  int channels = 2;
  std::vector<BusReceive> bus_receives;  // ahead of its plug-ins, those of sends behind
  std::vector<MidiItemPage> midi_items;
  bool silenced_take = false;  // an alternate: a second line mutes it, whatever its strip says
};

// A send target that is no written track: what is sent there arrives on a track of its own.
struct ReturnPage : StripPage {
  std::string_view name;
  bool stereo = false;  // its strip is: left and right are panned apart
};

struct TrackCounts {
  int colored_tracks = 0, uncolored_tracks = 0;
  int coded_color_tracks = 0;  // coloured by the session's colour coding
  int automated_tracks = 0;    // set to Read
  int faders_at_unity = 0;     // the envelope alone carries the level
  EnvelopeCounts envelopes;
  int timebase_time = 0, timebase_beats = 0, timebase_beats_position = 0;
  int tracks_with_height = 0;
  int surround_aux_widths = 0;  // auxes as wide as the surround bus they take
  ReceiveCounts receives;
  // Muted tracks that feed a pre-fader send: faders down instead of muted, and those that stay muted.
  std::vector<std::string> prefader_faders_down, prefader_kept_muted;
  int midi_tracks_muted = 0, midi_mute_lanes = 0, midi_other_lanes = 0;
  std::vector<std::string> hidden_tracks, soloed_tracks, solo_safe_tracks, commented_tracks, automation_off_tracks;
  // Name and mode of tracks in another mode than Read, Off included.
  std::vector<std::pair<std::string, std::string_view>> other_mode_tracks;
  int tracks_not_in_read = 0;
  int soloed_and_muted = 0, soloed_with_mute_points = 0;
  bool solo_keeper = false;
  int orphan_playlists = 0;  // alternates without a parent, written muted
  int comment_items = 0;
};

// ---- tables of other passes; those of passes yet to come are empty, each leaves its values at rest ----

using Names = std::set<std::string, std::less<>>;

// Palette indices of tracks.
struct TrackColors {
  ByName<std::int32_t> stored;  // set by hand
  ByName<std::int32_t> coded;   // what the session's colour coding shows
};

struct TrackGroups {
  std::array<ByName<std::uint32_t>, GroupLinks::kLinks> masks;
  ByName<double> vca_master_db;  // the faders of VCA masters
};

struct FolderTable {
  std::vector<FolderPlace> places;  // by index in the written list; none: no folder
  Names basic_folders;              // folders without an audio path
};

struct MixTables {
  TrackColors colors;
  TrackGroups groups;
  FolderTable folders;
  ByName<SurroundPanner> surround_panners;  // by track key
  Names sample_based_midi;                  // MIDI tracks whose clips stand in samples
};

// ---- the pages ----

struct TrackPages {
  std::vector<TrackPage> pages;     // by written track
  std::vector<ReturnPage> returns;  // in name order
  TrackCounts counts;
};

// `tracks`, `routing` and `tables` must live as long as the pages. `polarity` keeps what they take of it.
TrackPages make_track_pages(const Session& session, const Bound& bound, std::span<const OutputTrack> tracks,
                            const Routing& routing, const MixTables& tables, TrimPolarity& polarity,
                            const ConversionOptions& options);

}  // namespace frt

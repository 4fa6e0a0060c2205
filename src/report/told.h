// What a run tells: everything that the notes, the report and the usage summary print comes from here, so that they
// can't differ. Each pass gives its counts with its result; the run gathers them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "mix/header_page.h"
#include "mix/media_files.h"
#include "mix/mix.h"
#include "model/clips/shape_clips.h"
#include "model/midi/midi_tracks.h"
#include "model/tracks/folding.h"
#include "model/tracks/order.h"
#include "plugins/plugins.h"
#include "run/options.h"
#include "run/problem.h"
#include "session/session.h"

namespace frt {

struct DualPanCounts {
  int points = 0;
  int tracks = 0;  // that have any
};

struct Told {
  // The session's mixer must be read by then.
  Told(const ConversionOptions& its_options, const Session& its_session, const Plugins& its_plugins,
       const Problem& its_problem);

  const ConversionOptions& options;
  const Session& session;  // its clips have moved on to the items
  const Plugins& plugins;  // what is known of the session's plug-ins
  const Problem& problem;

  std::vector<std::string> wide_strips;  // "name (5 control slots)": neither mono nor stereo

  ClipCounts clips;
  FoldCounts folding;
  MidiCounts midi;
  OrderCounts order;
  MixCounts mix;
  MediaCounts media;
  const HeaderPage* header = nullptr;   // as written
  std::span<const OutputTrack> tracks;  // as written

  std::string output_path;   // the project as written
  std::string media_folder;  // without a separator at its end

  // ---- counts of passes that are yet to come: 0 at rest ----
  int stretched_clips = 0, stretched_from_session = 0;
  int frozen_tracks_delivered = 0;  // under --keep-frozen

  // ---- what several counts or tables tell together ----
  int tracks_written() const { return static_cast<int>(tracks.size()); }
  int lanes() const { return folding.lanes + order.homeless_lanes; }
  int one_sided_trims_lost() const { return options.no_stand_ins ? mix.trims.one_sided_strips : 0; }
  int one_sided_trims_carried() const { return mix.trims.one_sided_strips - one_sided_trims_lost(); }
  int faders_at_unity() const { return mix.tracks.faders_at_unity + mix.header.faders_at_unity; }
  int uncolored_clips() const { return mix.items.uncolored_by_option + mix.midi.colors.left_out; }
  int strips_with_mixer_data() const;
  int strip_table_size() const { return static_cast<int>(session.mixer.table.names.size()); }
  DualPanCounts dual_pan() const;
  double longest_file_minutes() const;

  // ---- what the project's header holds; nothing where REAPER's own setting is left ----
  std::optional<int> recording_depth() const { return header ? header->wav_depth : std::nullopt; }
  std::optional<TimecodePage> timecode() const { return header ? header->timecode : std::nullopt; }
  std::optional<double> grid_quarters() const { return header ? header->grid_quarters : std::nullopt; }
};

}  // namespace frt

// Everything that stands in the project above its first track, decided.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mix/bind.h"
#include "mix/envelopes.h"
#include "mix/fx_chain.h"
#include "mix/marker_pages.h"
#include "mix/tempo_points.h"
#include "run/options.h"
#include "session/session.h"

namespace frt {

// The project's start and frame rate.
struct TimecodePage {
  double project_offset = 0;  // seconds
  int rate = 30;              // frames a second as TIMEMODE counts them
  int mode = 0;               // TIMEMODE's second value: 1 drop-frame, 2 pulled down
  int measures_before = 0;    // that stand before bar 1
};

struct MasterPage {
  double volume = 1;  // gain
  bool mute = false;
  std::vector<Envelope> envelopes;
  FxChain fx;
};

struct HeaderPage {
  std::vector<TrackComment> notes;  // the project's notes, one a commented track
  std::int64_t rate = 48000;        // Hz
  double tempo = 120;               // BPM
  MeterEvent meter;
  std::optional<TimecodePage> timecode;  // nothing where REAPER's own default holds
  std::optional<int> wav_depth;          // bits of new recordings; nothing to leave REAPER's format
  std::vector<TempoPoint> tempo_points;
  std::vector<MarkerPage> markers;
  double pan_law = 1;                   // gain
  std::optional<double> grid_quarters;  // quarter notes
  MasterPage master;
};

struct HeaderCounts {
  TempoCounts tempo;
  MarkerCounts markers;
  int faders_at_unity = 0;  // of the master: its envelope alone carries the level
};

struct Header {
  HeaderPage page;
  HeaderCounts counts;
};

// The page points into the session's tables.
Header make_header_page(const Session& session, const ConversionOptions& options);

}  // namespace frt

// Automation as REAPER envelopes: the one block that tracks, the master and sends share, and which lanes of a strip
// become which envelope.
#pragma once

#include <string>
#include <string_view>

#include "model/tempo.h"
#include "run/counters.h"
#include "session/tables.h"
#include "writer/rpp_text.h"

namespace frt {

// What a lane's values mean.
enum class EnvelopeKind {
  kVolume,   // tenths of a dB; also trim
  kMute,     // 1 for muted
  kPan,      // -100 to 100, the opposite sign of REAPER's
  kDualPan,  // as pan
};

// By what a lane's positions become seconds.
struct LaneTimes {
  const TempoMap& tempo;
  double sample_rate = 48000.0;
};

// Whether the envelopes of the track being written play and take new moves.
struct EnvelopeState {
  bool active = true;
  bool armed = false;
};

// Writes the envelope block of a lane and gives the number of the lane's points. A lane without points gives no
// block, or with `force` one of its initial value alone. `indent` stands before each line.
int write_envelope(ProjectText& out, std::string_view block, const AutomationLane& lane, EnvelopeKind kind,
                   std::string_view indent, bool force, const EnvelopeState& state, const LaneTimes& times);

// What else decides a strip's pan envelopes.
struct StripPanning {
  bool wide_strip = false;       // wider than stereo or of unknown width: it has no single pan
  bool surround_panner = false;  // a surround panner on the track places it
  // With a panner: its lanes are not written, as its source is stereo or it holds fewer than seven.
  bool panner_lanes_left = false;
};

// Writes all envelopes of a track's strip, its points counted.
void write_strip_envelopes(ProjectText& out, const StripRecord& strip, const StripPanning& panning,
                           const EnvelopeState& state, const LaneTimes& times, RunCounters& counters);

// The master's volume and mute envelopes as text; empty if neither lane has points.
std::string master_envelopes(const StripRecord& master, const LaneTimes& times);

}  // namespace frt

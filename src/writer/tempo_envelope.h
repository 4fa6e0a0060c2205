// REAPER's tempo envelope: the session's tempo map and its meter changes as one list of points.
#pragma once

#include <vector>

#include "model/tempo.h"
#include "run/counters.h"
#include "session/tables.h"
#include "writer/rpp_text.h"
#include "writer/tempo_ramps.h"

namespace frt {

// The envelope's points in order of time; empty if the project needs none (one tempo and one meter). With
// `ramps` drawn tempo ramps become linear; `sample_rate` in Hz is their tolerance. Counts tempo changes, meter
// changes and ramps.
std::vector<TempoPoint> make_tempo_points(const TempoMap& tempo, const std::vector<MeterEvent>& meters, bool ramps,
                                          double sample_rate, RunCounters& counters);

// The block TEMPOENVEX; nothing for no points.
void write_tempo_envelope(ProjectText& project, const std::vector<TempoPoint>& points);

}  // namespace frt

// REAPER's tempo envelope: the session's tempo map and its meter changes as one list of points.
#pragma once

#include <vector>

#include "mix/tempo_ramps.h"
#include "session/clock.h"
#include "session/headers/meter_map.h"

namespace frt {

struct TempoCounts {
  int tempo_changes = 0;  // 0 unless the map has at least two events
  int meter_changes = 0;
  int ramps_written = 0, ramps_left = 0;
  double ramp_point_error = 0, ramp_inner_error = 0;  // seconds
};

struct TempoPoints {
  std::vector<TempoPoint> points;  // in order of time; empty if the project needs none (one tempo and one meter)
  TempoCounts counts;
};

// With `ramps` drawn tempo ramps become linear, to the sample.
TempoPoints make_tempo_points(const Clock& clock, const std::vector<MeterEvent>& meters, bool ramps);

}  // namespace frt

// The session's meter map.
#pragma once

#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// The events of the block 0x2029 tagged "Meter", in file order; positions in ticks. Reading stops at an event
// that is no meter; empty without the block, or if it is too short for its own count.
std::vector<MeterEvent> read_meter_map(const SessionImage& image);

// The meter that the project begins with: the first event's, or 4/4.
MeterEvent first_meter(const std::vector<MeterEvent>& events);

// The events behind the first, by what they do.
struct MeterChanges {
  std::vector<MeterEvent> changes;  // differ from the meter in force
  std::vector<MeterEvent> repeats;  // name the meter already in force
};
MeterChanges sort_meter_events(const std::vector<MeterEvent>& events);

}  // namespace frt

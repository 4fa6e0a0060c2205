// The session's meter map.
#pragma once

#include <cstdint>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"

namespace frt {

struct MeterEvent {
  double position = 0;  // ticks
  std::uint32_t bar = 0;
  std::uint32_t numerator = 4;
  std::uint32_t denominator = 4;
};

// The events of the meter map block tagged "Meter", in file order; positions in ticks. Reading stops at an event
// that is no meter; empty without the block, or if it is too short for its own count.
std::vector<MeterEvent> read_meter_map(const SessionImage& image, Skips& skips);

// The meter that the project begins with: the first event's, or 4/4.
MeterEvent first_meter(const std::vector<MeterEvent>& events);

// The events behind the first, by what they do.
struct MeterChanges {
  std::vector<MeterEvent> changes;  // differ from the meter in force
  std::vector<MeterEvent> repeats;  // name the meter already in force
};
MeterChanges sort_meter_events(const std::vector<MeterEvent>& events);

}  // namespace frt

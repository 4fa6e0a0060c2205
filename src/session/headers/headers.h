// What a session says of itself as a whole.
#pragma once

#include <vector>

#include "session/headers/memory_locations.h"
#include "session/headers/meter_map.h"
#include "session/headers/session_settings.h"

namespace frt {

struct Headers {
  std::vector<MeterEvent> meters;  // in file order
  std::vector<MemoryLocation> locations;
  SessionSettings settings;
};

}  // namespace frt

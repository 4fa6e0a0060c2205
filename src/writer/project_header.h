// Every line of the project above its first track.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "model/tempo.h"
#include "run/counters.h"
#include "session/master.h"
#include "session/session_settings.h"
#include "session/tables.h"
#include "writer/rpp_text.h"

namespace frt {

struct HeaderTables {
  std::int64_t session_rate = 48000;  // Hz, as the session states it
  double sample_rate = 48000.0;       // Hz, what positions in samples divide by; 48000 stands in for 0
  const TempoMap& tempo;
  const std::vector<MeterEvent>& meters;
  const std::vector<MemoryLocation>& locations;
  const SessionSettings& settings;
  MasterStrip master = {};
  bool tempo_ramps = false;  // drawn tempo ramps become REAPER's ramps
  // Text made elsewhere, printed as it is, each with its line ends; empty for none.
  std::string_view notes_block = {};       // the NOTES block
  std::string_view master_envelopes = {};  // MASTERVOLENV2 and MASTERMUTEENV
  std::string_view master_fx_chain = {};   // MASTERFXLIST
};

// Writes the header, leaving the project ready for its first track, and counts what went into it.
void write_project_header(ProjectText& project, const HeaderTables& tables, RunCounters& counters);

}  // namespace frt

// Which of Avid's plug-ins REAPER's own stand in for, and what is counted of them.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "session/inserts/insert_tables.h"
#include "standins/eq3.h"
#include "standins/slot.h"
#include "state/containers.h"

namespace frt {

// What a stand-in is made from.
struct StandInSource {
  const InsertRecord& insert;
  ByteView image;
  StripPins strip;
  bool keyed = false;  // something feeds its key input
  double sample_rate = 0;
  EqFitter& fitter;  // the session's
  Eq3Counts& eq3;    // grow
};

// An Avid plug-in whose controls are known.
struct StandInRow {
  std::string_view signature;
  std::string_view family;  // as Avid calls it
  std::size_t values = 0;   // of its control list; another length is another build, whose order isn't known
  bool (*fits)(const InsertRecord& insert, ByteView image) = nullptr;  // in place of `values`
  StandIn (*make)(const StandInSource& source) = nullptr;
};

// Null for an insert that nothing stands in for.
const StandInRow* stand_in_row(const InsertRecord& insert, ByteView image);

struct StandInCounts {
  std::map<std::string, int> written;  // by family
  std::map<std::string, int> notes;    // what was lost, with the number of plug-ins
  Eq3Counts eq3;
  int trim_gains = 0;  // Trims whose gain sits in their slot
  int wide_trims = 0;  // Trims on a strip wider than stereo, whose gain is lost
  int left_out = 0;    // under --no-stand-ins

  int all() const;  // without the Trims
};

}  // namespace frt

// What became of the session's plug-ins: a row an insert, and the counts that the notes and the report tell.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "mix/parameter_lanes.h"
#include "mix/stand_ins.h"

namespace frt {

enum class FxOutcome : std::uint8_t {
  kSettings = 0,       // arrived with its Pro Tools settings
  kDefaults = 1,       // inserted offline, with nothing to carry
  kAaxOnly = 2,        // no VST of it exists
  kUnrecognized = 3,   // named by nothing that this program knows
  kBypassed = 4,       // left out because it was bypassed or inactive
  kNoPlaceholder = 5,  // its settings could not be read and --no-placeholders was given
  kNotInstalled = 6,   // left out because REAPER doesn't have it here
};

enum class FxFormat : std::uint8_t { kNone, kVst3, kClap, kVst2, kReaper };

// One insert, in the order of the chains.
struct FxReportRow {
  std::string strip;
  int slot = 0;  // place on the strip, from 1
  std::string name;
  std::string maker;  // may be empty
  FxFormat format = FxFormat::kNone;
  FxOutcome outcome = FxOutcome::kSettings;
  std::string reason;
  bool not_installed = false;  // REAPER doesn't have it here
  bool inactive = false;       // in Pro Tools
  int automation_points = 0;

  // Written all the same: it loads as soon as the plug-in is installed.
  bool waits_for_install() const { return not_installed && outcome != FxOutcome::kNotInstalled; }
};

struct AaxOnlyPlugin {
  std::string display_name;
  int instances = 0;
  int processing = 0;  // of these, how many processed audio
};

struct FxCounts {
  std::vector<FxReportRow> rows;
  // By name, with their number of instances; the unrecognized ones by key.
  std::map<std::string, int> all, unrecognized, offline, stateless;
  std::map<std::string, AaxOnlyPlugin> aax_only;               // by signature
  std::map<std::string, std::string> not_installed, left_out;  // name -> the plug-in that REAPER lacks
  std::vector<std::string> multi_mono;                         // only the first channel's settings written
  int bypassed_left_out = 0;                                   // under --skip-bypassed-fx
  int aax_slots = 0;                                           // named slots of AAX-only plug-ins
  int master_slots = 0;                                        // written on the master
  // Of those written with their settings.
  int bypassed = 0, inactive = 0, offline_written = 0;
  std::vector<std::string> midi_triggers_off;  // "strip / plug-in", one an insert
  StandInCounts stand_ins;
  ParameterCounts parameters;

  int instances() const;
  int rows_of(FxOutcome outcome) const;
};

}  // namespace frt

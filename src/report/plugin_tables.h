// What became of the session's plug-ins, as the notes and the report tell it. Filled by the chain writer; empty in
// a session without inserts.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/by_name.h"

namespace frt {

enum class PluginOutcome {
  kSettings = 0,       // arrived with its Pro Tools settings
  kDefaults = 1,       // inserted, with nothing to carry
  kAaxOnly = 2,        // no VST of it exists
  kUnrecognized = 3,   // named by nothing that this program knows
  kBypassed = 4,       // left out because it was bypassed or inactive
  kNoPlaceholder = 5,  // its settings could not be read and --no-placeholders was given
  kNotInstalled = 6,   // left out because REAPER doesn't have it here
};

// One insert, in the order of the chains.
struct PluginRow {
  std::string track;
  int slot = 0;
  std::string name;
  PluginOutcome outcome = PluginOutcome::kSettings;
  std::string reason;
  bool not_installed = false;  // written, but REAPER doesn't have it here
  int automation_points = 0;

  // Written all the same: it loads as soon as the plug-in is installed.
  bool waits_for_install() const { return not_installed && outcome != PluginOutcome::kNotInstalled; }
};

struct AaxOnlyPlugin {
  std::string display_name;
  int instances = 0;
  int processing = 0;  // of these, how many processed audio
};

struct PluginTables {
  std::vector<PluginRow> rows;
  // By name, with their number of instances.
  std::map<std::string, int> all, unrecognized, offline, stateless;
  std::map<std::string, AaxOnlyPlugin> aax_only;
  std::map<std::string, std::string> not_installed, left_out;  // name -> the format that it needs
  std::vector<std::string> multi_mono;                         // only the first channel's settings written
  ByName<int> inserts;                                         // strip -> number of inserts
  bool reaper_list_found = false;                              // REAPER's own plug-in list was found

  int instances() const;
  int rows_of(PluginOutcome outcome) const;
};

}  // namespace frt

// Automation of a plug-in's controls: which of REAPER's parameters each automated control drives.
//
// Pro Tools counts a plug-in's controls by numbers of its own, REAPER by their place in the plug-in's list, and the
// session doesn't say how far they lie apart. A lane whose place is known plays; one that stands on its most likely
// place only is written switched off, with a title by which it can be checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "plugins/knowledge.h"
#include "plugins/param_names.h"
#include "session/clock.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// One control's envelope as it is written. A point is worked out when it is asked for.
struct ParameterLane {
  std::int32_t index = 0;  // of REAPER's parameter
  bool live = false;       // else switched off
  std::string title;
  std::uint32_t guid_seed = 0;
  // Both must live as long as the lane.
  const AutomatedControl* control = nullptr;
  const Clock* clock = nullptr;

  // The value at the project's start, where the first point lies behind it.
  std::optional<double> initial() const;
  std::size_t size() const { return control->points.size(); }
  double seconds(std::size_t i) const;
  double value(std::size_t i) const;
};

struct ParameterCounts {
  int points = 0;  // of lanes that play
  int by_number = 0, by_name = 0;
  int bypass_lanes = 0;  // of plug-in bypass, not carried
  // Lanes by plug-in.
  std::map<std::string, int> switched_off, no_settings, on_stand_ins;
  std::set<std::string> wanted_params;  // plug-ins whose parameter names would have helped
};

class ParameterLaneMaker {
 public:
  // Both must live as long as this, the clock as long as the lanes.
  ParameterLaneMaker(const ParamNames& names, const Clock& clock) : names_(names), clock_(clock) {}

  // The lanes of an insert written with its settings, in the order of its controls. `record` may be null, here and
  // below.
  std::vector<ParameterLane> place(const InsertRecord& insert, const KnowledgeRecord* record);
  // Counts the lanes of an insert without settings: none is written.
  void count_without_settings(const InsertRecord& insert, const KnowledgeRecord* record);
  // Counts those of an insert that REAPER's own plug-ins stand in for, under the name of its family.
  void count_on_stand_in(const InsertRecord& insert, std::string_view family);

  ParameterCounts counts;

 private:
  // The parameters of one plug-in by their name.
  struct Place {
    std::int32_t index = 0;
    bool only = true;  // no other parameter has this name
  };
  struct NamedParameters {
    std::unordered_map<std::string_view, Place> whole, bare;
  };

  bool counts_elsewhere(const AutomatedControl& control);
  std::optional<std::int32_t> index_by_name(std::string_view plugin, const AutomatedControl& control);
  const NamedParameters& parameters_of(ParamNames::const_iterator plugin);

  const ParamNames& names_;
  const Clock& clock_;
  std::unordered_map<std::string_view, NamedParameters> named_;  // by plug-in, filled as they are met
};

}  // namespace frt

// ferrite-params.tsv: which of REAPER's parameter numbers each named control of a plug-in has.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/by_name.h"

namespace frt {

using ParamNames = ByName<std::map<int, std::string>>;  // by display text: REAPER index -> name

// Reads the files given; with none, the two that may stand in the program's folder. Prints what it read. Of a plug-in
// with several builds only what all of them agree on is kept: a list that moved between two builds names nothing rather
// than the wrong control.
ParamNames load_param_names(const std::string& program_folder, const std::vector<std::string>& param_files);

}  // namespace frt

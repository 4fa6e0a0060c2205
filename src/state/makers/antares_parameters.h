// The parameters of Antares plug-ins that have other names in the VST3 build.
#pragma once

#include <span>
#include <string_view>

namespace frt {

struct AntaresParameter {
  std::string_view signature;
  std::string_view vst3_name;
  std::string_view default_text;
  std::string_view aax_name;  // empty for one that the AAX build doesn't have
};

// The rows of a plug-in, in the order of its VST3 build; none for one that keeps its names.
std::span<const AntaresParameter> antares_parameters(std::string_view signature);

}  // namespace frt

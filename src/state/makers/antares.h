// Antares: documents whose parameters have other names in the VST3 build.
#pragma once

#include <string>
#include <string_view>

namespace frt {

// The plug-in that keeps its document's shape and changes the names alone.
inline constexpr std::string_view kAntaresAutoPan = "AntrAPan";

// The document with the parameters that the plug-in's VST3 build has; as it stands for one without a row, and where it
// has no list of parameters.
std::string antares_rewritten(std::string_view signature, std::string_view document);

// The document of `kAntaresAutoPan` with the names of its VST3 build.
std::string antares_renamed(std::string_view document);

}  // namespace frt

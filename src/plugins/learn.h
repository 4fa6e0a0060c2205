// --learn: a plug-in's identity, taken from a chain that REAPER saved.
#pragma once

#include <string>

namespace frt {

// Reads the chain's first VST and appends a row for the signature to the list beside the program. Prints what it found;
// gives the program's status: 0, or 1 if nothing was learned.
int learn_plugin(const std::string& chain_path, const std::string& signature, const std::string& program_path);

}  // namespace frt

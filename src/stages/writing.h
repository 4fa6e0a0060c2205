// Where the project goes: the name rules of the output file, and the project written so that a failure leaves what
// stood there.
#pragma once

#include <string>

#include "mix/mix.h"
#include "run/options.h"
#include "run/progress.h"

namespace frt {

// The project's path as asked for: -o, or the session's path with another extension.
std::string wanted_output_path(const ConversionOptions& options);

// Writes the project; under --check to nowhere. `output_path` is the path as asked for, and becomes that of the file
// written: another one, said on the console, where a file of that name is already there. False if the project could not
// be written whole, which is said too; what stood in its place is then still there.
bool write_output(const Mix& mix, const ConversionOptions& options, std::string& output_path,
                  frtgui::Progress* progress);

}  // namespace frt

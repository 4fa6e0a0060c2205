// The project's text, from its first line to its last.
#pragma once

#include "base/text_target.h"
#include "mix/mix.h"
#include "run/progress.h"

namespace frt {

// Prints the pages to the target. Reports each track to `progress` if there is one. What the target could not take it
// tells itself.
void write_project(TextTarget& target, const Mix& mix, frtgui::Progress* progress);

}  // namespace frt

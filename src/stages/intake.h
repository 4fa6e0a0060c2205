// What stands between a path and a usable session: refusing what cannot be converted, in words a user can act on, and
// warning when a readable file is not whole.
#pragma once

#include <string>

#include "image/damage.h"
#include "ptf/ptf_format.h"
#include "run/problem.h"

namespace frt {

// Loads a session, once more with unknown versions allowed where its version is the obstacle, and at the session's
// own rate where that is not 48000. Takes what `PTFFormat::load` takes; gives its last result.
int load_session(PTFFormat& ptf, const std::string& path);

// What a load result means, to stand behind "that session" or "the session".
const char* load_result_words(int load_result);

// True if the session may be converted. Otherwise everything there is to tell about it was printed (with a progress
// also the line that the front end shows), `problem` is set where the session could not be read, and the run ends
// with status 1. `path` is the session's, `load_result` what loading it into `ptf` gave.
bool accept_session(const std::string& path, const PTFFormat& ptf, int load_result, bool has_progress,
                    Problem& problem);

// Prints what the measure found: with `check_only` one word for it, and the warning if the session is not whole.
// Nothing stops here: a damaged session converts as far as it can be read.
void report_damage(const Damage& damage, bool check_only);

}  // namespace frt

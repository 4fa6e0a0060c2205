// What stands between a path and a usable session: refusing what cannot be converted, in words a user can act on,
// warning when a readable file is not whole, and who saved it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ptf/ptf_format.h"
#include "run/problem.h"
#include "session/blocks.h"

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

// Which Pro Tools saved the session. Texts are views of the image.
struct SavedBy {
  std::string_view product;  // the text that names Pro Tools, or empty
  std::string_view version;  // digits and dots, or empty
  int version_major = -1;    // the number before the first ".", -1 if none was read
};

// From the session's first kilobyte, else from its block 0x0003. Empty where the session doesn't say.
SavedBy read_saved_by(const SessionImage& image);

// How far the session's blocks reach. Positions are byte offsets in the image.
struct DamageResult {
  std::uint64_t last_end = 0;   // the end of the last whole block, 0 if there is none
  bool walked = false;          // the blocks reach the image's end, so the top level was walked
  std::uint64_t break_pos = 0;  // where that walk stopped
};

// Measures damage; an image under 10 bytes is not measured.
DamageResult measure_damage(const SessionImage& image);

// Prints what the measure found: with `check_only` one word for it, and the warning if the session is not whole.
// Nothing stops here: a damaged session converts as far as it can be read.
void report_damage(const DamageResult& damage, std::uint64_t image_size, bool check_only);

}  // namespace frt

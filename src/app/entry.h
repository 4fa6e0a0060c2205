// The entry point: which job this process does, and its exit status.
#pragma once

namespace frt {

// Takes the usual argument count and vector. 0: done, or version, or help; 1: the run or the learning failed, or
// there is no session; 2: an unknown option. Sets the text sink for the rest of the process.
int run_entry(int argc, const char* const* argv);

}  // namespace frt

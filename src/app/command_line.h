// The argument vector as one record: what to convert and how, and which of the program's few jobs is wanted.
#pragma once

#include <string>
#include <vector>

#include "run/options.h"

namespace frt {

// Whether the window is held open when finished: where programs are started by dropping a file on them.
#ifdef _WIN32
inline constexpr bool kPauseByDefault = true;
#else
inline constexpr bool kPauseByDefault = false;
#endif

struct CommandLine {
  // What the arguments ask for. Arguments are taken in order, and the first that decides ends the reading.
  enum class Job { kConvertSession, kTellVersion, kTellHelp, kLearnPlugin, kRefuse };

  Job job = Job::kConvertSession;
  std::string unknown_option;                     // for kRefuse
  std::string learn_chain_path, learn_signature;  // for kLearnPlugin
  // `session_path` and the `audio_dir` beside it stand only after `find_session_path`.
  ConversionOptions options;
  std::vector<std::string> positionals;  // arguments that are no options, in order
  bool convert_twice = false;
  bool show_progress = false;
  bool pause_at_exit = kPauseByDefault;
};

// Reads the arguments; argument 0 is the program's path. Opens no file.
CommandLine read_command_line(int argc, const char* const* argv);

// The session path from the positional arguments: the longest run of them, joined by single blanks, that names
// something that can be opened; of equal runs the leftmost. So an unquoted name with blanks still finds its file.
// If none can be opened, all of them joined; empty without any.
std::string find_session_path(const std::vector<std::string>& positionals);

}  // namespace frt

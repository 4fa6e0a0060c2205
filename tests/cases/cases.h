// Whole runs of the program. Each case has a folder of its name beside this file, which holds everything that came out
// of its run: console.txt, stderr.txt unless empty, status, and every file that the run wrote or changed, under the
// name it gave it. With FERRITE_UPDATE_CASES set in the environment the folders are written anew: a change is a
// decision.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/session_builder.h"

namespace frt::test {

// What a run finds in its folder: the session as "Song.ptx", and what lies beside it.
struct Scene : SessionBuilder {
  Scene() { saved_by("Pro Tools", "12.5.0"); }  // the version about which the program says nothing

  std::vector<std::pair<std::string, std::string>> files;  // path, content
  std::function<void(std::vector<std::uint8_t>&)> damage;  // done to the session's bytes ahead of their encryption

  Scene& file(std::string path, std::string content = "audio") {
    return files.emplace_back(std::move(path), std::move(content)), *this;
  }
};

inline constexpr bool kTables = true;

struct Case {
  std::string name;
  std::vector<std::string> arguments;
  std::function<void(Scene&)> make = {};  // none: there is no session
  bool tables = false;                    // a second run prints the session's tables, held against tables.txt
  std::vector<std::pair<std::string, std::string>> environment = {};
};

inline void PrintTo(const Case& one, std::ostream* out) { *out << one.name; }

std::vector<Case> run_cases();     // the program's jobs and files, and sessions that it refuses
std::vector<Case> mixer_cases();   // strips, automation, the order of tracks
std::vector<Case> plugin_cases();  // inserts, REAPER's lists, key inputs, automated controls
std::vector<Case> clip_cases();    // clips, fades, playlists, where audio lies
std::vector<Case> header_cases();  // tempo, meter, markers, settings, and the layouts of the years

}  // namespace frt::test

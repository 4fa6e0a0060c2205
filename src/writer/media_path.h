// Where an audio file of the session lies on disc: the path that the project's FILE lines bear.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/name_hash.h"
#include "run/counters.h"
#include "session/tables.h"

namespace frt {

struct MediaPath {
  std::string path;
  std::string quoted;           // as a FILE line prints it
  bool found = false;           // it can be opened for reading
  bool in_media_folder = true;  // the path begins with the media folder
};

// The folders of a run and what was found in them: a file costs its look at the disc once.
struct MediaFolders {
  std::string media_folder;    // no separator at its end
  std::string session_folder;  // empty: only the media folder is looked into
  const AudioFileFolders& file_folders;

  struct Known {
    bool shared = false;            // the session's list holds two files of this name, told apart by number
    std::optional<MediaPath> path;  // once it was asked for by name
  };
  HashByName<Known> by_name = {};
  std::unordered_map<std::uint16_t, MediaPath> by_number = {};  // files of a shared name
};

// The path of a file: in the media folder; failing that in one of the session's own folders, which counts as a
// sibling hit; failing all, where it would lie in the media folder. Where two files share the name, the file's
// number in the session's list tells its folder, which is then looked into first. The result lives as long as
// `folders`.
const MediaPath& resolve_media_path(MediaFolders& folders, std::string_view file_name,
                                    std::optional<std::uint16_t> file_number, RunCounters& counters);

// Looks for every file of the session's list, in its order, and puts the names of those that lie nowhere into the
// counters' list of missing files.
void check_audio_files(MediaFolders& folders, const std::vector<AudioFileEntry>& audio_files, RunCounters& counters);

}  // namespace frt

// In which of the session's folders each audio file lies, from its file lists.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"

namespace frt {

struct AudioFileFolders {
  // File name -> folder name; the first folder found for a name stays.
  std::map<std::string, std::string, std::less<>> by_name;
  // Folder of the file with that number (files of the lists in the audio file root), empty for none. Filled only where
  // all of those lists read by kind and parent.
  std::vector<std::string_view> by_number;
  // Names that stand for two or more files; only their clips go by number.
  std::map<std::string, int, std::less<>> name_counts;
};

// Reads all file lists of the session. A list that doesn't read ends where it stops making sense.
AudioFileFolders read_audio_file_folders(const SessionImage& image, Skips& skips);

}  // namespace frt

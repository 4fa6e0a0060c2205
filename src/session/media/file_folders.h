// In which of the session's folders each audio file lies, from its file lists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/skips.h"
#include "ptf/file_list.h"

namespace frt {

struct ListedFile {
  std::string_view name;
  std::string_view folder;   // the folder it lies in, empty for none
  std::size_t list = 0;      // index into the lists
  std::uint32_t parent = 0;  // number of an entry there
};

struct AudioFileFolders {
  // File name -> folder name; the first folder found for a name stays.
  std::map<std::string, std::string_view, std::less<>> by_name;
  // The files of the lists in the audio file root, by number, and those lists. Empty where one of them doesn't read by
  // kind and parent.
  std::vector<ListedFile> files;
  std::vector<std::vector<FileListEntry>> lists;

  // The names from the volume down to the file's folder; empty where one of them is none that could be followed, or the
  // file's own isn't.
  std::vector<std::string_view> chain_of(std::size_t number) const;
};

// Reads all file lists of the session. A list that doesn't read ends where it stops making sense.
AudioFileFolders read_audio_file_folders(const SessionImage& image, Skips& skips);

}  // namespace frt

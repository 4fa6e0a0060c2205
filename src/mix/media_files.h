// Where an audio file of the session lies on disc: the path that the project's FILE lines bear.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/name_hash.h"
#include "ptf/ptf_format.h"
#include "session/media/file_folders.h"

namespace frt {

struct MediaFile {
  std::string path;
  bool found = false;           // it can be opened for reading
  bool in_media_folder = true;  // the path begins with the media folder
};

// Where the media of a session is looked for.
struct MediaPlaces {
  std::string media;    // the media folder, no separator at its end
  std::string session;  // the folder that holds it; empty: only the media folder is looked into
};

struct MediaCounts {
  int sibling_hits = 0;                        // files found in one of the session's other folders
  std::map<std::string, int> sibling_folders;  // folder -> files found there
  std::vector<std::string> missing_files;
};

// What was found on disc: a file costs its look once.
class MediaFiles {
 public:
  MediaFiles(const MediaPlaces& folders, const AudioFileFolders& listed) : folders_(folders), listed_(listed) {}

  // The path of a file: in the media folder; failing that in one of the session's own folders, which counts as a
  // sibling hit; failing all, where it would lie in the media folder. Where two files share the name, the file's number
  // in the session's list tells its folder, which is then looked into first. The result lives as long as this.
  const MediaFile& resolve(std::string_view file_name, std::uint16_t file_number);

  // Looks for every file of the session's list, in its order, and notes those that lie nowhere.
  void check(std::span<const AudioFileEntry> files);

  const MediaCounts& counts() const { return counts_; }

 private:
  struct Sibling;
  struct Known {
    bool shared = false;            // the session's list holds two files of this name, told apart by number
    std::optional<MediaFile> file;  // once it was asked for by name
  };
  std::optional<Sibling> find_sibling(std::string_view name) const;
  void count_sibling(std::string_view folder);
  MediaFile look_for(std::string_view name, std::string_view numbered_folder);
  bool name_is_shared(std::string_view name) const;

  const MediaPlaces& folders_;
  const AudioFileFolders& listed_;
  HashByName<Known> by_name_;
  std::unordered_map<std::uint16_t, MediaFile> by_number_;  // files of a shared name
  MediaCounts counts_;
};

}  // namespace frt

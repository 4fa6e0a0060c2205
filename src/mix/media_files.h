// Where is this file, and how does the project name it? The one place that answers, for every kind of media.
#pragma once

#include <cstddef>
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
#include "run/options.h"
#include "session/session.h"

namespace frt {

struct MediaFile {
  std::string path;             // where it was found, or would lie
  std::string project_path;     // the same as the project names it
  bool found = false;           // it is there and can be read
  bool in_media_folder = true;  // the path begins with the media folder
  bool by_the_session = false;  // found, or named, where the session itself says that it lies
  bool outside = false;         // the session says that it lies outside its own folder
  bool differs = false;         // what was found is of another length than the session says
  int clips = 0;                // written items that play it
};

// Where the media of a session is looked for, and from where the project will look.
struct MediaPlaces {
  std::string media;    // the media folder, no separator at its end
  std::string session;  // the folder that holds it; empty: only the media folder is looked into
  std::string project;  // the folder of the project
  std::string working;  // that relative paths count from; empty if it can't be told
};

// The places for a session: --audio-dir, or "Audio Files" in the session's folder. A session among the backups uses the
// audio of the session it is a backup of.
MediaPlaces media_places(const ConversionOptions& options, const std::string& output_path);

struct MediaCounts {
  int sibling_hits = 0;                        // files found in one of the session's other folders
  std::map<std::string, int> sibling_folders;  // folder -> files found there
  int found_outside = 0, clips_outside = 0;    // found where the session says: files that clips play, and those clips
  std::vector<std::string> missing_files;      // that clips play, in the order of the session's list
  int missing_outside = 0;                     // of these, outside the session's folder
  std::vector<std::string> differing_files;    // found, but of another length than the session says
};

// What was found on disc: a file costs its look once, and each of its places is opened once at most.
class MediaFiles {
 public:
  // The session's media must live as long as this.
  MediaFiles(MediaPlaces places, const Media& media);

  // The file of an item, by its name and its number in the session's list; the number decides where two files share the
  // name. Looked for in the media folder, in the session's other folders, then where the session says that it lies. A
  // place that holds a file of another length than the session's own is passed over while another one is left. Failing
  // all, a file outside the session's folder is named by the place that the session gives, any other in the media
  // folder. The result lives as long as this.
  MediaFile& resolve(std::string_view file_name, std::uint16_t file_number);

  // Looks for every file of the session's list and counts, now that all clips know theirs.
  MediaCounts check();

  const MediaPlaces& places() const { return places_; }

 private:
  struct Place;
  struct Search;
  struct Known {
    bool shared = false;            // the session's list holds two files of this name, told apart by number
    std::optional<MediaFile> file;  // once it was asked for by name
  };
  MediaFile look_for(std::string_view name, std::optional<std::size_t> number, bool shared);
  void count_sibling(std::string_view folder);
  std::string near_path(const std::vector<std::string_view>& chain, std::string_view name) const;
  std::vector<std::string_view> affordable_chain(std::size_t number);
  std::string missing_name(std::string_view name, std::uint16_t number, bool twice);

  const MediaPlaces places_;
  const Media& media_;
  bool numbers_are_the_librarys_ = false;            // listed file k is audio file k
  HashByName<std::size_t> number_of_, name_counts_;  // of listed files
  HashByName<Known> by_name_;
  std::unordered_map<std::uint16_t, MediaFile> by_number_;  // files of a shared name
  MediaCounts counts_;
  // Paths made of chains cost up to 4 KiB a file, which no session needs for thousands of them. Files beyond this many
  // bytes in all count as without a chain.
  std::size_t chain_bytes_left_ = std::size_t{16} << 20;
};

}  // namespace frt

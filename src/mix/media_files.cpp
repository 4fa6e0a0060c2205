#include "mix/media_files.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "base/file.h"
#include "base/path.h"
#include "base/text.h"
#include "mix/audio_header.h"

namespace frt {
namespace {

// Folders that Pro Tools keeps beside a session, in the order they are looked into.
constexpr std::string_view kSiblingFolders[] = {"Rendered Files", "Bounced Files", "Audio Files"};

constexpr std::string_view kBackups = "Session File Backups";

std::string join(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder).append("/").append(name);
  return path;
}

// Pro Tools keeps backups of a session in a folder beside the audio.
std::string session_folder_for_media(const std::string& session_path) {
  std::string folder = folder_of(session_path);
  const std::string named = folder == "." ? working_directory() : folder;
  const std::vector<std::string_view> names = path_names(named);
  if (names.empty() || names.back() != kBackups || is_folder(join(folder, kAudioFolder))) return folder;
  return folder == "." ? ".." : folder_of(folder);
}

std::size_t shared_names(const std::vector<std::string_view>& a, const std::vector<std::string_view>& b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

bool is_drive(std::string_view volume) { return volume.size() == 3 && volume.substr(1) == ":\\"; }

// The place that the session gives for a file.
std::string stored_path(const std::vector<std::string_view>& chain, std::string_view name) {
  constexpr std::string_view kStartVolume = "Macintosh HD", kUsers = "Users";
  const std::string_view volume = chain.front();
  const std::vector<std::string_view> folders(chain.begin() + 1, chain.end());
  std::string folder;
  if (volume == kStartVolume && !folders.empty() && folders.front() == kUsers) {
    folder = "/" + joined_path(folders);
  } else if (is_drive(volume)) {
    folder = std::string(volume.substr(0, 2)) + (folders.empty() ? "" : "/" + joined_path(folders));
  } else {
    folder = "/Volumes/" + joined_path(chain);
  }
  return join(folder, name);
}

// An absolute path of the system that runs.
bool is_of_this_system(std::string_view path) {
#ifdef _WIN32
  return path.size() > 1 && path[1] == ':';
#else
  return path.starts_with('/');
#endif
}

}  // namespace

MediaPlaces media_places(const ConversionOptions& options, const std::string& output_path) {
  MediaPlaces places;
  places.media =
      options.audio_dir_given ? options.audio_dir : join(session_folder_for_media(options.session_path), kAudioFolder);
  while (places.media.size() > 1 && (places.media.back() == '/' || places.media.back() == '\\'))
    places.media.pop_back();
  places.session = folder_of(places.media);
  places.project = folder_of(output_path);
  if (places.project.empty()) places.project = "/";
  places.working = working_directory();
  return places;
}

MediaFiles::MediaFiles(MediaPlaces places, const Media& media) : places_(std::move(places)), media_(media) {
  const std::vector<ListedFile>& listed = media.folders.files;
  for (std::size_t i = 0; i < listed.size(); ++i) {
    number_of_.try_emplace(std::string(listed[i].name), i);
    ++name_counts_[std::string(listed[i].name)];
  }
  numbers_are_the_librarys_ =
      listed.size() >= media.files.size() &&
      std::equal(media.files.begin(), media.files.end(), listed.begin(),
                 [](const AudioFileEntry& file, const ListedFile& entry) { return file.name == entry.name; });
}

// One place where a file may lie.
struct MediaFiles::Place {
  std::string path;
  std::string_view sibling;  // the session's folder that it is in, empty for another place
  bool by_the_session = false;
};

// Tries places in their order and keeps the first that holds the file; of those that hold another of its name the
// first.
struct MediaFiles::Search {
  std::int64_t length = 0;  // samples as the session says, 0 if it doesn't
  std::string_view working;
  std::vector<std::string> tried;  // whatever their spelling, places are opened once
  std::optional<Place> taken, another;

  void look(const Place& place) {
    if (taken) return;
    std::string spelled_out = absolute_path(place.path, working);
    if (std::find(tried.begin(), tried.end(), spelled_out) != tried.end()) return;
    tried.push_back(std::move(spelled_out));
    if (const auto file = RegularFile::open(place.path)) {
      const auto frames = length > 0 ? stated_frames(*file) : std::nullopt;
      const bool differs = frames && *frames != static_cast<std::uint64_t>(length);
      if (!differs) {
        taken = place;
      } else if (!another) {
        another = place;
      }
    }
  }
};

void MediaFiles::count_sibling(std::string_view folder) {
  ++counts_.sibling_hits;
  ++counts_.sibling_folders[std::string(folder)];
}

// From the session's folder up to what its chain shares with the file's, then down; empty where that leads nowhere.
std::string MediaFiles::near_path(const std::vector<std::string_view>& chain, std::string_view name) const {
  constexpr std::size_t kLeastShared = 2;
  const std::size_t shared = shared_names(chain, media_.own_chain);
  if (shared < kLeastShared || places_.session.empty()) return {};
  const std::string root = path_root(places_.session);
  std::vector<std::string_view> names = path_names(std::string_view(places_.session).substr(root.size() > 1 ? 2 : 0));
  for (std::size_t i = shared; i < media_.own_chain.size(); ++i) {
    if (!names.empty() && names.back() != "..") {
      names.pop_back();
    } else if (root.empty()) {
      names.emplace_back("..");
    } else {
      return {};
    }
  }
  names.insert(names.end(), chain.begin() + static_cast<std::ptrdiff_t>(shared), chain.end());
  names.push_back(name);
  return (root.empty() && names.size() == 1 ? "./" : root) + joined_path(names);
}

std::vector<std::string_view> MediaFiles::affordable_chain(std::size_t number) {
  std::vector<std::string_view> chain = media_.folders.chain_of(number);
  std::size_t bytes = 0;
  for (const std::string_view name : chain) bytes += 1 + name.size();
  if (bytes > chain_bytes_left_) return {};
  chain_bytes_left_ -= bytes;
  return chain;
}

MediaFile MediaFiles::look_for(std::string_view name, std::optional<std::size_t> number, bool shared) {
  MediaFile file;
  file.path = join(places_.media, name);
  std::vector<std::string_view> chain;
  if (number) chain = affordable_chain(*number);
  const bool chains_known = !chain.empty() && !media_.own_chain.empty();
  file.outside = chains_known && shared_names(chain, media_.own_chain) < media_.own_chain.size();

  // A name that would lead somewhere else leads nowhere.
  Search search;
  search.working = places_.working;
  if (is_sound_name(name)) {
    if (number && numbers_are_the_librarys_ && *number < media_.facts.size())
      search.length = media_.facts[*number].length;
    const auto in_session = [&](std::string_view folder) {
      if (!places_.session.empty() && is_sound_name(folder))
        search.look({join(join(places_.session, folder), name), folder});
    };
    if (shared && number) in_session(media_.folders.files[*number].folder);
    search.look({file.path, {}});
    if (const auto listed = media_.folders.by_name.find(name); listed != media_.folders.by_name.end())
      in_session(listed->second);
    for (const std::string_view folder : kSiblingFolders) in_session(folder);
    if (chains_known && !search.taken) {
      if (std::string near = near_path(chain, name); !near.empty()) search.look({std::move(near), {}, true});
      if (std::string stored = stored_path(chain, name); is_of_this_system(stored))
        search.look({std::move(stored), {}, true});
    }
  }
  if (!search.taken && search.another && !file.outside) {
    search.taken = search.another;
    file.differs = true;
  }
  if (search.taken) {
    file.found = true;
    file.by_the_session = search.taken->by_the_session;
    if (!search.taken->sibling.empty() && search.taken->path != file.path) count_sibling(search.taken->sibling);
    file.path = search.taken->path;
  } else if (file.outside) {
    file.by_the_session = true;
    file.path = stored_path(chain, name);
  }
  file.in_media_folder = file.path.starts_with(places_.media + "/");
  file.project_path = path_from_project(file.path, places_.project, places_.working);
  return file;
}

MediaFile& MediaFiles::resolve(std::string_view file_name, std::uint16_t file_number) {
  auto known = by_name_.find(file_name);
  if (known == by_name_.end()) {
    known = by_name_.emplace(std::string(file_name), Known{}).first;
    const auto count = name_counts_.find(file_name);
    known->second.shared = count != name_counts_.end() && count->second > 1;
  }
  if (known->second.shared) {
    const auto numbered = by_number_.find(file_number);
    if (numbered != by_number_.end()) return numbered->second;
    const auto number =
        file_number < media_.folders.files.size() ? std::optional<std::size_t>(file_number) : std::nullopt;
    return by_number_.emplace(file_number, look_for(file_name, number, true)).first->second;
  }
  if (!known->second.file) {
    const auto number = number_of_.find(file_name);
    known->second.file = look_for(
        file_name, number == number_of_.end() ? std::nullopt : std::optional<std::size_t>(number->second), false);
  }
  return *known->second.file;
}

// Two missing files of one name are told apart by the folders they lay in.
std::string MediaFiles::missing_name(std::string_view name, std::uint16_t number, bool twice) {
  std::string text(name);
  if (!twice) return text;
  std::vector<std::string_view> chain = affordable_chain(number);
  if (chain.empty()) return text;
  if (chain.size() > 2) chain.erase(chain.begin(), chain.end() - 2);
  return text + " (" + joined_path(chain) + ")";
}

MediaCounts MediaFiles::check() {
  struct Missing {
    std::string_view name;
    std::uint16_t number;
  };
  std::vector<Missing> missing;
  HashByName<int> missing_of_name;
  std::unordered_set<const MediaFile*> met;
  for (const AudioFileEntry& entry : media_.files) {
    const MediaFile& file = resolve(entry.name, entry.index);
    if (file.clips == 0 || !met.insert(&file).second) continue;
    if (!file.found) {
      missing.push_back({entry.name, entry.index});
      ++missing_of_name[std::string(entry.name)];
      counts_.missing_outside += file.outside;
    } else if (file.by_the_session && file.outside) {
      ++counts_.found_outside;
      counts_.clips_outside += file.clips;
    }
    if (file.differs) counts_.differing_files.emplace_back(entry.name);
  }
  for (const Missing& one : missing)
    counts_.missing_files.push_back(missing_name(one.name, one.number, missing_of_name.find(one.name)->second > 1));
  return counts_;
}

}  // namespace frt

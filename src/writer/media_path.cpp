#include "writer/media_path.h"

#include <utility>

#include "base/file.h"
#include "writer/rpp_text.h"

namespace frt {
namespace {

// Folders that Pro Tools keeps beside a session, in the order they are looked into.
constexpr std::string_view kSiblingFolders[] = {"Rendered Files", "Bounced Files", "Audio Files"};

std::string join(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder).append("/").append(name);
  return path;
}

struct Sibling {
  std::string path;
  std::string_view folder;
};

// The first of the session's folders that holds the file.
std::optional<Sibling> find_sibling(const MediaFolders& folders, std::string_view name) {
  if (folders.session_folder.empty()) return std::nullopt;
  const auto try_folder = [&](std::string_view folder) -> std::optional<Sibling> {
    std::string path = join(join(folders.session_folder, folder), name);
    if (!can_open(path)) return std::nullopt;
    return Sibling{std::move(path), folder};
  };
  const auto listed = folders.file_folders.by_name.find(name);
  if (listed != folders.file_folders.by_name.end()) {
    if (auto hit = try_folder(listed->second)) return hit;
  }
  for (const std::string_view folder : kSiblingFolders) {
    if (auto hit = try_folder(folder)) return hit;
  }
  return std::nullopt;
}

void count_sibling(std::string_view folder, RunCounters& counters) {
  ++counters.sibling_hits;
  ++counters.sibling_folders[std::string(folder)];
}

MediaPath look_for(const MediaFolders& folders, std::string_view name, std::string_view numbered_folder,
                   RunCounters& counters) {
  MediaPath result;
  result.path = join(folders.media_folder, name);
  bool resolved = false;
  if (!numbered_folder.empty() && !folders.session_folder.empty()) {
    std::string path = join(join(folders.session_folder, numbered_folder), name);
    if (can_open(path)) {
      if (path != result.path) count_sibling(numbered_folder, counters);
      result.path = std::move(path);
      resolved = true;
    }
  }
  if (!resolved && can_open(result.path)) resolved = true;
  if (!resolved) {
    if (auto sibling = find_sibling(folders, name)) {
      count_sibling(sibling->folder, counters);
      result.path = std::move(sibling->path);
      resolved = true;
    }
  }
  result.found = resolved;
  result.in_media_folder = result.path.starts_with(folders.media_folder + "/");
  result.quoted = quote_rpp_string(result.path);
  return result;
}

bool name_is_shared(const MediaFolders& folders, std::string_view name) {
  if (folders.file_folders.by_number.empty()) return false;
  const auto count = folders.file_folders.name_counts.find(name);
  return count != folders.file_folders.name_counts.end() && count->second > 1;
}

}  // namespace

const MediaPath& resolve_media_path(MediaFolders& folders, std::string_view file_name,
                                    std::optional<std::uint16_t> file_number, RunCounters& counters) {
  auto known = folders.by_name.find(file_name);
  if (known == folders.by_name.end()) {
    known = folders.by_name.emplace(std::string(file_name), MediaFolders::Known{}).first;
    known->second.shared = name_is_shared(folders, file_name);
  }
  if (file_number && known->second.shared) {
    const auto numbered = folders.by_number.find(*file_number);
    if (numbered != folders.by_number.end()) return numbered->second;
    const auto& folder_of_number = folders.file_folders.by_number;
    const std::string_view folder =
        *file_number < folder_of_number.size() ? folder_of_number[*file_number] : std::string_view();
    return folders.by_number.emplace(*file_number, look_for(folders, file_name, folder, counters)).first->second;
  }
  if (!known->second.path) known->second.path = look_for(folders, file_name, {}, counters);
  return *known->second.path;
}

void check_audio_files(MediaFolders& folders, const std::vector<AudioFileEntry>& audio_files, RunCounters& counters) {
  for (const AudioFileEntry& file : audio_files) {
    if (!resolve_media_path(folders, file.name, file.index, counters).found) {
      counters.missing_files.emplace_back(file.name);
    }
  }
}

}  // namespace frt

#include "mix/media_files.h"

#include <utility>

#include "base/file.h"

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

}  // namespace

struct MediaFiles::Sibling {
  std::string path;
  std::string_view folder;
};

// The first of the session's folders that holds the file.
std::optional<MediaFiles::Sibling> MediaFiles::find_sibling(std::string_view name) const {
  if (folders_.session.empty()) return std::nullopt;
  const auto try_folder = [&](std::string_view folder) -> std::optional<Sibling> {
    std::string path = join(join(folders_.session, folder), name);
    if (!can_open(path)) return std::nullopt;
    return Sibling{std::move(path), folder};
  };
  const auto listed = listed_.by_name.find(name);
  if (listed != listed_.by_name.end()) {
    if (auto hit = try_folder(listed->second)) return hit;
  }
  for (const std::string_view folder : kSiblingFolders) {
    if (auto hit = try_folder(folder)) return hit;
  }
  return std::nullopt;
}

void MediaFiles::count_sibling(std::string_view folder) {
  ++counts_.sibling_hits;
  ++counts_.sibling_folders[std::string(folder)];
}

MediaFile MediaFiles::look_for(std::string_view name, std::string_view numbered_folder) {
  MediaFile file;
  file.path = join(folders_.media, name);
  if (!numbered_folder.empty() && !folders_.session.empty()) {
    std::string path = join(join(folders_.session, numbered_folder), name);
    if (can_open(path)) {
      if (path != file.path) count_sibling(numbered_folder);
      file.path = std::move(path);
      file.found = true;
    }
  }
  if (!file.found && can_open(file.path)) file.found = true;
  if (!file.found) {
    if (auto sibling = find_sibling(name)) {
      count_sibling(sibling->folder);
      file.path = std::move(sibling->path);
      file.found = true;
    }
  }
  file.in_media_folder = file.path.starts_with(folders_.media + "/");
  return file;
}

bool MediaFiles::name_is_shared(std::string_view name) const {
  if (listed_.by_number.empty()) return false;
  const auto count = listed_.name_counts.find(name);
  return count != listed_.name_counts.end() && count->second > 1;
}

const MediaFile& MediaFiles::resolve(std::string_view file_name, std::uint16_t file_number) {
  auto known = by_name_.find(file_name);
  if (known == by_name_.end()) {
    known = by_name_.emplace(std::string(file_name), Known{}).first;
    known->second.shared = name_is_shared(file_name);
  }
  if (known->second.shared) {
    const auto numbered = by_number_.find(file_number);
    if (numbered != by_number_.end()) return numbered->second;
    const std::string_view folder =
        file_number < listed_.by_number.size() ? listed_.by_number[file_number] : std::string_view();
    return by_number_.emplace(file_number, look_for(file_name, folder)).first->second;
  }
  if (!known->second.file) known->second.file = look_for(file_name, {});
  return *known->second.file;
}

void MediaFiles::check(std::span<const AudioFileEntry> files) {
  for (const AudioFileEntry& file : files) {
    if (!resolve(file.name, file.index).found) counts_.missing_files.emplace_back(file.name);
  }
}

}  // namespace frt

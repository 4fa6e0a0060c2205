#include "base/path.h"

#include <algorithm>
#include <optional>

namespace frt {
namespace {

constexpr std::string_view kUp = "..";

bool is_separator(char c) { return c == '/' || c == '\\'; }

bool has_drive(std::string_view path) {
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return path.size() >= 2 && letter(path[0]) && path[1] == ':';
}

void add_names(std::vector<std::string_view>& names, std::string_view path) {
  for (std::size_t at = 0; at < path.size();) {
    std::size_t end = at;
    while (end < path.size() && !is_separator(path[end])) ++end;
    const std::string_view name = path.substr(at, end - at);
    at = end + 1;
    if (name.empty() || name == ".") continue;
    if (name == kUp && !names.empty() && names.back() != kUp) {
      names.pop_back();
    } else {
      names.push_back(name);
    }
  }
}

// The folder as seen from the project; nothing where it stays as it is.
std::optional<std::string> moved_folder(std::string_view folder, std::string_view project_folder,
                                        std::string_view working_directory) {
  if (is_absolute_path(folder)) return std::nullopt;
  const auto from_the_top = [&]() -> std::optional<std::string> {
    if (working_directory.empty()) return std::nullopt;
    const std::string root = path_root(working_directory);
    std::vector<std::string_view> names;
    add_names(names, working_directory.substr(has_drive(working_directory) ? 2 : 0));
    add_names(names, folder);
    return (root.empty() ? "/" : root) + joined_path(names);
  };
  if (is_absolute_path(project_folder)) return from_the_top();
  std::vector<std::string_view> from = path_names(project_folder), to = path_names(folder);
  if (from.empty()) return std::nullopt;
  const auto [a, b] = std::mismatch(from.begin(), from.end(), to.begin(), to.end());
  from.erase(from.begin(), a);
  to.erase(to.begin(), b);
  if (std::find(from.begin(), from.end(), kUp) != from.end()) return from_the_top();
  to.insert(to.begin(), from.size(), kUp);
  return joined_path(to);
}

}  // namespace

std::vector<std::string_view> path_names(std::string_view path) {
  std::vector<std::string_view> names;
  add_names(names, path);
  return names;
}

bool is_absolute_path(std::string_view path) {
  return !path.empty() && (is_separator(path.front()) || has_drive(path));
}

std::string path_root(std::string_view path) {
  if (has_drive(path)) return std::string(path.substr(0, 2)) + "/";
  return !path.empty() && is_separator(path.front()) ? "/" : "";
}

std::string joined_path(const std::vector<std::string_view>& names) {
  std::string path;
  for (const std::string_view name : names) {
    if (!path.empty()) path += '/';
    path += name;
  }
  return path;
}

std::string absolute_path(std::string_view path, std::string_view working_directory) {
  const bool absolute = is_absolute_path(path);
  const std::string root = path_root(absolute ? path : working_directory);
  std::vector<std::string_view> names;
  const auto without_drive = [](std::string_view text) { return text.substr(has_drive(text) ? 2 : 0); };
  if (!absolute) add_names(names, without_drive(working_directory));
  add_names(names, without_drive(path));
  return root + joined_path(names);
}

std::string path_from_project(std::string_view path, std::string_view project_folder,
                              std::string_view working_directory) {
  const std::size_t slash = path.rfind('/');
  if (slash == path.npos) return std::string(path);
  const std::string_view name = path.substr(slash + 1);
  const auto folder = moved_folder(path.substr(0, slash), project_folder, working_directory);
  // "/x.wav" lies in a folder without a name.
  if (!folder || slash == 0) return std::string(path);
  if (folder->empty()) return std::string(name);
  return folder->ends_with('/') ? *folder + std::string(name) : *folder + "/" + std::string(name);
}

std::string folder_from_project(std::string_view folder, std::string_view project_folder,
                                std::string_view working_directory) {
  const auto moved = moved_folder(folder, project_folder, working_directory);
  if (!moved) return std::string(folder);
  return moved->empty() ? "." : *moved;
}

bool is_sound_name(std::string_view name) {
  return !name.empty() && name != "." && name != kUp && name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}

}  // namespace frt

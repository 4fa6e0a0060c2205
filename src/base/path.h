// Paths as lists of names, for what leads from one place to another. "/" and "\" both separate, whatever the system:
// sessions come from either.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace frt {

// The path's parts between separators, without empty ones and "."; ".." takes the name before it away, if that is no
// "..".
std::vector<std::string_view> path_names(std::string_view path);

// True if it begins with a separator or with a letter and ":".
bool is_absolute_path(std::string_view path);

// "/", "C:/" or nothing: what stands before the names of a path.
std::string path_root(std::string_view path);

// The names joined by "/".
std::string joined_path(const std::vector<std::string_view>& names);

// The path from the top, by names; a relative one from `working_directory`.
std::string absolute_path(std::string_view path, std::string_view working_directory);

// How a project in `project_folder` names a file of `path`, which like the folder may count from the working directory
// `working_directory` (empty if it can't be told). REAPER reads a relative path from the project's own folder. An
// absolute path, a bare name, and every path of a project in the working directory stay as they are.
std::string path_from_project(std::string_view path, std::string_view project_folder,
                              std::string_view working_directory);

// The same for a folder; "." where nothing is left.
std::string folder_from_project(std::string_view folder, std::string_view project_folder,
                                std::string_view working_directory);

// A name that leads to one entry of a folder and nowhere else: not empty, "." or "..", without separators and zero
// bytes.
bool is_sound_name(std::string_view name);

}  // namespace frt

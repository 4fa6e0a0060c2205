// Lists of names as notes print them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace frt {

using NameVector = std::vector<std::string>;

inline int count_of(const NameVector& names) { return static_cast<int>(names.size()); }

// How a list of names stands in the one "%s" of a note.
enum class NameList {
  kLines,        // each name on a line of its own, indented by six blanks
  kQuotedLines,  // the same, each in double quotes
  kBlanks,       // one blank before each name
  kQuoted,       // one blank before each name, in double quotes, with commas between
  kCommas,       // one blank before each name, with commas between; printed name by name, so no limit cuts the list
};

// One name as it stands in such a list.
std::string name_in_list(const std::string& name, NameList form, bool first);
std::string joined_names(const NameVector& names, NameList form);

// At most `limit` names, each as a line and cut to its first `longest` bytes, and how many more there are.
void print_first_names(const NameVector& names, std::size_t limit, std::size_t longest = SIZE_MAX);

}  // namespace frt

#include "report/name_list.h"

#include <algorithm>

#include "run/text_output.h"

namespace frt {

std::string name_in_list(const std::string& name, NameList form, bool first) {
  const char* const separator = first ? " " : ", ";
  switch (form) {
    case NameList::kLines:
      return "\n      " + name;
    case NameList::kQuotedLines:
      return "\n      \"" + name + "\"";
    case NameList::kBlanks:
      // A name that a reader couldn't tell from its neighbours stands in quotes, its bytes as they are.
      return name.empty() || name.find_first_of(" \"") != name.npos ? " \"" + name + "\"" : " " + name;
    case NameList::kQuoted:
      return separator + ("\"" + name + "\"");
    case NameList::kCommas:
      break;
  }
  return separator + name;
}

std::string joined_names(const NameVector& names, NameList form) {
  std::string out;
  for (const std::string& name : names) out += name_in_list(name, form, out.empty());
  return out;
}

void print_first_names(const NameVector& names, std::size_t limit, std::size_t longest) {
  const std::size_t shown = std::min(names.size(), limit);
  for (std::size_t i = 0; i < shown; ++i) print_text("      %s\n", names[i].substr(0, longest).c_str());
  if (names.size() > shown) print_text("      ... and %d more\n", static_cast<int>(names.size() - shown));
}

}  // namespace frt

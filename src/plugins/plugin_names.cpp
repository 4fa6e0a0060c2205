#include "plugins/plugin_names.h"

#include "base/text.h"

namespace frt {
namespace {

bool is_alnum(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

std::string alnum_lower(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (is_alnum(c)) out += c;
  }
  return lower_ascii(out);
}

std::string_view bare_name(std::string_view display) {
  while (display.ends_with(')')) {
    const std::size_t remark = display.rfind(" (");
    if (remark == display.npos) break;
    display = display.substr(0, remark);
  }
  return display;
}

std::string maker_of(std::string_view display) {
  const std::size_t open = display.rfind('('), close = display.rfind(')');
  if (open == display.npos || close == display.npos || close < open) return {};
  return alnum_lower(display.substr(open + 1, close - open - 1));
}

std::string file_stem(std::string_view file) {
  const std::size_t separator = last_separator(file);
  if (separator != file.npos) file = file.substr(separator + 1);
  return alnum_lower(file.substr(0, file.rfind('.')));
}

std::string repaired_file(std::string_view file, std::string_view name) {
  std::string out(file);
  if (file.rfind('.') != name.size()) return out;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (out[i] == '_' && !is_alnum(name[i])) out[i] = name[i];
  }
  return out;
}

}  // namespace frt

#include "plugins/side_text.h"

#include <algorithm>

#include "plugins/knowledge.h"

namespace frt {

std::optional<std::string_view> LineReader::next() {
  if (rest_.empty()) return std::nullopt;
  std::string_view line = rest_.substr(0, limit_ - 1);
  line = line.substr(0, line.find('\n'));
  const bool ended = line.size() < limit_ - 1 && line.size() < rest_.size();
  rest_.remove_prefix(line.size() + (ended ? 1 : 0));
  line = line.substr(0, line.find('\0'));
  while (line.ends_with('\r') || line.ends_with('\n')) line.remove_suffix(1);
  return line;
}

std::optional<FileBytes> read_side_file(const std::string& path) {
  if (!RegularFile::open(path)) return std::nullopt;
  return read_file(path);
}

std::uint32_t leading_number(std::string_view text) {
  std::uint32_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return number;
}

std::uint32_t leading_pin_count(std::string_view text) {
  return std::min(leading_number(text), KnowledgeRecord::kMostPins);
}

}  // namespace frt

// What a test reads of a project: the text a writer puts out, and the lines in it that begin with a word.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "writer/rpp_text.h"

namespace frt::test {

using Lines = std::vector<std::string>;

class StringTarget final : public TextTarget {
 public:
  bool write(const char* data, std::size_t n) override {
    text.append(data, n);
    return true;
  }
  std::string text;
};

// All that `write` puts out.
template <class Write>
std::string written_by(Write write) {
  StringTarget target;
  {
    ProjectText out(target);
    write(out);
  }
  return target.text;
}

// Of each line whose first word it is: what follows the word.
inline Lines lines_of(std::string_view text, std::string_view word) {
  Lines found;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string_view line = text.substr(at, end - at);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (line.substr(0, line.find(' ')) == word) {
      found.emplace_back(line.substr(std::min(word.size() + 1, line.size())));
    }
    at = end + 1;
  }
  return found;
}

}  // namespace frt::test

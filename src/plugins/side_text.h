// Text files that stand beside the program or that REAPER leaves behind, read line by line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/file.h"

namespace frt {

// The lines of a text without their ends. A line of `limit` bytes or more, its end counted, comes in pieces of limit -
// 1 bytes; a zero byte ends what is seen of a piece.
class LineReader {
 public:
  LineReader(std::string_view text, std::size_t limit) : rest_(text), limit_(limit) {}
  std::optional<std::string_view> next();

 private:
  std::string_view rest_;
  std::size_t limit_;
};

// A whole regular file. No device, pipe or folder is opened: the paths come from sessions and from the environment.
std::optional<FileBytes> read_side_file(const std::string& path);

inline std::string_view text_of(const FileBytes& file) {
  return {reinterpret_cast<const char*>(file.data()), file.size()};
}

// The digits that a text begins with as a number, by its lowest 32 bits; 0 where it begins with none.
std::uint32_t leading_number(std::string_view text);

// The same as a count of pins. More than REAPER will ever have is a slip, and nobody makes room for it.
std::uint32_t leading_pin_count(std::string_view text);

}  // namespace frt

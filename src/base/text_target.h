// Where a text under construction goes, piece by piece.
#pragma once

#include <cstddef>

namespace frt {

class TextTarget {
 public:
  virtual ~TextTarget() = default;
  // Takes n bytes; false once anything could not be written.
  virtual bool write(const char* data, std::size_t n) = 0;
};

}  // namespace frt

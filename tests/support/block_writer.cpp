#include "support/block_writer.h"

#include <algorithm>

// What every byte of a session goes through. Tests are compiled without optimisation, this is built as the preset says.

namespace frt::test {

BlockWriter& BlockWriter::number(std::uint64_t value, unsigned width) {
  std::uint8_t bytes[8];
  for (unsigned i = 0; i < 8; ++i) bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
  return copy(bytes, std::min(width, 8U)).zeros(width - std::min(width, 8U));
}

BlockWriter& BlockWriter::copy(const void* from, std::size_t size) {
  const auto* first = static_cast<const std::uint8_t*>(from);
  out_.insert(out_.end(), first, first + size);
  return *this;
}

std::vector<std::uint8_t> encrypt(std::vector<std::uint8_t> image) {
  if (image.size() < 20) return image;
  const bool old_family = image[18] == 1;
  const unsigned factor = old_family ? 53 : 11;
  unsigned d = 0;
  while (((d * factor) & 255) != image[19]) ++d;
  for (std::size_t p = 20; p < image.size(); ++p) {
    image[p] ^= static_cast<std::uint8_t>(old_family ? (p & 255) * d : ((p >> 12) & 255) * (256 - d));
  }
  return image;
}

}  // namespace frt::test

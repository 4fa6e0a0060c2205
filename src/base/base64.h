// Base64 as the project text uses it: standard alphabet, "=" padding, one line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace frt {

std::string base64(ByteView bytes);

// Bytes of a text that comes in pieces. What is no digit of it, "=" and line ends included, is passed over, and the
// digits behind it carry on; bits that fill no byte at the end are dropped.
class Base64Decoder {
 public:
  void add(std::string_view text);
  const std::vector<std::uint8_t>& bytes() const { return bytes_; }
  ByteView view() const { return {bytes_.data(), bytes_.size()}; }

 private:
  std::vector<std::uint8_t> bytes_;
  std::uint32_t bits_ = 0;
  unsigned held_ = 0;  // bits that fill no byte yet
};

}  // namespace frt

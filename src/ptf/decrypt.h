// The encryption of session files: every byte behind the head is XORed with a key that depends on its position only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/bytes.h"

namespace frt {

// Head of a session file
//   0   u8     3
//   1   text   "0010111100101011"
//   17  u8     byte order: 0 little-endian, else big-endian
//   18  u8     encryption: 5 from Pro Tools 10 on, 1 in the older family
//   19  u8     key
//   20         encrypted, to the end of the file
namespace head_layout {
constexpr std::size_t kFirst = 0, kMark = 1, kByteOrder = 17, kEncryption = 18, kKey = 19, kSize = 20;
}  // namespace head_layout

// The way of one file's encryption. XOR undoes itself: the same call encrypts.
class SessionCipher {
 public:
  // From the first bytes of a file; nothing if they are not the head of a session file.
  static std::optional<SessionCipher> from_head(ByteView head);

  // Works on n bytes that stand at position `at` of the file.
  void apply(std::uint8_t* bytes, std::size_t n, std::uint64_t at) const;

 private:
  std::uint8_t type_ = 5;
  std::uint8_t step_ = 0;  // what the key grows by: a 4096-byte page (type 5), a byte (type 1)
};

}  // namespace frt

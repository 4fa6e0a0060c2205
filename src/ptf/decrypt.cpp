#include "ptf/decrypt.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace frt {
namespace {

constexpr std::uint64_t kPage = 4096;

// The number d with d * factor = key (mod 256); there is exactly one for an odd factor.
std::uint8_t divide(std::uint8_t key, unsigned factor) {
  unsigned d = 0;
  while (((d * factor) & 255u) != key) ++d;
  return static_cast<std::uint8_t>(d);
}

void xor_all(std::uint8_t* bytes, std::size_t n, std::uint8_t key) {
  if (key == 0) return;
  const std::uint64_t wide = key * UINT64_C(0x0101010101010101);
  std::size_t i = 0;
  for (; i + sizeof wide <= n; i += sizeof wide) {
    std::uint64_t word;
    std::memcpy(&word, bytes + i, sizeof word);
    word ^= wide;
    std::memcpy(bytes + i, &word, sizeof word);
  }
  for (; i < n; ++i) bytes[i] ^= key;
}

}  // namespace

std::optional<SessionCipher> SessionCipher::from_head(ByteView head) {
  if (head.size() < head_layout::kSize || *head.u8(head_layout::kFirst) != 3 ||
      !head.equals(head_layout::kMark, "0010111100101011")) {
    return std::nullopt;
  }
  SessionCipher cipher;
  cipher.type_ = *head.u8(head_layout::kEncryption);
  const std::uint8_t key = *head.u8(head_layout::kKey);
  if (cipher.type_ == 5) {
    cipher.step_ = static_cast<std::uint8_t>(256u - divide(key, 11));
  } else if (cipher.type_ == 1) {
    cipher.step_ = divide(key, 53);
  } else {
    return std::nullopt;
  }
  return cipher;
}

void SessionCipher::apply(std::uint8_t* bytes, std::size_t n, std::uint64_t at) const {
  if (at < head_layout::kSize) {
    const std::size_t plain = std::min<std::size_t>(n, static_cast<std::size_t>(head_layout::kSize - at));
    bytes += plain;
    n -= plain;
    at += plain;
  }
  if (type_ == 1) {
    std::array<std::uint8_t, 256> keys;
    for (unsigned i = 0; i < keys.size(); ++i) keys[i] = static_cast<std::uint8_t>(i * step_);
    for (std::size_t i = 0; i < n; ++i) bytes[i] ^= keys[(at + i) & 255u];
    return;
  }
  while (n > 0) {
    const std::size_t in_page = std::min<std::size_t>(n, static_cast<std::size_t>(kPage - at % kPage));
    xor_all(bytes, in_page, static_cast<std::uint8_t>(((at / kPage) & 255u) * step_));
    bytes += in_page;
    n -= in_page;
    at += in_page;
  }
}

}  // namespace frt

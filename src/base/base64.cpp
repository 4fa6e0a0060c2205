#include "base/base64.h"

namespace frt {

std::string base64(ByteView bytes) {
  static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::uint32_t group =
        std::uint32_t{*bytes.u8(i)} << 16 | std::uint32_t{bytes.u8_or(i + 1, 0)} << 8 | bytes.u8_or(i + 2, 0);
    out += kAlphabet[group >> 18];
    out += kAlphabet[group >> 12 & 63];
    out += i + 1 < bytes.size() ? kAlphabet[group >> 6 & 63] : '=';
    out += i + 2 < bytes.size() ? kAlphabet[group & 63] : '=';
  }
  return out;
}

}  // namespace frt

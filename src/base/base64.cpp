#include "base/base64.h"

namespace frt {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(ByteView bytes) {
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

void Base64Decoder::add(std::string_view text) {
  for (const char c : text) {
    const std::size_t digit = kAlphabet.find(c);
    if (digit == kAlphabet.npos) continue;
    bits_ = bits_ << 6 | static_cast<std::uint32_t>(digit);
    held_ += 6;
    if (held_ < 8) continue;
    held_ -= 8;
    bytes_.push_back(static_cast<std::uint8_t>(bits_ >> held_));
  }
}

}  // namespace frt

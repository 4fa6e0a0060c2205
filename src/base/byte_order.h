// Numbers whose highest byte comes first: plug-ins store them so in places.
#pragma once

#include <bit>
#include <cstdint>
#include <optional>

#include "base/bytes.h"

namespace frt {

inline std::optional<std::uint32_t> u32_big(ByteView bytes, std::uint64_t at) {
  if (!bytes.has(at, 4)) return std::nullopt;
  std::uint32_t value = 0;
  for (std::uint64_t i = 0; i < 4; ++i) value = value << 8 | *bytes.u8(at + i);
  return value;
}

inline std::optional<double> f64_big(ByteView bytes, std::uint64_t at) {
  const auto high = u32_big(bytes, at), low = u32_big(bytes, at + 4);
  if (!high || !low) return std::nullopt;
  return std::bit_cast<double>(std::uint64_t{*high} << 32 | *low);
}

}  // namespace frt

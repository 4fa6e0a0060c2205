// The decrypted file with its numbers in the session's own byte order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/bytes.h"
#include "image/blocks.h"
#include "ptf/decrypt.h"

namespace frt {

// A block with its end known to lie inside what it was sought in.
struct FoundBlock {
  std::uint64_t start = 0;  // its mark
  std::uint64_t end = 0;
  std::uint16_t content_type = 0;
};

// The converter's readers know little-endian sessions only; what stands in this room, like the format, knows both.
class SessionBytes {
 public:
  explicit SessionBytes(ByteView bytes) : bytes_(bytes), big_(bytes.u8_or(head_layout::kByteOrder, 0) != 0) {}
  // Little-endian, whatever the file's head says.
  static SessionBytes little_endian(ByteView bytes) {
    SessionBytes session(bytes);
    session.big_ = false;
    return session;
  }

  const ByteView& view() const { return bytes_; }
  std::uint64_t size() const { return bytes_.size(); }
  std::optional<std::uint16_t> u16(std::uint64_t at) const {
    const auto v = bytes_.u16(at);
    return v && big_ ? static_cast<std::uint16_t>(*v << 8 | *v >> 8) : v;
  }
  std::optional<std::uint32_t> u32(std::uint64_t at) const {
    const auto v = bytes_.u32(at);
    return v && big_ ? __builtin_bswap32(*v) : v;
  }
  std::optional<std::uint64_t> u64(std::uint64_t at) const {
    const auto v = bytes_.u64(at);
    return v && big_ ? __builtin_bswap64(*v) : v;
  }
  // A counted text, cut to what is left; nothing if its count itself lies outside.
  std::optional<std::string_view> counted(std::uint64_t at) const {
    const auto n = u32(at);
    if (!n) return std::nullopt;
    return bytes_.text(at + 4, std::min<std::uint64_t>(*n, bytes_.size() - at - 4));
  }

  std::optional<FoundBlock> block_at(std::uint64_t p, std::uint64_t limit) const {
    if (!bytes_.has(p, block_layout::kContent) || *bytes_.u8(p) != block_layout::kMark) return std::nullopt;
    const std::uint64_t end = p + block_layout::kContentType + *u32(p + block_layout::kSize);
    if (*u16(p + block_layout::kType) >= 256 || end > limit) return std::nullopt;
    return FoundBlock{p, end, *u16(p + block_layout::kContentType)};
  }

  // Every block that follows another between two positions, without looking into them; `take` says false to stop.
  template <typename Take>
  void each_block(std::uint64_t from, std::uint64_t to, Take take) const {
    for (std::uint64_t p = from; (p = bytes_.find(block_layout::kMark, p, to)) < to;) {
      const auto block = block_at(p, to);
      if (block && !take(*block)) return;
      p = block && block->end > p + block_layout::kContentType ? block->end : p + 1;
    }
  }

 private:
  ByteView bytes_;
  bool big_;
};

}  // namespace frt

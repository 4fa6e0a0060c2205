// Writes session bytes: nested blocks whose sizes patch themselves, counted texts, packed values, the file's head
// and its encryption. SessionBuilder stands on it; tests of a single reader use it for images made by hand:
//
//   BlockWriter w;
//   w.open(0x2619).u16(0).text("Gtr").close();
//   const std::vector<std::uint8_t> bytes = w.take();
#pragma once

#include <cassert>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace frt::test {

// Musical positions are stored with this added.
inline constexpr std::uint64_t kTickOrigin = 1'000'000'000'000;

class BlockWriter {
 public:
  // Starts a block: everything up to its close() is its content.
  BlockWriter& open(std::uint16_t content_type, std::uint16_t block_type = 1) {
    u8('Z').u16(block_type);
    open_.push_back(out_.size());
    return u32(0).u16(content_type);
  }
  BlockWriter& close() {
    assert(!open_.empty());
    const std::size_t at = open_.back();
    open_.pop_back();
    return patch(at, static_cast<std::uint32_t>(out_.size() - at - 4));
  }
  // A block without children.
  BlockWriter& leaf(std::uint16_t content_type, const std::vector<std::uint8_t>& content) {
    return open(content_type).bytes(content).close();
  }

  BlockWriter& u8(unsigned value) {
    out_.push_back(static_cast<std::uint8_t>(value));
    return *this;
  }
  BlockWriter& u16(unsigned value) { return number(value, 2); }
  BlockWriter& u32(std::uint32_t value) { return number(value, 4); }
  BlockWriter& u40(std::uint64_t value) { return number(value, 5); }
  BlockWriter& u64(std::uint64_t value) { return number(value, 8); }
  BlockWriter& i16(int value) { return number(static_cast<std::uint64_t>(value), 2); }
  BlockWriter& i32(std::int32_t value) { return number(static_cast<std::uint32_t>(value), 4); }
  BlockWriter& f32(float value) { return copy(&value, sizeof value); }
  BlockWriter& f64(double value) { return copy(&value, sizeof value); }

  // A number in that many bytes, lowest first.
  BlockWriter& number(std::uint64_t value, unsigned width);
  // A counted text: u32 length, then its bytes.
  BlockWriter& text(std::string_view value) { return u32(static_cast<std::uint32_t>(value.size())).raw(value); }
  // The bytes alone.
  BlockWriter& raw(std::string_view value) { return copy(value.data(), value.size()); }
  BlockWriter& bytes(const std::vector<std::uint8_t>& value) { return copy(value.data(), value.size()); }
  BlockWriter& bytes(std::initializer_list<std::uint8_t> value) { return copy(value.begin(), value.size()); }
  BlockWriter& zeros(std::size_t count) { return fill(count, 0); }
  BlockWriter& fill(std::size_t count, std::uint8_t value) {
    out_.insert(out_.end(), count, value);
    return *this;
  }

  // Integers packed, each in as few bytes as it needs (none for 0, at most 5): a clip's source offset, length and
  // start; a sync point stands between the first two.
  BlockWriter& three_point(std::uint64_t first, std::uint64_t second, std::uint64_t third, std::uint64_t sync = 0) {
    const unsigned n1 = width_of(first), n2 = width_of(second), n3 = width_of(third), skip = width_of(sync);
    u8(0).u8(n1 << 4).u8((n2 << 4) | skip).u8(n3 << 4).u8(0);
    return number(first, n1).number(sync, skip).number(second, n2).number(third, n3);
  }

  BlockWriter& patch(std::size_t at, std::uint32_t value) {
    for (unsigned i = 0; i < 4; ++i) out_[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
  }

  std::size_t size() const { return out_.size(); }
  void reserve(std::size_t size) { out_.reserve(size); }
  std::vector<std::uint8_t> take() {
    assert(open_.empty());
    return std::exchange(out_, {});
  }

  // How many bytes a value needs: 0 to 5.
  static unsigned width_of(std::uint64_t value) {
    unsigned width = 0;
    while (width < 5 && (value >> (8 * width)) != 0) ++width;
    return width;
  }

 private:
  BlockWriter& copy(const void* from, std::size_t size);

  std::vector<std::uint8_t> out_;
  std::vector<std::size_t> open_;  // where the sizes of the open blocks stand
};

// The head of a session file, 20 bytes: mark, magic text, byte order, encryption type, key.
inline BlockWriter& session_head(BlockWriter& w, std::uint8_t encryption_type = 5, std::uint8_t key = 0x51) {
  return w.u8(3).raw("0010111100101011").u8(0).u8(encryption_type).u8(key);
}

// A decrypted image: the head, then the blocks.
inline std::vector<std::uint8_t> image_of(const std::vector<std::uint8_t>& blocks) {
  BlockWriter w;
  return session_head(w).bytes(blocks).take();
}

// A decrypted image as the file on disc; by its head, type 5 (Pro Tools 10 on) or 1 (older). Undoes itself.
std::vector<std::uint8_t> encrypt(std::vector<std::uint8_t> image);

}  // namespace frt::test

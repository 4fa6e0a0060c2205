// Images made by hand, for layouts, limits and damage that SessionBuilder doesn't make: the bytes and the session that
// views them, and blocks filled field by field.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "support/block_writer.h"

namespace frt::test {

struct Image {
  // A byte of 0 stands behind the blocks: the index takes no block without content for one at the very end.
  explicit Image(const std::vector<std::uint8_t>& blocks, std::size_t behind = 1) : bytes(image_of(blocks)) {
    bytes.resize(bytes.size() + behind);
    session = SessionImage(ByteView(bytes.data(), bytes.size()));
  }
  explicit Image(BlockWriter& w, std::size_t behind = 1) : Image(w.take(), behind) {}
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  std::vector<std::uint8_t> bytes;
  SessionImage session;
};

// A block filled by field, each at its distance from the block's first byte.
class Fields {
 public:
  Fields(std::uint16_t content_type, std::size_t size) : type_(content_type), content_(size - 2) {}
  Fields& put(std::size_t at, std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) content_.at(at - 9 + i) = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
  }
  Fields& text(std::size_t at, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) content_.at(at - 9 + i) = static_cast<std::uint8_t>(text[i]);
    return *this;
  }
  void into(BlockWriter& w) const { w.leaf(type_, content_); }
  std::vector<std::uint8_t> blocks() const {
    BlockWriter w;
    into(w);
    return w.take();
  }

 private:
  std::uint16_t type_;
  std::vector<std::uint8_t> content_;
};

}  // namespace frt::test

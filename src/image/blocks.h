// The session image and its blocks: what every scanner of the session stands on.
//
// A decrypted session is a flat byte image in which blocks nest inside each other. Nesting is not declared
// anywhere. There are two ways to look: the flat index (every position that could be a block, at any depth;
// most scanners use it) and the tree (roots and their direct children, for the clip and track tables).
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace frt {

// A block at position p:
//   p + 0  u8   mark, 'Z'
//   p + 1  u16  block type, below 256
//   p + 3  u32  size, counted from p + 7
//   p + 7  u16  content type, the first two bytes that the size covers
//   p + 9       content
namespace block_layout {
constexpr std::uint8_t kMark = 0x5A;
constexpr std::uint64_t kType = 1, kTypeHigh = 2, kSize = 3, kContentType = 7, kContent = 9;
}  // namespace block_layout

// One plausible block of the flat index. Offsets of every reader count from a block's `start`, its mark.
struct FlatBlock {
  std::uint64_t start = 0;  // p
  std::uint32_t size = 0;   // as stored, never 0
  std::uint16_t content_type = 0;
  std::uint64_t end() const { return start + 7 + size; }
  bool holds(std::uint64_t position) const { return start < position && position < end(); }
};

// One node of the tree.
struct Block {
  std::uint64_t start = 0;  // p
  std::uint32_t size = 0;   // as stored; 0 is a node too
  std::uint16_t content_type = 0;
  std::uint64_t limit = 0;  // the end of what the block was found in
  std::uint64_t end() const { return start + 7 + size; }
};

// The decrypted session, read only, with the index of its plausible blocks, built in one pass.
// A block is plausible at p (p from 0 to size - 10) if the mark stands there, the byte at p + 2 is 0, and the
// size is not 0 and does not pass the image's end. False ones inside payloads are in the index too.
class SessionImage {
 public:
  SessionImage() = default;
  explicit SessionImage(ByteView bytes);

  const ByteView& bytes() const { return bytes_; }
  std::uint64_t size() const { return bytes_.size(); }

  // All plausible blocks, by position.
  std::span<const FlatBlock> blocks() const { return blocks_; }
  // Those of one content type, by position: indices into blocks().
  std::span<const std::uint32_t> of_type(std::uint16_t content_type) const;
  // The same, as far as they start at or behind `from` and before `to`.
  std::span<const std::uint32_t> of_type(std::uint16_t content_type, std::uint64_t from, std::uint64_t to) const;
  const FlatBlock& block(std::uint32_t index) const { return blocks_[index]; }
  // The first block of the type that starts at or behind `from` and before `to`; null if none.
  const FlatBlock* first_of_type(std::uint16_t content_type, std::uint64_t from = 0,
                                 std::uint64_t to = UINT64_MAX) const;
  // All blocks that start at or behind `from` and before `to`.
  std::span<const FlatBlock> blocks_in(std::uint64_t from, std::uint64_t to) const;
  // The plausible block that starts exactly at `position`; null if there is none.
  const FlatBlock* at(std::uint64_t position) const;

 private:
  ByteView bytes_;
  std::vector<FlatBlock> blocks_;
  // Where each content type's group stands in by_type_. Two levels, since a session uses a few hundred types in a
  // handful of high bytes, and touching fresh memory for all 65536 would cost more than the rest of a small run.
  struct Group {
    std::uint32_t from = 0, count = 0;
  };
  Group& group_of(std::uint16_t content_type);
  std::vector<std::uint32_t> by_type_;  // indices into blocks_, grouped by content type
  std::array<std::vector<Group>, 256> groups_;
};

// The blocks of the given content types, merged by position: indices into image.blocks().
std::vector<std::uint32_t> blocks_of_types(const SessionImage& image, std::span<const std::uint16_t> types);

// The tree node at `position` if a block of type below 256 stands there and ends at or before `limit`.
bool parse_block_at(ByteView image, std::uint64_t position, std::uint64_t limit, Block& block);

// The roots, from byte 20 on, in file order. An image of 20 bytes or fewer has none.
std::vector<Block> walk_roots(ByteView image);

// The direct children of a node, in file order. Every byte that no child covers is tried as a mark, so the
// payload of a leaf can give false children: callers select by content type.
std::vector<Block> children_of(ByteView image, const Block& parent);
std::vector<Block> children_of(ByteView image, const Block& parent, std::uint16_t content_type);

// The counted string at q (u32 count, then that many bytes): cut to what is left if the count runs past the
// end, empty if the count itself does.
std::string_view read_counted(ByteView image, std::uint64_t q);

// True if each byte is printable ASCII or a byte of UTF-8 above ASCII (0x80 to 0xBF, 0xC2 to 0xF4).
bool text_ok(std::string_view text);
// The stricter form: bytes 32 to 126 only.
bool ascii_ok(std::string_view text);

// The counted string at q with a count from `least` to `most` that lies inside `end` and passes text_ok;
// a null view (data() == nullptr) otherwise.
std::string_view read_name(ByteView image, std::uint64_t q, std::uint32_t least, std::uint32_t most,
                           std::uint64_t end = UINT64_MAX);

// True for text that cannot be a track name: under 2 characters, a path, a media file, a well-known folder.
bool looks_like_path(std::string_view text);

}  // namespace frt

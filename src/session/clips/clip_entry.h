// What the readers of clip entries share: the layout that all forms of an entry begin with, and the two codes that
// newer and older sessions give the same block.
#pragma once

#include <cstdint>
#include <vector>

#include "image/blocks.h"

namespace frt {

// Clip entry, from its mark
//   + 9       a block kClipHeader, whose content is
//   + 18      counted name; behind it the packed numbers
//   e         behind that block: u16 number of the audio file
//   e + 4     u32 channel in that file, from 0, where 8 bytes are left; in every session from Pro Tools 10 to 2024 seen
namespace clip_entry {
constexpr std::uint64_t kHeader = 9, kName = 18, kNameText = 22;
constexpr std::uint64_t kChannel = 4, kBehindChannel = 8;  // from e
}  // namespace clip_entry

// Clip header, from its mark: counted name, then the packed numbers
namespace clip_header {
constexpr std::uint64_t kName = 9, kNameText = 13;
}  // namespace clip_header

inline bool is_either(const Block& block, std::uint16_t newer, std::uint16_t older) {
  return block.content_type == newer || block.content_type == older;
}

inline std::vector<Block> children_of_either(ByteView image, const Block& parent, std::uint16_t newer,
                                             std::uint16_t older) {
  std::vector<Block> children = children_of(image, parent);
  std::erase_if(children, [&](const Block& child) { return !is_either(child, newer, older); });
  return children;
}

}  // namespace frt

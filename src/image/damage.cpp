#include "image/damage.h"

#include <algorithm>
#include <optional>

namespace frt {
namespace {

bool marked(ByteView image, std::uint64_t p) {
  return image.u8_or(p, 0) == block_layout::kMark && image.u8_or(p + block_layout::kTypeHigh, 1) == 0;
}

// The end of the plausible block at p. Unlike the index's, it may stand in the image's last nine bytes.
std::optional<std::uint64_t> block_end(ByteView image, std::uint64_t p) {
  const std::uint32_t size = image.u32_or(p + block_layout::kSize, 0);
  if (!marked(image, p) || size == 0 || !image.has(p, std::uint64_t{7} + size)) return std::nullopt;
  return p + 7 + size;
}

}  // namespace

Damage measure_damage(const SessionImage& image) {
  Damage damage;
  damage.image_size = image.size();
  const std::uint64_t size = image.size();
  if (size < 10) return damage;
  for (const FlatBlock& block : image.blocks()) damage.last_end = std::max(damage.last_end, block.end());
  if (damage.last_end != size) return damage;

  const ByteView bytes = image.bytes();
  std::uint64_t p = bytes.find(block_layout::kMark, 0, size - 9);
  while (p < size - 9 && !marked(bytes, p)) p = bytes.find(block_layout::kMark, p + 1, size - 9);
  while (const auto end = block_end(bytes, p)) p = *end;
  damage.walked = true;
  damage.break_pos = p;
  return damage;
}

}  // namespace frt

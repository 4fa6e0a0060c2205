#include "session/inserts/aax_chunks.h"

#include <algorithm>

#include "base/byte_order.h"

namespace frt {
namespace {

// Chunk, numbers big-endian
//   + 0   u32  length with these 56 bytes
//   + 4   u32  the plug-in's maker code; in every session seen the maker code stands at + 8
//   + 8   12   of the first chunk the plug-in's signature, of others as well
//   + 20  4    id
//   + 24  32   name, filled up with zeros
//   + 56       data
namespace chunk_layout {
constexpr std::uint64_t kMaker = 4, kMakerSeen = 8, kId = 20, kIdLength = 4;
}  // namespace chunk_layout

// From the insert's mark.
constexpr std::uint64_t kFirstChunk = 17, kSignature = 25;
constexpr std::uint64_t kMakerLength = 4;
// What may stand behind the last chunk.
constexpr std::uint64_t kMostBehind = 8;
constexpr std::uint64_t kLeastState = 32;

}  // namespace

AaxChunks aax_chunks(ByteView image, std::uint64_t start, std::uint64_t end) {
  namespace at = chunk_layout;
  AaxChunks walk;
  const ByteView bytes = image.clamped(0, end);
  const auto maker = bytes.text(start + kSignature, kMakerLength);
  if (!maker) return walk;
  std::uint64_t p = start + kFirstChunk;
  while (end - p >= AaxChunk::kHeader) {
    const std::uint32_t length = u32_big(bytes, p).value_or(0);
    const bool ours = bytes.equals(p + at::kMaker, *maker) || bytes.equals(p + at::kMakerSeen, *maker);
    if (length < AaxChunk::kHeader || length > end - p || !ours) return {};
    walk.chunks.push_back({p, length, bytes.text(p + at::kId, at::kIdLength).value_or("")});
    p += length;
  }
  if (end - p > kMostBehind) return {};
  walk.whole = true;
  return walk;
}

bool can_hold_state(ByteView image, const AaxChunk& chunk) {
  if (chunk.id == kControlChunk || chunk.data_length() < kLeastState) return false;
  const std::string_view data = image.text(chunk.data(), chunk.data_length()).value_or("");
  const auto text_end = std::find_if(data.begin(), data.end(), [](char c) { return c < 32 || c > 126; });
  return std::any_of(text_end, data.end(), [](char c) { return c != 0; });
}

bool begins_with_controls(ByteView image, std::uint64_t start, std::uint64_t end) {
  return image.clamped(0, end).equals(start + kFirstChunk + chunk_layout::kId, kControlChunk);
}

}  // namespace frt

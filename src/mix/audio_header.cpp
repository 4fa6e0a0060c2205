#include "mix/audio_header.h"

#include <array>
#include <string_view>

#include "base/bytes.h"

namespace frt {
namespace {

// Both kinds are a head of 12 bytes and chunks of 8 bytes (name, size) and their content, odd sizes padded.
constexpr std::uint64_t kHead = 12, kChunkHead = 8;
constexpr int kMostChunks = 256;  // no maker writes more before the sound

// WAV format chunk
//   + 0   u16  form: 1 integers, 3 floats, 0xFFFE told further behind
//   + 12  u16  block align: bytes a frame
namespace format_layout {
constexpr std::uint64_t kForm = 0, kBlockAlign = 12, kLeast = 16;
}  // namespace format_layout
// Sizes past 32 bits: the data size stands in the chunk "ds64" then.
constexpr std::uint64_t kLongDataSize = 8, kLongSizes = 16;
constexpr std::uint32_t kSizeElsewhere = 0xFFFFFFFF;
// AIFF common chunk: big-endian u32 frames at + 2.
constexpr std::uint64_t kCommonFrames = 2, kCommonLeast = 6;

template <std::size_t N>
std::optional<std::array<std::uint8_t, N>> read_bytes(const RegularFile& file, std::uint64_t at) {
  std::array<std::uint8_t, N> bytes;
  if (!file.read(at, bytes.data(), N)) return std::nullopt;
  return bytes;
}

template <std::size_t N>
ByteView view(const std::array<std::uint8_t, N>& bytes) {
  return {bytes.data(), bytes.size()};
}

std::uint32_t big_endian(std::uint32_t value) {
  return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

// Calls take(name, size, content position) for each chunk; it says false to stop.
template <typename Take>
void each_chunk(const RegularFile& file, bool sizes_big_endian, Take take) {
  std::uint64_t at = kHead;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto head = read_bytes<kChunkHead>(file, at);
    if (!head) return;
    const std::uint32_t stored = *view(*head).u32(4);
    const std::uint32_t size = sizes_big_endian ? big_endian(stored) : stored;
    if (!take(*view(*head).text(0, 4), size, at + kChunkHead)) return;
    at += kChunkHead + size + (size & 1u);
  }
}

std::optional<std::uint64_t> wav_frames(const RegularFile& file) {
  std::optional<std::uint64_t> long_data, data;
  std::optional<std::uint16_t> block_align;
  bool unknown_form = false;
  each_chunk(file, false, [&](std::string_view name, std::uint32_t size, std::uint64_t at) {
    if (name == "ds64" && size >= kLongSizes) {
      if (const auto bytes = read_bytes<kLongSizes>(file, at)) long_data = view(*bytes).u64(kLongDataSize);
    } else if (name == "fmt " && !block_align) {
      const auto bytes = read_bytes<format_layout::kLeast>(file, at);
      if (size < format_layout::kLeast || !bytes) return !(unknown_form = true);
      const std::uint16_t form = *view(*bytes).u16(format_layout::kForm);
      block_align = view(*bytes).u16(format_layout::kBlockAlign);
      if ((form != 1 && form != 3 && form != 0xFFFE) || *block_align == 0) return !(unknown_form = true);
    } else if (name == "data" && !data) {
      data = size;
      if (size == kSizeElsewhere) {
        if (!long_data) return !(unknown_form = true);
        data = long_data;
      }
    }
    return !(block_align && data);
  });
  if (unknown_form || !block_align || !data) return std::nullopt;
  return *data / *block_align;
}

std::optional<std::uint64_t> aiff_frames(const RegularFile& file) {
  std::optional<std::uint64_t> frames;
  each_chunk(file, true, [&](std::string_view name, std::uint32_t size, std::uint64_t at) {
    if (name != "COMM") return true;
    const auto bytes = read_bytes<kCommonLeast>(file, at);
    if (size >= kCommonLeast && bytes) frames = big_endian(*view(*bytes).u32(kCommonFrames));
    return false;
  });
  return frames;
}

}  // namespace

std::optional<std::uint64_t> stated_frames(const RegularFile& file) {
  const auto head = read_bytes<kHead>(file, 0);
  if (!head) return std::nullopt;
  const std::string_view kind = *view(*head).text(0, 4), form = *view(*head).text(8, 4);
  if ((kind == "RIFF" || kind == "RF64" || kind == "BW64") && form == "WAVE") return wav_frames(file);
  if (kind == "FORM" && (form == "AIFF" || form == "AIFC")) return aiff_frames(file);
  return std::nullopt;
}

}  // namespace frt

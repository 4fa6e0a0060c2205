#include "session/media/own_chain.h"

#include <cstdint>
#include <optional>

#include "base/path.h"
#include "image/content_types.h"

namespace frt {
namespace {

// Session facts, from the mark, in every session of 2014 to 2024 seen
//   + 27  u32  n, at most 64, then n + 1 counted texts: labels and values, the name of the session this is a backup of
//   then  u32  m, 1 to 64, then m + 1 counted texts: the volume, its folders from the top, the session's file
namespace facts_layout {
constexpr std::uint64_t kTexts = 27;
constexpr std::uint32_t kMostTexts = 64;
}  // namespace facts_layout

constexpr std::string_view kBackups = "Session File Backups";

// Counted texts one behind the other; nothing if one leaves the block.
std::optional<std::vector<std::string_view>> take_texts(ByteView bytes, std::uint64_t& at, std::uint64_t end,
                                                        std::uint32_t count) {
  std::vector<std::string_view> texts;
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto length = bytes.u32(at);
    if (!length || at + 4 + *length > end) return std::nullopt;
    const auto text = bytes.text(at + 4, *length);
    if (!text) return std::nullopt;
    texts.push_back(*text);
    at += 4 + *length;
  }
  return texts;
}

}  // namespace

bool is_sound_volume(std::string_view name) {
  const bool letter = name.size() == 3 && ((name[0] >= 'a' && name[0] <= 'z') || (name[0] >= 'A' && name[0] <= 'Z'));
  return is_sound_name(name) || (letter && name.substr(1) == ":\\");
}

std::vector<std::string_view> read_own_chain(const SessionImage& image) {
  using namespace facts_layout;
  const FlatBlock* block = image.first_of_type(content::kSessionFacts);
  if (!block) return {};
  const ByteView bytes = image.bytes();
  std::uint64_t at = block->start + kTexts;
  const auto labels = bytes.u32(at);
  if (!labels || *labels > kMostTexts) return {};
  at += 4;
  if (!take_texts(bytes, at, block->end(), *labels + 1)) return {};
  const auto names = bytes.u32(at);
  if (!names || *names < 1 || *names > kMostTexts || at + 4 > block->end()) return {};
  at += 4;
  auto chain = take_texts(bytes, at, block->end(), *names + 1);
  if (!chain) return {};
  chain->pop_back();  // the session's file
  if (!chain->empty() && chain->back() == kBackups) chain->pop_back();
  for (std::size_t i = 0; i < chain->size(); ++i) {
    if (!(i == 0 ? is_sound_volume((*chain)[i]) : is_sound_name((*chain)[i]))) return {};
  }
  return std::move(*chain);
}

}  // namespace frt

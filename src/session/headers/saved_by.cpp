#include "session/headers/saved_by.h"

#include <algorithm>

#include "image/content_types.h"

namespace frt {
namespace {

bool is_version(std::string_view text) {
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  return !text.empty() && digit(text.front()) &&
         std::all_of(text.begin(), text.end(), [&](char c) { return c == '.' || digit(c); });
}

// The number that the text begins with, up to its first dot.
int number_before_dot(std::string_view text) {
  constexpr int kMost = 100000000;  // far above any year, far below where an int ends
  int value = 0;
  for (const char c : text.substr(0, text.find('.'))) value = std::min(kMost, value * 10 + (c - '0'));
  return value;
}

void set_version(SavedBy& saved, std::string_view text) {
  const std::size_t dot = text.find('.');
  saved.version = text;
  saved.version_major = number_before_dot(text);
  saved.version_minor = dot == text.npos ? 0 : number_before_dot(text.substr(dot + 1));
}

constexpr std::string_view kProductName = "Pro Tools";

// Sessions that name their maker in the header: two counted texts one behind the other, the product and its
// version. Anything may stand around them, so every position is tried as a count.
SavedBy scan_header(ByteView image) {
  constexpr std::uint64_t kSearched = 1024;
  constexpr std::uint32_t kLeast = 2, kMost = 64;
  const std::uint64_t limit = std::min<std::uint64_t>(image.size(), kSearched);
  SavedBy saved;
  for (std::uint64_t p = 0; p + 5 < limit;) {
    const std::string_view text = read_name(image, p, kLeast, kMost, limit);
    if (text.data() == nullptr) {
      ++p;
      continue;
    }
    if (!saved.product.empty()) {
      if (!is_version(text)) return {};
      set_version(saved, text);
      return saved;
    }
    if (text.size() > kProductName.size() && text.starts_with(kProductName)) {
      saved.product = text;
      p += 4 + text.size();
    } else {
      ++p;
    }
  }
  return saved;
}

// Product block, in every session from Pro Tools 10.3 to 2024 that was seen; the header of none of
// them says who saved it
//   + 10  u32    n, then n bytes: the product
//   + 14 + n + 16  u32    m, then m bytes: the version
namespace product_layout {
constexpr std::uint64_t kProductText = 10, kVersionText = 16;
constexpr std::uint32_t kLeast = 1, kMost = 64;
}  // namespace product_layout

SavedBy read_product_block(const SessionImage& image) {
  using namespace product_layout;
  for (const std::uint32_t index : image.of_type(content::kProduct)) {
    const FlatBlock& block = image.block(index);
    const std::uint64_t at = block.start + kProductText;
    SavedBy saved;
    saved.product = read_name(image.bytes(), at, kLeast, kMost, block.end());
    if (!saved.product.starts_with(kProductName)) continue;
    const std::uint64_t behind = at + 4 + saved.product.size();
    const std::string_view version = read_name(image.bytes(), behind + kVersionText, kLeast, kMost);
    if (is_version(version)) set_version(saved, version);
    return saved;
  }
  return {};
}

}  // namespace

bool SavedBy::dark_by_default() const {
  constexpr int kYear = 2020, kLastClassic = 10;
  return version.empty() || version_major > kYear || (version_major == kYear && version_minor > kLastClassic);
}

SavedBy read_saved_by(const SessionImage& image) {
  const SavedBy saved = scan_header(image.bytes());
  return saved.product.empty() ? read_product_block(image) : saved;
}

}  // namespace frt

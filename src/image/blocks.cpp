#include "image/blocks.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace frt {
namespace {

constexpr std::uint8_t kMark = block_layout::kMark;

bool byte_of_text(std::uint8_t c) {
  return (c >= 32 && c <= 126) || (c >= 0x80 && c <= 0xBF) || (c >= 0xC2 && c <= 0xF4);
}

}  // namespace

SessionImage::SessionImage(ByteView bytes) : bytes_(bytes) {
  const std::uint64_t size = bytes.size();
  if (size >= 10) {
    // Room enough for any real session at once: what stays unused is never touched, so it costs nothing.
    blocks_.reserve(size / 4 + 1);
    const std::uint64_t limit = size - 9;
    for (std::uint64_t p = bytes.find(kMark, 0, limit); p < limit; p = bytes.find(kMark, p + 1, limit)) {
      if (*bytes.u8(p + block_layout::kTypeHigh) != 0) continue;
      const std::uint32_t block_size = *bytes.u32(p + block_layout::kSize);
      if (block_size == 0 || block_size > size - p - 7) continue;
      blocks_.push_back({p, block_size, *bytes.u16(p + block_layout::kContentType)});
    }
  }
  for (const FlatBlock& block : blocks_) ++group_of(block.content_type).count;
  std::uint32_t from = 0;
  for (auto& page : groups_) {
    for (Group& group : page) {
      group.from = from;
      from += group.count;
      group.count = 0;
    }
  }
  by_type_.resize(blocks_.size());
  for (std::uint32_t i = 0; i < blocks_.size(); ++i) {
    Group& group = group_of(blocks_[i].content_type);
    by_type_[group.from + group.count++] = i;
  }
}

SessionImage::Group& SessionImage::group_of(std::uint16_t content_type) {
  auto& page = groups_[content_type >> 8];
  if (page.empty()) page.resize(256);
  return page[content_type & 255u];
}

std::span<const std::uint32_t> SessionImage::of_type(std::uint16_t content_type) const {
  const auto& page = groups_[content_type >> 8];
  if (page.empty()) return {};
  const Group& group = page[content_type & 255u];
  return std::span(by_type_).subspan(group.from, group.count);
}

std::span<const std::uint32_t> SessionImage::of_type(std::uint16_t content_type, std::uint64_t from,
                                                     std::uint64_t to) const {
  const auto all = of_type(content_type);
  const auto before = [this](std::uint32_t index, std::uint64_t position) { return blocks_[index].start < position; };
  const auto first = std::lower_bound(all.begin(), all.end(), from, before);
  const auto last = std::lower_bound(first, all.end(), to, before);
  return {first, last};
}

const FlatBlock* SessionImage::first_of_type(std::uint16_t content_type, std::uint64_t from, std::uint64_t to) const {
  const auto found = of_type(content_type, from, to);
  return found.empty() ? nullptr : &blocks_[found.front()];
}

std::span<const FlatBlock> SessionImage::blocks_in(std::uint64_t from, std::uint64_t to) const {
  const auto before = [](const FlatBlock& block, std::uint64_t position) { return block.start < position; };
  const auto first = std::lower_bound(blocks_.begin(), blocks_.end(), from, before);
  const auto last = std::lower_bound(first, blocks_.end(), to, before);
  return {first, last};
}

const FlatBlock* SessionImage::at(std::uint64_t position) const {
  const auto found = blocks_in(position, position + 1);
  return found.empty() ? nullptr : &found.front();
}

std::vector<std::uint32_t> blocks_of_types(const SessionImage& image, std::span<const std::uint16_t> types) {
  std::vector<std::uint32_t> merged;
  for (const std::uint16_t type : types) {
    const auto found = image.of_type(type);
    merged.insert(merged.end(), found.begin(), found.end());
  }
  std::sort(merged.begin(), merged.end());
  return merged;
}

bool parse_block_at(ByteView image, std::uint64_t position, std::uint64_t limit, Block& block) {
  if (!image.has(position, block_layout::kContent) || *image.u8(position) != kMark) return false;
  const std::uint16_t type = *image.u16(position + 1);
  const std::uint32_t size = *image.u32(position + block_layout::kSize);
  if (type >= 256 || position + 7 + size > limit) return false;
  block = {position, size, *image.u16(position + block_layout::kContentType), limit};
  return true;
}

std::vector<Block> walk_roots(ByteView image) {
  std::vector<Block> roots;
  if (image.size() <= 20) return roots;
  for (std::uint64_t p = 20; p < image.size();) {
    p = image.find(kMark, p, image.size());
    Block root;
    if (parse_block_at(image, p, image.size(), root)) {
      roots.push_back(root);
      p = root.size == 0 ? p + 1 : root.end();
    } else {
      ++p;
    }
  }
  return roots;
}

namespace {

template <typename Take>
void each_child(ByteView image, const Block& parent, Take take) {
  if (parent.size < 2) return;
  const std::uint64_t stop = parent.start + parent.size;  // candidates stop 7 bytes before the block's end
  // A candidate must lie before the limit of the parent itself even when the last child's extent is counted
  // once more, so the last child of a list that ends at that limit is not seen.
  std::uint64_t jump = 0;
  for (std::uint64_t p = parent.start + 1; p < stop && p + jump < parent.limit;) {
    if (*image.u8(p) != kMark) {
      // Between children only a mark can begin one.
      jump = 0;
      p = image.find(kMark, p, stop);
      continue;
    }
    Block child;
    if (parse_block_at(image, p, parent.end(), child)) {
      take(child);
      jump = child.end() - p;
      p += jump;
    } else {
      jump = 0;
      ++p;
    }
  }
}

}  // namespace

std::vector<Block> children_of(ByteView image, const Block& parent) {
  std::vector<Block> children;
  each_child(image, parent, [&](const Block& child) { children.push_back(child); });
  return children;
}

std::vector<Block> children_of(ByteView image, const Block& parent, std::uint16_t content_type) {
  std::vector<Block> children;
  each_child(image, parent, [&](const Block& child) {
    if (child.content_type == content_type) children.push_back(child);
  });
  return children;
}

std::string_view read_counted(ByteView image, std::uint64_t q) {
  const auto count = image.u32(q);
  if (!count) return {};
  const std::uint64_t left = image.size() - q - 4;
  return *image.text(q + 4, std::min<std::uint64_t>(*count, left));
}

bool text_ok(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return byte_of_text(static_cast<std::uint8_t>(c)); });
}

bool ascii_ok(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 32 && c <= 126; });
}

std::string_view read_name(ByteView image, std::uint64_t q, std::uint32_t least, std::uint32_t most,
                           std::uint64_t end) {
  const auto count = image.u32(q);
  if (!count || *count < least || *count > most) return {};
  const auto text = image.text(q + 4, *count);
  if (!text || q + 4 + *count > end || !text_ok(*text)) return {};
  return *text;
}

bool looks_like_path(std::string_view text) {
  static constexpr std::array<std::string_view, 18> kWords = {"Users",         "Documents",
                                                              "AppData",       "Roaming",
                                                              "Local",         "Temp",
                                                              "Pro Tools",     "Pro Tools Projects",
                                                              "Audio Files",   "Plug-In Settings",
                                                              "Avid",          "Music",
                                                              "Desktop",       "Video Files",
                                                              "Bounced Files", "Session File Backups",
                                                              "WaveCache.wfm", "Rendered Files"};
  static constexpr std::array<std::string_view, 8> kExtensions = {"wav", "aif", "aiff", "mp3",
                                                                  "ptx", "pio", "tfx",  "wfm"};
  if (text.size() < 2 || text.find_first_of(":\\/") != text.npos) return true;
  if (std::find(kWords.begin(), kWords.end(), text) != kWords.end()) return true;
  const std::size_t dot = text.rfind('.');
  if (dot == text.npos || dot + 1 == text.size()) return false;
  const std::string extension = lower_ascii(text.substr(dot + 1));
  return std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

}  // namespace frt

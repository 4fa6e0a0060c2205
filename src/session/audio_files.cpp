#include "session/audio_files.h"

#include <algorithm>
#include <array>
#include <optional>

namespace frt {
namespace {

// File list 0x103a:
//   p +  9  u32  number of entries
//   p + 13       entries: u8 kind, u32 parent (number of an entry), counted name, 4-byte tag
// Lists made otherwise are read from p + 18 on by names and tags alone:
//   q       u32  name length n, 1 to 512
//   q + 4   n    name, no control bytes
//   q+4+n   4    tag: a file's type, or zeros for a folder
//   q+8+n   5    not read
namespace file_list {
constexpr std::uint64_t kCount = 9, kEntries = 13, kFirstName = 18;
constexpr std::uint64_t kSmallestEntry = 13;
constexpr std::uint8_t kFolder = 1, kFile = 2;
constexpr std::uint32_t kLongestName = 512;
constexpr std::uint64_t kRootType = 0x1004;
}  // namespace file_list

struct Entry {
  std::uint8_t kind;
  std::uint32_t parent;
  std::string_view name;
};

// The list by kinds and parents, if it reads so to its last byte.
std::optional<std::vector<Entry>> read_by_kind(ByteView image, const FlatBlock& block) {
  const std::uint64_t end = block.end();
  const auto count = image.u32(block.start + file_list::kCount);
  std::uint64_t q = block.start + file_list::kEntries;
  if (!count || q > end || *count > (end - q) / file_list::kSmallestEntry) return std::nullopt;
  std::vector<Entry> entries;
  entries.reserve(*count);
  for (std::uint32_t i = 0; i < *count; ++i) {
    const auto kind = image.u8(q);
    const auto parent = image.u32(q + 1);
    const auto length = image.u32(q + 5);
    if (!kind || !parent || !length || *kind > file_list::kFile) return std::nullopt;
    const auto name = image.text(q + 9, *length);
    q += file_list::kSmallestEntry + *length;
    if (!name || q > end) return std::nullopt;
    entries.push_back({*kind, *parent, *name});
  }
  if (q != end) return std::nullopt;
  return entries;
}

std::string_view folder_of_entry(const std::vector<Entry>& entries, const Entry& file) {
  if (file.parent >= entries.size() || entries[file.parent].kind != file_list::kFolder) return {};
  return entries[file.parent].name;
}

void add_folder(AudioFileFolders& folders, std::string_view name, std::string_view folder) {
  if (!folder.empty() && !folders.by_name.contains(name)) folders.by_name.emplace(name, folder);
}

bool is_file_tag(std::string_view tag) {
  static constexpr std::array<std::string_view, 6> kTags = {"WAVE", "EVAW", "AIFF", "FFIA", "MXFf", "fFXM"};
  return std::find(kTags.begin(), kTags.end(), tag) != kTags.end();
}

// Names and tags alone: an entry of four zero bytes is the folder of the files behind it.
void read_by_tag(ByteView image, const FlatBlock& block, AudioFileFolders& folders) {
  const std::uint64_t end = block.end();
  std::string_view folder;
  for (std::uint64_t q = block.start + file_list::kFirstName; q + 4 <= end;) {
    const std::uint32_t n = image.u32_or(q, 0);
    if (n == 0 || n > file_list::kLongestName || q + n + 13 > end + 2) return;
    const auto name = image.text(q + 4, n);
    const auto tag = image.text(q + 4 + n, 4);
    if (!name || !tag) return;
    if (std::any_of(name->begin(), name->end(), [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }))
      return;
    if (*tag == std::string_view("\0\0\0\0", 4))
      folder = *name;
    else if (is_file_tag(*tag))
      add_folder(folders, *name, folder);
    else
      return;
    q += std::uint64_t{n} + 13;
  }
}

}  // namespace

AudioFileFolders read_audio_file_folders(const SessionImage& image) {
  AudioFileFolders folders;
  std::vector<Block> file_roots;
  const auto lists = image.of_type(0x103a);
  if (!lists.empty())
    for (const Block& root : walk_roots(image.bytes()))
      if (root.content_type == file_list::kRootType) file_roots.push_back(root);
  const auto in_file_root = [&](const FlatBlock& list) {
    const auto behind = std::upper_bound(file_roots.begin(), file_roots.end(), list.start,
                                         [](std::uint64_t at, const Block& root) { return at < root.offset; });
    return behind != file_roots.begin() && list.end() <= std::prev(behind)->end();
  };

  bool numbers_hold = true;
  for (const std::uint32_t index : lists) {
    const FlatBlock& list = image.block(index);
    const bool numbered = in_file_root(list);
    const auto entries = read_by_kind(image.bytes(), list);
    if (!entries) {
      read_by_tag(image.bytes(), list, folders);
      if (numbered) numbers_hold = false;
      continue;
    }
    for (const Entry& entry : *entries) {
      if (entry.kind != file_list::kFile) continue;
      const std::string_view folder = folder_of_entry(*entries, entry);
      add_folder(folders, entry.name, folder);
      if (!numbered) continue;
      folders.by_number.push_back(folder);
      ++folders.name_counts[std::string(entry.name)];
    }
  }
  if (!numbers_hold) {
    folders.by_number.clear();
    folders.name_counts.clear();
  }
  return folders;
}

}  // namespace frt

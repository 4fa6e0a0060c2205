#include "session/media/file_folders.h"

#include <algorithm>
#include <array>

#include "image/content_types.h"
#include "ptf/file_list.h"

namespace frt {
namespace {

constexpr std::uint32_t kLongestName = 512;

std::string_view folder_of_entry(const std::vector<FileListEntry>& entries, const FileListEntry& file) {
  if (file.parent >= entries.size() || entries[file.parent].kind != FileListEntry::kFolder) return {};
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
void read_by_tag(const SessionBytes& bytes, const FlatBlock& block, AudioFileFolders& folders) {
  TaggedNames names(bytes, block.start, block.end());
  std::string_view folder;
  while (const auto entry = names.next_whole(kLongestName)) {
    const auto control = [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; };
    if (std::any_of(entry->name.begin(), entry->name.end(), control)) return;
    if (entry->tag == std::string_view("\0\0\0\0", 4))
      folder = entry->name;
    else if (is_file_tag(entry->tag))
      add_folder(folders, entry->name, folder);
    else
      return;
  }
}

}  // namespace

AudioFileFolders read_audio_file_folders(const SessionImage& image, Skips& skips) {
  AudioFileFolders folders;
  const SessionBytes bytes = SessionBytes::little_endian(image.bytes());
  std::vector<Block> file_roots;
  const auto lists = image.of_type(content::kNameList);
  if (!lists.empty())
    for (const Block& root : walk_roots(image.bytes()))
      if (root.content_type == content::kAudioFiles) file_roots.push_back(root);
  const auto in_file_root = [&](const FlatBlock& list) {
    const auto behind = std::upper_bound(
        file_roots.begin(), file_roots.end(), list.start,
        [](std::uint64_t at, const Block& root) { return at < root.start + block_layout::kContentType; });
    return behind != file_roots.begin() && list.end() <= std::prev(behind)->end();
  };

  bool numbers_hold = true;
  for (const std::uint32_t index : lists) {
    const FlatBlock& list = image.block(index);
    const bool numbered = in_file_root(list);
    const auto entries = read_file_list(bytes, list.start, list.end());
    if (!entries) {
      skips.add(content::kNameList, list.start, "kinds and parents");
      read_by_tag(bytes, list, folders);
      if (numbered) numbers_hold = false;
      continue;
    }
    for (const FileListEntry& entry : *entries) {
      if (entry.kind != FileListEntry::kFile) continue;
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

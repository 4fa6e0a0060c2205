#include "session/media/file_folders.h"

#include <algorithm>
#include <array>

#include "base/path.h"
#include "image/content_types.h"
#include "session/media/own_chain.h"

namespace frt {
namespace {

// No disc holds a longer name or path. Many files can lie in one folder, so its name is copied with each of them.
constexpr std::uint32_t kLongestName = 512;
constexpr std::size_t kLongestPath = 4096;
constexpr std::uint64_t kSmallestEntry = 13;  // bytes

std::string_view folder_of_entry(const std::vector<FileListEntry>& entries, const FileListEntry& file) {
  if (file.parent >= entries.size() || entries[file.parent].kind != FileListEntry::kFolder) return {};
  const std::string_view folder = entries[file.parent].name;
  return folder.size() <= kLongestName ? folder : std::string_view();
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

  // Lists of a session don't share entries. Lists made to overlap could each hold all of the others' once more.
  std::uint64_t entries_left = image.size() / kSmallestEntry;
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
    if (entries->size() > entries_left) {
      numbers_hold = false;
      break;
    }
    entries_left -= entries->size();
    for (const FileListEntry& entry : *entries) {
      if (entry.kind != FileListEntry::kFile) continue;
      const std::string_view folder = folder_of_entry(*entries, entry);
      add_folder(folders, entry.name, folder);
      if (!numbered) continue;
      ListedFile& file = folders.files.emplace_back();
      file.name = entry.name;
      file.folder = folder;
      file.list = folders.lists.size();
      file.parent = entry.parent;
    }
    if (numbered) folders.lists.push_back(*entries);
  }
  if (!numbers_hold) {
    folders.files.clear();
    folders.lists.clear();
  }
  return folders;
}

std::vector<std::string_view> AudioFileFolders::chain_of(std::size_t number) const {
  constexpr std::size_t kMostNames = 64;
  if (number >= files.size() || !is_sound_name(files[number].name)) return {};
  const std::vector<FileListEntry>& entries = lists[files[number].list];
  std::vector<std::string_view> chain;
  std::size_t length = files[number].name.size();
  for (std::uint32_t at = files[number].parent; at < entries.size() && chain.size() < kMostNames;
       at = entries[at].parent) {
    const FileListEntry& entry = entries[at];
    chain.push_back(entry.name);
    length += 1 + entry.name.size();
    if (length > kLongestPath) return {};
    if (entry.kind == FileListEntry::kVolume) {
      if (!is_sound_volume(entry.name)) return {};
      std::reverse(chain.begin(), chain.end());
      return chain;
    }
    if (entry.kind != FileListEntry::kFolder || !is_sound_name(entry.name)) return {};
  }
  return {};
}

}  // namespace frt

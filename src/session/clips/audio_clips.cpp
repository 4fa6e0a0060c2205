#include "session/clips/audio_clips.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "image/content_types.h"
#include "session/clips/clip_entry.h"
#include "session/clips/packed_numbers.h"

namespace frt {
namespace {

// Audio file names by index: the first entry that bears the index or has no name decides.
class FileNames {
 public:
  explicit FileNames(const std::vector<AudioFileEntry>& files) : files_(files), nameless_(files.size()) {
    for (std::size_t i = files.size(); i-- > 0;) {
      first_[files[i].index] = i;
      if (files[i].name.empty()) nameless_ = i;
    }
  }
  std::string_view of(std::uint16_t index) const {
    const std::size_t at = deciding(index);
    return at < files_.size() ? files_[at].name : std::string_view{};
  }
  // The place in the list of the entry that decides, if it bears the index.
  std::optional<std::size_t> place_of(std::uint16_t index) const {
    const std::size_t at = deciding(index);
    if (at < files_.size() && files_[at].index == index) return at;
    return std::nullopt;
  }

 private:
  std::size_t deciding(std::uint16_t index) const {
    const auto found = first_.find(index);
    return std::min(found == first_.end() ? files_.size() : found->second, nameless_);
  }

  const std::vector<AudioFileEntry>& files_;
  std::unordered_map<std::uint16_t, std::size_t> first_;
  std::size_t nameless_;
};

}  // namespace

std::vector<ClipRecord> read_audio_clips(const SessionImage& image, const std::vector<Block>& roots,
                                         const std::vector<AudioFileEntry>& files,
                                         const std::vector<AudioFileFacts>& facts) {
  namespace at = clip_entry;
  const ByteView bytes = image.bytes();
  const FileNames names(files);
  std::vector<ClipRecord> clips;
  for (const Block& root : roots) {
    if (!is_either(root, content::kClipList, content::kOldClipList)) continue;
    for (const Block& entry : children_of_either(bytes, root, content::kClip, content::kOldClip)) {
      ClipRecord clip;
      clip.index = static_cast<std::uint16_t>(clips.size());
      clip.name = read_counted(bytes, entry.start + at::kName);
      const PackedNumbers numbers(bytes, entry.start + at::kNameText + clip.name.size());
      clip.source_offset = static_cast<std::int64_t>(numbers.value_or_0(0));
      clip.length = static_cast<std::int64_t>(numbers.value_or_0(1));
      clip.start = static_cast<std::int64_t>(numbers.value_or_0(2));
      const std::vector<Block> children = children_of(bytes, entry);
      if (!children.empty() && bytes.has(children.front().end(), 4))
        clip.file_index = *bytes.u16(children.front().end());
      clip.file_name = names.of(clip.file_index);
      if (entry.content_type == content::kClip && !children.empty() &&
          children.front().content_type == content::kClipHeader &&
          children.front().end() + at::kBehindChannel <= entry.end()) {
        clip.channel = bytes.u32_or(children.front().end() + at::kChannel, 0);
      }
      if (const auto file = names.place_of(clip.file_index); file && *file < facts.size())
        clip.file_channels = facts[*file].channels;
      clips.push_back(clip);
    }
  }
  return clips;
}

}  // namespace frt

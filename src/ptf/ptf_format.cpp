#include "ptf/ptf_format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "image/content_types.h"
#include "ptf/file_list.h"
#include "ptf/session_bytes.h"

namespace frt {

bool PTFFormat::allow_unknown_version = false;

namespace {

// The version byte. Its block is the first one inside the first root:
//   kProduct: counted text at + 10; the version is a u32 that ends 8 bytes behind the text
//   kSessionFacts: u32 at + 27, less 2
// Without such a block the oldest sessions hold it at one of three fixed places.
namespace version_layout {
constexpr std::uint64_t kBlock = 31;
constexpr std::uint64_t kProductText = 10, kBehindText = 8, kNumberValue = 27;
constexpr std::uint64_t kFixed[] = {64, 61, 58};
}  // namespace version_layout

std::uint8_t read_version(const SessionBytes& session) {
  using namespace version_layout;
  const auto block = session.block_at(kBlock, session.size());
  if (!block) {
    if (const std::uint8_t v = session.view().u8_or(kFixed[0], 0)) return v;
    if (const std::uint8_t v = session.view().u8_or(kFixed[1], 0)) return v;
    const std::uint8_t v = session.view().u8_or(kFixed[2], 0);
    return v == 0 ? v : static_cast<std::uint8_t>(v + 2);
  }
  std::optional<std::uint32_t> value;
  if (block->content_type == content::kProduct) {
    const std::uint64_t text_at = block->start + kProductText;
    if (const auto text = session.counted(text_at)) value = session.u32(text_at + text->size() + kBehindText);
  } else if (block->content_type == content::kSessionFacts) {
    value = session.u32(block->start + kNumberValue);
    if (value) *value += 2;
  }
  return static_cast<std::uint8_t>(value.value_or(0));  // the marker is a byte
}

constexpr std::uint64_t kRate = 11;  // settings root: u32, Hz

// Audio files
//   + 9   u32    number of files
//   + 13  block  a name list; then one kAudioFile a file
//     kAudioFile holds a kAudioFileFacts: u8 channels at + 13, u64 length in samples at + 15
namespace files_layout {
constexpr std::uint64_t kCount = 9, kChildren = 13, kChannels = 13, kLength = 15;
constexpr std::uint64_t kLeastEnd = 16 + 7;  // from the mark: smaller ones tell nothing
}  // namespace files_layout

// In a list without kinds what is a file shows in its name and tag only.
bool is_audio_file(const TaggedName& entry) {
  static constexpr std::array<std::string_view, 3> kNoFile = {".grp", "Audio Files", "Fade Files"};
  static constexpr std::array<std::string_view, 4> kTags = {"WAVE", "EVAW", "AIFF", "FFIA"};
  for (const std::string_view word : kNoFile) {
    if (contains(entry.name, word)) return false;
  }
  if (entry.tag[0] == '\0') return contains(entry.name, ".wav") || contains(entry.name, ".aif");
  return std::find(kTags.begin(), kTags.end(), entry.tag) != kTags.end();
}

// The names of the list's files, at most `most` where it has no kinds.
std::vector<std::string_view> file_names(const SessionBytes& session, const FoundBlock& list, std::uint64_t most) {
  std::vector<std::string_view> files;
  if (const auto entries = read_file_list(session, list.start, list.end)) {
    for (const FileListEntry& entry : *entries) {
      if (entry.kind == FileListEntry::kFile) files.push_back(entry.name);
    }
    return files;
  }
  TaggedNames names(session, list.start, list.end);
  while (files.size() < most) {
    const auto entry = names.next_cut();
    if (!entry) break;
    if (is_audio_file(*entry)) files.push_back(entry->name);
  }
  return files;
}

struct AudioFiles {
  std::vector<AudioFileEntry> entries;
  std::vector<std::int64_t> lengths;
  std::vector<AudioFileFacts> facts;
};

AudioFiles read_audio_files(const SessionBytes& session, const FoundBlock& root) {
  AudioFiles files;
  const std::uint64_t count = session.u32(root.start + files_layout::kCount).value_or(0);
  session.each_block(root.start + files_layout::kChildren, root.end, [&](const FoundBlock& child) {
    if (child.content_type == content::kNameList) {
      const std::uint64_t missing = count - files.entries.size();
      const auto names = file_names(session, child, missing);
      for (std::size_t i = 0; i < names.size() && i < missing; ++i) {
        files.entries.push_back({names[i], static_cast<std::uint16_t>(files.entries.size())});
      }
    } else if (child.content_type == content::kAudioFile) {
      files.facts.emplace_back();
      session.each_block(child.start + block_layout::kContent, child.end, [&](const FoundBlock& facts) {
        if (facts.content_type != content::kAudioFileFacts) return true;
        const std::uint64_t length = session.u64(facts.start + files_layout::kLength).value_or(0);
        files.lengths.push_back(static_cast<std::int64_t>(length));
        if (facts.end - facts.start < files_layout::kLeastEnd) return false;
        files.facts.back().length = static_cast<std::int64_t>(length);
        files.facts.back().channels = session.view().u8_or(facts.start + files_layout::kChannels, 0);
        return false;
      });
    }
    return true;
  });
  files.lengths.resize(files.entries.size());
  return files;
}

}  // namespace

int PTFFormat::unxor(const std::string& path) {
  *this = PTFFormat();
  std::optional<SessionCipher> cipher;
  auto bytes = read_file(path, [&](std::uint8_t* piece, std::size_t size, std::uint64_t at) {
    if (at == 0) cipher = SessionCipher::from_head({piece, size});
    if (cipher) cipher->apply(piece, size, at);
    return cipher.has_value();
  });
  if (!bytes || !cipher) return ptf_result::kNotDecrypted;
  bytes_ = std::move(*bytes);
  path_ = path;
  return ptf_result::kLoaded;
}

int PTFFormat::load(const std::string& path, std::int64_t /*target_rate*/) {
  if (path != path_ || bytes_.size() == 0) {
    if (const int result = unxor(path); result != ptf_result::kLoaded) return result;
  }
  version_ = 0;
  rate_ = 0;
  audio_files_.clear();
  audio_file_lengths_.clear();
  audio_file_facts_.clear();

  const SessionBytes session(bytes_.view());
  version_ = read_version(session);
  if (version_ == 0) return ptf_result::kNoVersion;
  constexpr std::uint8_t kOldestKnown = 5, kNewestKnown = 12;
  if ((version_ < kOldestKnown || version_ > kNewestKnown) && !allow_unknown_version) {
    return ptf_result::kUnknownVersion;
  }

  std::optional<FoundBlock> settings;
  std::optional<FoundBlock> files;
  session.each_block(head_layout::kSize, session.size(), [&](const FoundBlock& root) {
    if (root.content_type == content::kSettings && !settings) settings = root;
    if (root.content_type == content::kAudioFiles && !files) files = root;
    return !(settings && files);
  });
  if (settings) rate_ = session.u32(settings->start + kRate).value_or(0);
  if (!is_session_rate(rate_)) return ptf_result::kContentsUnread;
  if (files) {
    AudioFiles list = read_audio_files(session, *files);
    audio_files_ = std::move(list.entries);
    audio_file_lengths_ = std::move(list.lengths);
    audio_file_facts_ = std::move(list.facts);
  }
  return ptf_result::kLoaded;
}

}  // namespace frt

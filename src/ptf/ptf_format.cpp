#include "ptf/ptf_format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "ptf/decrypt.h"

namespace frt {

bool PTFFormat::allow_unknown_version = false;

namespace {

// Block, at position p
//   p + 0  u8   'Z'
//   p + 1  u16  block type, below 256
//   p + 3  u32  size, counted from the content type
//   p + 7  u16  content type
namespace block_layout {
constexpr std::uint64_t kType = 1, kSize = 3, kContentType = 7, kContent = 9;
constexpr std::uint8_t kMark = 0x5A;
}  // namespace block_layout

struct FoundBlock {
  std::uint64_t start = 0;  // p
  std::uint64_t end = 0;
  std::uint16_t content_type = 0;
};

// The image with its numbers in the session's own byte order. The converter's scanners read little-endian sessions
// only; this reader, like the format, knows both.
class SessionBytes {
 public:
  explicit SessionBytes(ByteView bytes) : bytes_(bytes), big_(bytes.u8_or(head_layout::kByteOrder, 0) != 0) {}

  const ByteView& view() const { return bytes_; }
  std::uint64_t size() const { return bytes_.size(); }
  std::optional<std::uint16_t> u16(std::uint64_t at) const {
    const auto v = bytes_.u16(at);
    return v && big_ ? static_cast<std::uint16_t>(*v << 8 | *v >> 8) : v;
  }
  std::optional<std::uint32_t> u32(std::uint64_t at) const {
    const auto v = bytes_.u32(at);
    return v && big_ ? __builtin_bswap32(*v) : v;
  }
  std::optional<std::uint64_t> u64(std::uint64_t at) const {
    const auto v = bytes_.u64(at);
    return v && big_ ? __builtin_bswap64(*v) : v;
  }
  // A counted text, cut to what is left; nothing if its count itself lies outside.
  std::optional<std::string_view> counted(std::uint64_t at) const {
    const auto n = u32(at);
    if (!n) return std::nullopt;
    return bytes_.text(at + 4, std::min<std::uint64_t>(*n, bytes_.size() - at - 4));
  }

  std::optional<FoundBlock> block_at(std::uint64_t p, std::uint64_t limit) const {
    if (!bytes_.has(p, block_layout::kContent) || *bytes_.u8(p) != block_layout::kMark) return std::nullopt;
    const std::uint64_t end = p + block_layout::kContentType + *u32(p + block_layout::kSize);
    if (*u16(p + block_layout::kType) >= 256 || end > limit) return std::nullopt;
    return FoundBlock{p, end, *u16(p + block_layout::kContentType)};
  }

  // Every block that follows another between two positions, without looking into them; `take` says false to stop.
  template <typename Take>
  void each_block(std::uint64_t from, std::uint64_t to, Take take) const {
    for (std::uint64_t p = from; (p = bytes_.find(block_layout::kMark, p, to)) < to;) {
      const auto block = block_at(p, to);
      if (block && !take(*block)) return;
      p = block && block->end > p + block_layout::kContentType ? block->end : p + 1;
    }
  }

 private:
  ByteView bytes_;
  bool big_;
};

// The version byte. Its block is the first one inside the first root:
//   content type 0x0003: counted text at + 10; the version is a u32 that ends 8 bytes behind the text
//   content type 0x2067: u32 at + 27, less 2
// Without such a block the oldest sessions hold it at one of three fixed places.
namespace version_layout {
constexpr std::uint64_t kBlock = 31;
constexpr std::uint16_t kProduct = 0x0003, kNumber = 0x2067;
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
  if (block->content_type == kProduct) {
    const std::uint64_t text_at = block->start + kProductText;
    if (const auto text = session.counted(text_at)) value = session.u32(text_at + text->size() + kBehindText);
  } else if (block->content_type == kNumber) {
    value = session.u32(block->start + kNumberValue);
    if (value) *value += 2;
  }
  return static_cast<std::uint8_t>(value.value_or(0));  // the marker is a byte
}

// Session settings, root of content type 0x1028: u32 rate in Hz at + 11.
constexpr std::uint16_t kSettingsRoot = 0x1028;
constexpr std::uint64_t kRate = 11;
constexpr std::int64_t kLowestRate = 44100, kHighestRate = 192000;

// Audio files, root of content type 0x1004
//   + 9   u32    number of files
//   + 13  block  0x103a, the names; then one 0x1003 a file
//     0x1003 holds a 0x1001, whose u64 at + 15 is the file's length in samples
constexpr std::uint16_t kFilesRoot = 0x1004, kNameList = 0x103A, kFile = 0x1003, kFileFacts = 0x1001;
namespace files_layout {
constexpr std::uint64_t kCount = 9, kChildren = 13, kLength = 15;
}  // namespace files_layout

// List of names, 0x103a, as every session from Pro Tools 10 on writes it
//   + 9   u32  number of entries
//   + 13       entries, the last of which ends with the block:
//     u8 kind (0 volume, 1 folder, 2 file), u32 parent (number of an entry), counted name, 4 bytes tag
namespace numbered_layout {
constexpr std::uint64_t kCount = 9, kEntries = 13;
constexpr std::uint64_t kName = 5, kTag = 4, kLeast = kName + 4 + kTag;
constexpr std::uint8_t kHighestKind = 2, kFileKind = 2;
}  // namespace numbered_layout

// The files of the list; nothing if it doesn't read that way to its last byte.
std::optional<std::vector<std::string_view>> read_numbered_list(const SessionBytes& session, const FoundBlock& list) {
  using namespace numbered_layout;
  const auto count = session.u32(list.start + kCount);
  std::uint64_t q = list.start + kEntries;
  if (!count || q > list.end || *count > (list.end - q) / kLeast) return std::nullopt;
  std::vector<std::string_view> files;
  for (std::uint32_t i = 0; i < *count; ++i) {
    if (list.end - q < kLeast) return std::nullopt;
    const std::uint8_t kind = *session.view().u8(q);
    const std::uint64_t length = *session.u32(q + kName);
    if (kind > kHighestKind || length > list.end - q - kLeast) return std::nullopt;
    if (kind == kFileKind) files.push_back(*session.view().text(q + kName + 4, length));
    q += kLeast + length;
  }
  if (q != list.end) return std::nullopt;
  return files;
}

// The same list where it was made otherwise or is damaged: entries from + 18 of a counted name, 4 bytes tag and
// 5 bytes. What is a file shows in its name and tag only.
namespace plain_layout {
constexpr std::uint64_t kEntries = 18, kTag = 4, kRest = 5;
}  // namespace plain_layout

bool is_audio_file(std::string_view name, std::string_view tag) {
  static constexpr std::array<std::string_view, 3> kNoFile = {".grp", "Audio Files", "Fade Files"};
  static constexpr std::array<std::string_view, 4> kTags = {"WAVE", "EVAW", "AIFF", "FFIA"};
  for (const std::string_view word : kNoFile) {
    if (contains(name, word)) return false;
  }
  if (tag[0] == '\0') return contains(name, ".wav") || contains(name, ".aif");
  return std::find(kTags.begin(), kTags.end(), tag) != kTags.end();
}

std::vector<std::string_view> read_plain_list(const SessionBytes& session, const FoundBlock& list, std::uint64_t most) {
  using namespace plain_layout;
  std::vector<std::string_view> files;
  for (std::uint64_t q = list.start + kEntries; q < list.end && files.size() < most;) {
    const auto name = session.counted(q);
    if (!name) break;
    q += 4 + name->size();
    const auto tag = session.view().text(q, kTag);
    if (!tag) break;
    if (is_audio_file(*name, *tag)) files.push_back(*name);
    q += kTag + kRest;
  }
  return files;
}

struct AudioFiles {
  std::vector<AudioFileEntry> entries;
  std::vector<std::int64_t> lengths;
};

AudioFiles read_audio_files(const SessionBytes& session, const FoundBlock& root) {
  AudioFiles files;
  const std::uint64_t count = session.u32(root.start + files_layout::kCount).value_or(0);
  session.each_block(root.start + files_layout::kChildren, root.end, [&](const FoundBlock& child) {
    if (child.content_type == kNameList) {
      const std::uint64_t missing = count - files.entries.size();
      const auto numbered = read_numbered_list(session, child);
      const auto names = numbered ? *numbered : read_plain_list(session, child, missing);
      for (std::size_t i = 0; i < names.size() && i < missing; ++i) {
        files.entries.push_back({names[i], static_cast<std::uint16_t>(files.entries.size())});
      }
    } else if (child.content_type == kFile) {
      session.each_block(child.start + block_layout::kContent, child.end, [&](const FoundBlock& facts) {
        if (facts.content_type != kFileFacts) return true;
        const std::uint64_t length = session.u64(facts.start + files_layout::kLength).value_or(0);
        files.lengths.push_back(static_cast<std::int64_t>(length));
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
    if (root.content_type == kSettingsRoot && !settings) settings = root;
    if (root.content_type == kFilesRoot && !files) files = root;
    return !(settings && files);
  });
  if (settings) rate_ = session.u32(settings->start + kRate).value_or(0);
  if (rate_ < kLowestRate || rate_ > kHighestRate) return ptf_result::kContentsUnread;
  if (files) {
    AudioFiles list = read_audio_files(session, *files);
    audio_files_ = std::move(list.entries);
    audio_file_lengths_ = std::move(list.lengths);
  }
  return ptf_result::kLoaded;
}

}  // namespace frt

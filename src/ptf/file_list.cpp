#include "ptf/file_list.h"

namespace frt {
namespace {

// Name list
//   + 9   u32  number of entries
//   + 13       entries, the last of which ends with the block:
//     + 0      u8   kind
//     + 1      u32  parent
//     + 5      u32  name length n, then the name
//     + 9 + n  4    tag: a file's type
namespace list_layout {
constexpr std::uint64_t kCount = 9, kEntries = 13;
constexpr std::uint64_t kParent = 1, kName = 5, kNameText = 9, kTag = 4, kLeast = kNameText + kTag;
}  // namespace list_layout

// Where it was made otherwise: from + 18 on a counted name, four bytes of tag, five bytes not read.
namespace tagged_layout {
constexpr std::uint64_t kEntries = 18, kTag = 4, kRest = 5, kOverhang = 2;
}  // namespace tagged_layout

}  // namespace

std::optional<std::vector<FileListEntry>> read_file_list(const SessionBytes& session, std::uint64_t start,
                                                         std::uint64_t end) {
  using namespace list_layout;
  const auto count = session.u32(start + kCount);
  std::uint64_t q = start + kEntries;
  if (!count || q > end || *count > (end - q) / kLeast) return std::nullopt;
  std::vector<FileListEntry> entries;
  entries.reserve(*count);
  for (std::uint32_t i = 0; i < *count; ++i) {
    const auto kind = session.view().u8(q);
    const auto parent = session.u32(q + kParent);
    const auto length = session.u32(q + kName);
    if (end - q < kLeast || !kind || !parent || !length || *kind > FileListEntry::kFile) return std::nullopt;
    const auto name = session.view().text(q + kNameText, *length);
    if (!name || *length > end - q - kLeast) return std::nullopt;
    entries.push_back({*kind, *parent, *name});
    q += kLeast + *length;
  }
  if (q != end) return std::nullopt;
  return entries;
}

TaggedNames::TaggedNames(const SessionBytes& session, std::uint64_t start, std::uint64_t end)
    : session_(session), at_(start + tagged_layout::kEntries), end_(end) {}

std::optional<TaggedName> TaggedNames::next_cut() {
  using namespace tagged_layout;
  if (at_ >= end_) return std::nullopt;
  const auto name = session_.counted(at_);
  if (!name) return std::nullopt;
  const auto tag = session_.view().text(at_ + 4 + name->size(), kTag);
  if (!tag) return std::nullopt;
  at_ += 4 + name->size() + kTag + kRest;
  return TaggedName{*name, *tag};
}

std::optional<TaggedName> TaggedNames::next_whole(std::uint32_t most_name) {
  using namespace tagged_layout;
  const auto length = session_.u32(at_);
  if (at_ + 4 > end_ || !length || *length == 0 || *length > most_name) return std::nullopt;
  if (at_ + 4 + *length + kTag + kRest > end_ + kOverhang) return std::nullopt;
  return next_cut();
}

}  // namespace frt

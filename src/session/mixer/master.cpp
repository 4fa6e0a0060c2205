#include "session/mixer/master.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "image/content_types.h"

namespace frt {
namespace {

// Name block
//   p + 9   u32  length of the name
//   p + 13       name
namespace name_layout {
constexpr std::uint64_t kName = 9;
constexpr std::uint32_t kLeast = 1, kMost = 64;
}  // namespace name_layout

std::string_view name_in(const SessionImage& image, const FlatBlock& block) {
  return read_name(image.bytes(), block.start + name_layout::kName, name_layout::kLeast, name_layout::kMost);
}

const StripRow* row_at(const std::vector<StripRow>& rows, std::uint64_t start) {
  const auto row = std::lower_bound(rows.begin(), rows.end(), start,
                                    [](const StripRow& one, std::uint64_t position) { return one.start < position; });
  return row != rows.end() && row->start == start ? &*row : nullptr;
}

}  // namespace

MasterStrip find_master(const SessionImage& image, const std::vector<StripRow>& rows,
                        const std::vector<StripRecord>& strips) {
  MasterStrip master;
  master.count = static_cast<int>(
      std::count_if(rows.begin(), rows.end(), [](const StripRow& row) { return row.kind == StripKind::kMaster; }));

  // The usable names are picked once, so that nested rows don't read them again and again.
  std::vector<const FlatBlock*> named;
  const auto masters = image.of_type(content::kMasterRow);
  if (!masters.empty()) {
    for (const std::uint32_t index : image.of_type(content::kStripName)) {
      if (name_in(image, image.block(index)).data() != nullptr) named.push_back(&image.block(index));
    }
  }
  for (const std::uint32_t index : masters) {
    const FlatBlock& block = image.block(index);
    // Sessions whose rows have no name of their own hold an empty text in the row's name block; the track
    // table names those rows.
    const FlatBlock* own = image.first_of_type(content::kStripName, block.start + 1, block.end());
    if (own != nullptr && image.bytes().u32(own->start + name_layout::kName) == std::uint32_t{0}) {
      const StripRow* row = row_at(rows, block.start);
      if (row != nullptr && !row->current_name.empty()) {
        master.name = row->current_name;
        break;
      }
    }
    const auto first =
        std::upper_bound(named.begin(), named.end(), block.start,
                         [](std::uint64_t position, const FlatBlock* one) { return position < one->start; });
    if (first != named.end() && (*first)->start < block.end()) {
      master.name = name_in(image, **first);
      break;
    }
  }
  if (master.name.empty()) return master;

  const auto strip = std::find_if(strips.begin(), strips.end(), [&](const StripRecord& one) {
    return one.has_mixer_data && one.name == master.name;
  });
  if (strip != strips.end()) master.strip = static_cast<std::size_t>(strip - strips.begin());
  return master;
}

}  // namespace frt

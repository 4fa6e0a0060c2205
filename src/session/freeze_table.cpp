#include "session/freeze_table.h"

namespace frt {
namespace {

// 0x2632, a list of rows:
//   0x2629  one row: a clip
//     0x2628  the clip's name; right behind it, a u16 with the number of the audio file
constexpr std::uint16_t kTable = 0x2632, kRow = 0x2629, kClip = 0x2628;

}  // namespace

std::vector<std::optional<std::uint16_t>> read_freeze_table(const SessionImage& image) {
  std::vector<std::optional<std::uint16_t>> files;
  const FlatBlock* table = image.first_of_type(kTable);
  if (!table) return files;
  std::uint64_t behind_row = 0;
  for (const std::uint32_t index : image.of_type(kRow, table->start + 1, table->end())) {
    const FlatBlock& row = image.block(index);
    if (row.start < behind_row) continue;  // inside the row before
    behind_row = row.end();
    const FlatBlock* clip = image.first_of_type(kClip, row.start + 1, row.end());
    files.push_back(clip ? image.bytes().u16(clip->end()) : std::nullopt);
  }
  return files;
}

}  // namespace frt

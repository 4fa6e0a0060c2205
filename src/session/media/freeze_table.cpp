#include "session/media/freeze_table.h"

#include "image/content_types.h"

namespace frt {
// A list of rows, each a kClip
//   a kClipHeader in it; right behind that, a u16 with the number of the audio file
std::vector<std::optional<std::uint16_t>> read_freeze_table(const SessionImage& image) {
  std::vector<std::optional<std::uint16_t>> files;
  const FlatBlock* table = image.first_of_type(content::kFreezeTable);
  if (!table) return files;
  std::uint64_t behind_row = 0;
  for (const std::uint32_t index : image.of_type(content::kClip, table->start + 1, table->end())) {
    const FlatBlock& row = image.block(index);
    if (row.start < behind_row) continue;  // inside the row before
    behind_row = row.end();
    const FlatBlock* clip = image.first_of_type(content::kClipHeader, row.start + 1, row.end());
    files.push_back(clip ? image.bytes().u16(clip->end()) : std::nullopt);
  }
  return files;
}

}  // namespace frt

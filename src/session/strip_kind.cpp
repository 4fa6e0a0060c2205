#include "session/strip_kind.h"

#include <algorithm>
#include <array>

#include "image/content_types.h"

namespace frt {

StripKind strip_kind(std::uint16_t content_type) {
  switch (content_type) {
    case content::kMasterRow:
      return StripKind::kMaster;
    case content::kVcaRow:
      return StripKind::kVca;
    case content::kMidiRow:
      return StripKind::kMidi;
    case content::kInstrumentRow:
      return StripKind::kInstrument;
    case content::kVideoRow:
      return StripKind::kVideo;
    default:
      return StripKind::kAudio;
  }
}

std::vector<std::uint32_t> strip_blocks(const SessionImage& image) {
  static constexpr std::array<std::uint16_t, 6> kRows = {content::kAudioRow,      content::kMasterRow,
                                                         content::kVcaRow,        content::kMidiRow,
                                                         content::kInstrumentRow, content::kVideoRow};
  std::vector<std::uint32_t> strips;
  std::uint64_t masters_end = 0;
  for (const std::uint32_t index : blocks_of_types(image, kRows)) {
    const FlatBlock& block = image.block(index);
    if (block.content_type == content::kMasterRow) masters_end = std::max(masters_end, block.end());
    if (block.content_type == content::kAudioRow && block.start < masters_end) continue;
    strips.push_back(index);
  }
  return strips;
}

}  // namespace frt

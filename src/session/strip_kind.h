// The kinds of mixer strips, and where their blocks stand.
#pragma once

#include <cstdint>
#include <vector>

#include "image/blocks.h"

namespace frt {

enum class StripKind : std::uint8_t { kAudio, kMaster, kVca, kMidi, kInstrument, kVideo };

constexpr bool plays_midi(StripKind kind) { return kind == StripKind::kMidi || kind == StripKind::kInstrument; }

// The kind of a strip row's content type; kAudio (audio or aux) for any other.
StripKind strip_kind(std::uint16_t content_type);

// The strip rows' blocks in file order, as indices into image.blocks(): one per strip, without the audio rows nested in
// a master fader's, which are no strips of their own.
std::vector<std::uint32_t> strip_blocks(const SessionImage& image);

}  // namespace frt

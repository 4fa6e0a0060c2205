// Settings of a form that nobody knows by its mark: found by what they look like, the best guess winning.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/bytes.h"
#include "session/inserts/aax_chunks.h"

namespace frt {

struct StateGuess {
  std::uint64_t offset = 0, length = 0;
  std::string_view label;  // what found it
  int copies = 1;          // 2 where it stands twice in a row
  int score = 0;
};

// `bytes` is the session up to the end of the insert's block, `start` the block's mark.
std::optional<StateGuess> guess_state(ByteView bytes, std::uint64_t start);

// The part of it that goes by tags of known formats: betters `best` where it finds something that scores higher, or
// equal and lies lower.
void guess_signature(ByteView bytes, std::uint64_t start, StateGuess& best);

// Of the chunks behind a list of controls that can hold a second state: the first, and how many there are. Nothing
// where the block doesn't begin with such a list or none does.
struct ChunkBehindControls {
  AaxChunk chunk;
  int count = 0;
};
inline constexpr std::string_view kChunkBehindControls = "AAX chunk after elck";
std::optional<ChunkBehindControls> state_behind_controls(ByteView bytes, std::uint64_t start);

}  // namespace frt

// The chain of chunks in which Pro Tools keeps what an AAX plug-in gave it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace frt {

struct AaxChunk {
  static constexpr std::uint64_t kHeader = 56;

  std::uint64_t start = 0;   // of its header, in the image
  std::uint64_t length = 0;  // with its header, at least kHeader
  std::string_view id;       // 4 characters; "elck" is the list of controls

  std::uint64_t data() const { return start + kHeader; }
  std::uint64_t data_length() const { return length - kHeader; }
};

inline constexpr std::string_view kControlChunk = "elck";

// What the walk over an insert's chunks came to. A chain that breaks gives no chunks at all, the good ones before the
// break neither.
struct AaxChunks {
  bool whole = false;
  std::vector<AaxChunk> chunks;
};

// `start` and `end` are the insert's block: its mark and its trimmed end.
AaxChunks aax_chunks(ByteView image, std::uint64_t start, std::uint64_t end);

// A chunk behind the first that can hold settings of its own: no list of controls, not small, not a mere text.
bool can_hold_state(ByteView image, const AaxChunk& chunk);

// The first chunk of the insert is its list of controls.
bool begins_with_controls(ByteView image, std::uint64_t start, std::uint64_t end);

}  // namespace frt

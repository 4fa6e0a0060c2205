// What a maker's form is made from.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/bytes.h"
#include "plugins/knowledge.h"
#include "session/inserts/insert_tables.h"
#include "state/transform.h"

namespace frt {

struct StateSource {
  const InsertRecord& insert;
  const KnowledgeRecord& record;
  const TransformOptions& options;
  ByteView block;  // the insert's, without the zeros that fill it up
  StateKind kind;
  std::uint64_t at = 0;         // of the document in the block
  ByteView document = {};       // empty if it isn't there, or not all of it lies in the block
  std::string_view label = {};  // how it was found
  int copies = 1;

  bool vst3() const { return record.is_vst3(); }
  // The bytes from a place in the block on, up to another or its end.
  ByteView from(std::uint64_t place) const { return block.clamped(place, block.size()); }
};

}  // namespace frt

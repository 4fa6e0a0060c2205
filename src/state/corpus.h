// What the program saw of a plug-in, kept as files: material for measuring more plug-ins.
#pragma once

#include <string>

#include "base/bytes.h"
#include "plugins/knowledge.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// Saves the insert's block and the state made from it in `folder` (--dump-corpus), with a row in its index.tsv, unless
// the block is there from before. An empty folder saves nothing.
void dump_corpus(const std::string& folder, const std::string& session_path, const InsertRecord& insert,
                 const KnowledgeRecord& record, ByteView state, ByteView image);

}  // namespace frt

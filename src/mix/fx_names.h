// What an insert is called, who makes it and in which format it is written: all of it from the knowledge record.
#pragma once

#include <string>
#include <string_view>

#include "mix/fx_counts.h"
#include "plugins/knowledge.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// `record` may be null.
std::string shown_name(const InsertRecord& insert, const KnowledgeRecord* record);

// The maker that a display text ends with: "VST3: Pro-C 2 (FabFilter) (64 out)" names FabFilter. Empty if it names
// none.
std::string_view maker_in(std::string_view display_text);
std::string_view shown_maker(const InsertRecord& insert, const KnowledgeRecord* record);

FxFormat format_of(std::string_view display_text);

}  // namespace frt

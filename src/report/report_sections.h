// The sections of the report, in their order.
#pragma once

#include <map>
#include <string>

#include "report/told.h"
#include "run/text_output.h"

namespace frt {

// report_overview.cpp
void add_head(TextBuilder& report, const Told& told);
void add_overview(TextBuilder& report, const Told& told);
void add_track_list(TextBuilder& report, const Told& told);

// report_plugins.cpp
void add_plugin_rows(TextBuilder& report, const FxCounts& plugins);
void add_plugins(TextBuilder& report, const Told& told);
void add_plugin_counts(TextBuilder& report, const std::map<std::string, int>& plugins);  // a line a plug-in

// report_needs_look.cpp
// Gives the number of parts that it holds.
int add_needs_look(TextBuilder& report, const Told& told);
void add_picture_and_wide(TextBuilder& report, const Told& told);

}  // namespace frt

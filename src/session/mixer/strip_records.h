// The mixer's levels: fader, pan, mute and sends of each strip, from level records that name no strip.
#pragma once

#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// One record per name of the strip table, at rest where no level record was found for it (has_mixer_data false).
// bus_names are texts of 3 to 40 bytes as read_bus_names gives them; a send without one of them near it is dropped.
// Automation lanes are not read here.
std::vector<StripRecord> read_strip_records(const SessionImage& image, const std::vector<std::string_view>& strip_table,
                                            const std::vector<std::string_view>& bus_names,
                                            const std::vector<StripRow>& rows);

}  // namespace frt

// Which strip is the session's master fader.
#pragma once

#include <string_view>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

struct MasterStrip {
  std::string_view name;               // empty: no master fader with a name
  const StripRecord* strip = nullptr;  // into the list given; null if no strip with mixer data bears the name
  int count = 0;                       // master faders in the session

  bool has_volume_automation() const { return strip && !strip->volume_lane.points.empty(); }
  bool has_mute_automation() const { return strip && !strip->mute_lane.points.empty(); }
};

// The first master fader row (0x261d) with a name: the text of a name block (0x2619) inside it, 1 to 64 bytes,
// or, where its name block holds an empty text, the row's current name. `rows` are in file order.
MasterStrip find_master(const SessionImage& image, const std::vector<StripRow>& rows,
                        const std::vector<StripRecord>& strips);

}  // namespace frt

// Which strip is the session's master fader.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

struct MasterStrip {
  std::string_view name;             // empty: no master fader with a name
  std::optional<std::size_t> strip;  // index into the strips; nothing if no strip with mixer data bears the name
  int count = 0;                     // master faders in the session
};

// The first master fader row with a name: the text of a name block inside it, 1 to 64 bytes,
// or, where its name block holds an empty text, the row's current name. `rows` are in file order.
MasterStrip find_master(const SessionImage& image, const std::vector<StripRow>& rows,
                        const std::vector<StripRecord>& strips);

}  // namespace frt

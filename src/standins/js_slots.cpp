#include "standins/js_slots.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace frt {

std::uint32_t first_slot_seed(std::uint64_t insert_start) {
  return static_cast<std::uint32_t>(insert_start & 0xFFFFFF) ^ 0x53540000;
}

std::string stand_in_label(std::string_view what, std::string_view plug_in) {
  std::string label(what);
  label.append(" (").append(plug_in).append(")");
  return label;
}

StandInSlot js_slot(std::string_view path, std::string parameters, int count, SlotTitle title) {
  StandInSlot slot;
  slot.bypassed = title.bypassed;
  slot.label = std::move(title.label);
  slot.preset = std::move(title.preset);
  slot.fxid_seed = title.fxid_seed;
  slot.js_path = path;
  slot.js_parameters = std::move(parameters);
  slot.js_parameter_count = count;
  return slot;
}

StandInSlot volume_slot(double gain_db, SlotTitle title) {
  // The JS counts 6 to a doubling.
  constexpr double kDoublingDb = 6.020599913279624, kDoubling = 6.0, kMost = 150;
  return js_slot("utility/volume",
                 format_text("%.6f 150", std::clamp(gain_db * kDoubling / kDoublingDb, -kMost, kMost)), 2,
                 std::move(title));
}

StandInSlot polarity_slot(FlippedSides sides, SlotTitle title) {
  return js_slot("IX/StereoPhaseInvert", format_text("%d", static_cast<int>(sides)), 1, std::move(title));
}

}  // namespace frt

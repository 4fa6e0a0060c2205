// The slots that several stand-ins share: stock JS plug-ins, the gain stage, the polarity flip.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "standins/slot.h"

namespace frt {

// What every slot has, whatever plug-in it is.
struct SlotTitle {
  std::string label;
  std::string preset = {};  // empty for none
  bool bypassed = false;
  std::uint32_t fxid_seed = 0;
};

// Of the identifier of an insert's first slot; those behind it count on from there.
std::uint32_t first_slot_seed(std::uint64_t insert_start);

// "what (plug-in)": a slot says what it stands for and by which plug-in.
std::string stand_in_label(std::string_view what, std::string_view plug_in);

// `count` values stand in `parameters`. `path` must outlive the slot.
StandInSlot js_slot(std::string_view path, std::string parameters, int count, SlotTitle title);

// A gain as REAPER's Volume Adjustment.
StandInSlot volume_slot(double gain_db, SlotTitle title);

// The channels that Channel Polarity Control flips.
enum class FlippedSides : std::uint8_t { kLeft = 1, kRight = 2, kBoth = 3 };
StandInSlot polarity_slot(FlippedSides sides, SlotTitle title);

// Names by which a slot's label tells its plug-in.
namespace stock_names {
constexpr std::string_view kVolume = "Volume Adjustment";
constexpr std::string_view kPolarity = "Channel Polarity Control";
}  // namespace stock_names

}  // namespace frt

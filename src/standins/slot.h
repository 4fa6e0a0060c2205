// REAPER's own plug-ins in the place of an Avid one: the slots that stand in for it, in the order of the chain.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace frt {

// One slot: a JS plug-in, or one of REAPER's VSTs with its state.
struct StandInSlot {
  bool bypassed = false;
  std::string label;            // the slot's own name
  std::string preset;           // empty for none
  std::uint32_t fxid_seed = 0;  // of its identifier

  std::string_view js_path;   // "utility/volume"; empty for a VST
  std::string js_parameters;  // values between blanks; the slot prints 64, the rest as "-"
  int js_parameter_count = 0;

  std::string_view vst_display, vst_file, vst_ident;
  std::vector<std::uint8_t> vst_header, vst_state, vst_record;
};

// What stands in for one insert.
struct StandIn {
  std::vector<StandInSlot> slots;
  std::vector<std::string_view> notes;  // what is lost, each told once a plug-in
};

}  // namespace frt

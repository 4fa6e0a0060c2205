// What is known of a plug-in: its name, which REAPER plug-in plays it, and the form that takes its settings.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace frt {

struct KnowledgeRecord {
  static constexpr std::uint32_t kMostPins = 4096;  // more than any plug-in has; a learned line may claim anything

  std::string signature = {};     // a prefix of the keys it stands for: 8 characters, or 12
  std::string name = {};          // of the product
  std::string display_text = {};  // as a project's plug-in line has it, "VST3: ..."
  std::string file = {};          // of the plug-in, may be empty
  std::string ident = {};  // uid, then class id in braces (VST3) or id in angle brackets (VST2); a CLAP's own id; empty
                           // in a row that knows the name only
  std::uint32_t pins_in = 2, pins_out = 2;  // pins_in is 0 for an instrument
  std::uint32_t tail_word = 0;              // closes the state's header: 0 or 65535
  std::uint32_t state_limit = 0;            // 0, or the exact length of state that the plug-in takes
  // A fixed head that takes the place of the session's own, and a fixed end.
  std::span<const std::uint8_t> state_template = {}, trailer = {};
  bool template_mode = false;
  std::string default_program = {};               // the preset name that the plug-in expects, or empty
  bool floats_only = false;                       // control values are written as a raw list of floats
  std::uint32_t float_count = 0, float_lead = 0;  // of that list: floats (0 means 20), zero bytes ahead of it
  bool class_id_known = true;                     // false for a .vst3 whose class id REAPER's list doesn't hold

  bool is_vst3() const { return ident.find('{') != std::string::npos; }
  bool is_clap() const { return display_text.starts_with("CLAP"); }
};

// An Avid processor without a VST form.
struct AaxOnlyRow {
  std::string_view signature, name;
  bool processes_audio = false;
};

// A control whose value counts steps.
struct SteppedControl {
  std::string_view signature;
  std::uint32_t control = 0;
  std::uint32_t steps = 0;
};

// The built-in tables (knowledge_rows.cpp).
std::span<const KnowledgeRecord> knowledge_rows();
std::span<const AaxOnlyRow> aax_only_rows();
std::span<const SteppedControl> stepped_controls();

}  // namespace frt

// The built-in tables: what was found out of plug-ins one by one, a row each, with what it rests on.
//
// A row with an identifier beats a user's own list and REAPER's. A wrong row loads a wrong plug-in; without a row the
// lists decide, as a rule rightly: so a row goes in only where something hangs on it.
#include <vector>

#include "plugins/knowledge.h"

namespace frt {

std::span<const KnowledgeRecord> knowledge_rows() {
  static const std::vector<KnowledgeRecord> rows = {
      // One signature serves Kontakt 6 and all behind it, and only by this row is the build that REAPER has chosen
      // among
      // them. Number, display text, file and pins: REAPER's lists and a chain that it saved. The id in brackets was not
      // seen there: it is what the class id of Kontakt's own VST3, formed from its VST2, says.
      {.signature = "NiInNi$D",
       .name = "Kontakt",
       .display_text = "VSTi: Kontakt (Native Instruments GmbH) (64 out)",
       .file = "Kontakt.vst",
       .ident = "1315513412<5653544E6924446B6F6E74616B740000>",
       .pins_in = 0,
       .pins_out = 64},
  };
  return rows;
}

// Names as sessions store them beside the signatures; of Dyn3, as its makers call it.
std::span<const AaxOnlyRow> aax_only_rows() {
  static constexpr AaxOnlyRow kRows[] = {
      // signature, name, processes audio
      {"Digi47e3", "EQ3 7-Band", true},               // stored by sessions; its bands are known
      {"Digi1be3", "EQ3 1-Band", true},               // stored by sessions; its band is known
      {"Digidn3c", "Dyn3 Compressor/Limiter", true},  // its controls are known
      {"Digidn3e", "Dyn3 Expander/Gate", true},       // its controls are known
      {"AVIDChSt", "Channel Strip", true},            // stored by sessions; its controls are known
      {"DigiTrim", "Trim", true},                     // stored by sessions; its gain and polarity are known
      {"DigiMaxm", "Maxim", true},                    // stored by sessions: a limiter
      {"DigiRvrb", "D-Verb", true},                   // stored by sessions: a reverb
      {"Digiclik", "Click II", true},                 // stored by sessions: its sound goes with it
  };
  return kRows;
}

// No control's steps were seen yet: without a row its value is written as it stands.
std::span<const SteppedControl> stepped_controls() { return {}; }

}  // namespace frt

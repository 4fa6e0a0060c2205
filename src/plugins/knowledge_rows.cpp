// The built-in tables: what was found out of plug-ins one by one, a row each, with what it rests on.
//
// A row with an identifier beats a user's own list and REAPER's: it goes in only where no scan can do better, and where
// every value of it was seen. A wrong row loads a wrong plug-in; without a row the lists decide, as a rule rightly.
#include <vector>

#include "plugins/knowledge.h"

namespace frt {

std::span<const KnowledgeRecord> knowledge_rows() {
  static const std::vector<KnowledgeRecord> rows = {
      // One signature serves Kontakt 6 and all behind it. Number, display text and file: REAPER's lists and a chain
      // that it saved; the pins too, from that chain's header. The id in brackets: the class id of Kontakt's own VST3,
      // which Native Instruments formed from its VST2.
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

// Names as sessions store them beside the signatures; of Dyn3 as Pro Tools' menu has them.
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
      {"Digiclik", "Click II", false},                // stored by sessions: makes its own sound
  };
  return kRows;
}

// No control's steps were seen yet: without a row its value is written as it stands.
std::span<const SteppedControl> stepped_controls() { return {}; }

}  // namespace frt

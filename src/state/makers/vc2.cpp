#include "state/makers/vc2.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "state/makers/antares.h"
#include "state/makers/juce.h"

namespace frt {
namespace {

// From the document's start
//   0   "VC2!"
//   4   u32  length of the text, less its end mark
//   8        text
constexpr std::uint64_t kLength = 4, kText = 8;

// VST3 builds, known by the class, that take the document itself though their class doesn't say so.
constexpr std::array<std::string_view, 2> kTakeDocument = {"565354564d723241564f58205448524f",
                                                           "565354415438314175746f2d54756e65"};
// This one does not, though its class says so.
constexpr std::string_view kKeepsVst2State = "JptrATLv";

bool takes_document(const StateSource& source) {
  if (source.insert.signature == kKeepsVst2State) return false;
  const std::string id = lower_ascii(class_id_of(source.record.ident));
  return is_juce_class(id) || std::find(kTakeDocument.begin(), kTakeDocument.end(), id) != kTakeDocument.end();
}

}  // namespace

StateBytes vc2_state(const StateSource& source) {
  const std::string& signature = source.insert.signature;
  const auto tag = source.block.text(source.at, 4);
  const auto length = source.block.u32(source.at + kLength);
  if (!tag || !length) return {};
  const std::uint32_t with_end_mark = *length + 1;
  const auto stored = source.block.text(source.at + kText, with_end_mark);
  if (with_end_mark == 0 || !stored) return {};

  const bool auto_pan = signature == kAntaresAutoPan;
  const std::string text = auto_pan ? antares_renamed(*stored) : antares_rewritten(signature, *stored);
  if (!auto_pan && takes_document(source)) {
    StateWriter document(text.size() + 16);
    document.text(*tag).u32(text.size() - 1).text(text);
    if (signature == "AntrSlce") document.zeros(8);
    return pack_juce_tail(view_of(document.take()));
  }
  return pack_vstw(plugin_code(source.record, signature), plugin_version(view_of(text)), *tag, view_of(text));
}

}  // namespace frt

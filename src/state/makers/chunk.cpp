#include "state/makers/chunk.h"

#include "base/text.h"
#include "state/makers/juce.h"

namespace frt {
namespace {

// Ahead of the document
//   -36   "juce": a JUCE plug-in's own head
//   -12   u32  mark of a head that belongs to the settings
//   -4    u32  length of the document
constexpr std::uint64_t kJuceMark = 36, kHead = 12, kHeadLength = 4;
constexpr std::uint32_t kHeadMark = 0x0610D6DB;

// VST3 builds whose class begins so take the document with its length, on both sides.
constexpr std::string_view kLengthOnBothSides = "{F2AEE70D00DE4F4E";
constexpr std::size_t kSignature = 8;

// A JUCE class id is made of the codes that the AAX build has too.
bool is_juce_ident(const StateSource& source) {
  const std::string& signature = source.insert.signature;
  const std::string id = lower_ascii(class_id_of(source.record.ident));
  if (!is_juce_class(id) || signature.size() != kSignature) return false;
  std::string hex;
  for (const char c : signature) hex += format_text("%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
  return std::string_view(id).substr(2 * kSignature, hex.size()) == hex;
}

}  // namespace

StateBytes chunk_vst3_state(const StateSource& source) {
  const ByteView document = source.document, block = source.block;
  const std::uint64_t at = source.at, size = document.size();
  if (is_juce_ident(source) && at >= kJuceMark && block.equals(at - kJuceMark, "juce")) return pack_juce_tail(document);
  if (source.label == "AAX chunk after elck") return {};
  if (at >= kHead && block.u32(at - kHead) == kHeadMark && block.u32(at - kHeadLength) == size) {
    const ByteView with_head = block.clamped(at - kHead, kHead + size);
    return pack_component_pair(with_head, with_head);
  }
  if (contains(source.record.ident, kLengthOnBothSides)) {
    StateWriter both(size + 8);
    const StateBytes side = both.u32(size).raw(document).u32(0).take();
    return pack_component_pair(view_of(side), view_of(side));
  }
  // A document that stands twice in a row is the processor's and the controller's.
  if (source.copies < 1) return {};
  return pack_component_pair(document, source.copies == 1 ? ByteView() : document);
}

}  // namespace frt

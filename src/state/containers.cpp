#include "state/containers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "base/text.h"
#include "plugins/identity.h"
#include "plugins/side_text.h"

namespace frt {
namespace {

constexpr std::uint32_t kVstMagic = 0xFEED5EEE;
constexpr std::uint32_t kHeaderVersion = 1;

// Their second input is left open on a strip of one channel: they take a mono signal from the first alone.
constexpr std::array<std::string_view, 2> kMonoFromFirst = {"Lin6Helx", "Lin66SAX"};

constexpr std::uint32_t kKeyInputs = 2;  // the first of the two
constexpr std::uint32_t kPinsWithKey = 4;

std::uint64_t channel_mask(std::uint64_t channel) { return channel < 64 ? std::uint64_t{1} << channel : 0; }

std::uint64_t input_mask(std::uint32_t input, const KnowledgeRecord& record, const StripPins& strip) {
  if (input == 1 && strip.channels == 1 &&
      std::find(kMonoFromFirst.begin(), kMonoFromFirst.end(), std::string_view(record.signature).substr(0, 8)) !=
          kMonoFromFirst.end()) {
    return 0;
  }
  const bool key_input = input == kKeyInputs || input == kKeyInputs + 1;
  if (key_input && strip.key_pair > 0 && record.pins_in >= kPinsWithKey) {
    return channel_mask(input + 2 * static_cast<std::uint64_t>(strip.key_pair));
  }
  return channel_mask(input);
}

void put_mask(StateWriter& out, std::uint64_t mask) { out.u32(mask & 0xFFFFFFFF).u32(mask >> 32); }

// A state that a multi-program JUCE plug-in would write itself is XML of at least this size.
constexpr std::size_t kLeastXmlState = 45;

// Closes a JUCE document in a VST3's settings: the wrapper's own part, which says that bypass is off.
constexpr std::size_t kJuceTailSize = 52;
constexpr std::string_view kJucePrivate = "JUCEPrivateData";
constexpr char kJuceTail[] =
    "JUCEPrivateData\x00\x01\x01"
    "Bypass\x00\x01\x01\x03\x00\x1D\x00\x00\x00\x00\x00\x00\x00"
    "JUCEPrivateData";
static_assert(sizeof kJuceTail == kJuceTailSize + 1);

// "VstW": the sizes that its length fields count, beside the document's own.
constexpr std::size_t kVstwAroundDocument = 215, kBankAroundDocument = 191, kChunkAroundDocument = 39;
constexpr std::size_t kBankReserved = 128, kBehindDocument = 16;

constexpr std::size_t kClassIdDigits = 32;
constexpr std::string_view kVst2Mark = "VST";  // a class id made from a VST2: the mark, its code, its name
constexpr std::size_t kCode = 4;

constexpr std::size_t kVersionSearched = 512, kLeastVersioned = 16;
constexpr std::size_t kVersionText = 128;  // longer than any three numbers

}  // namespace

StateWriter& StateWriter::f32(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return u32(bits);
}

std::uint32_t uid_of(std::string_view ident) { return leading_number(ident); }

std::string_view class_id_of(std::string_view ident) {
  const std::size_t open = ident.find('{');
  if (open == ident.npos) return {};
  const std::string_view behind = ident.substr(open + 1);
  return behind.substr(0, behind.find('}'));
}

StateBytes state_header(const KnowledgeRecord& record, std::uint64_t state_size, const StripPins& strip) {
  const std::uint32_t inputs = std::min(record.pins_in, KnowledgeRecord::kMostPins);
  const std::uint32_t outputs = std::min(record.pins_out, KnowledgeRecord::kMostPins);
  StateWriter out(28 + 8 * (std::size_t{inputs} + outputs));
  out.u32(uid_of(record.ident)).u32(kVstMagic);
  out.u32(inputs);
  for (std::uint32_t i = 0; i < inputs; ++i) put_mask(out, input_mask(i, record, strip));
  out.u32(outputs);
  for (std::uint32_t i = 0; i < outputs; ++i) put_mask(out, channel_mask(i));
  return out.u32(state_size).u32(kHeaderVersion).u32(record.tail_word).take();
}

std::string_view program_name(ByteView state) {
  const std::string_view text = text_of(state);
  return text.size() >= kLeastXmlState && text.starts_with("<?xml") && contains(text, "<Bank>") ? "Program 0" : "";
}

StateBytes program_record(std::string_view name) { return StateWriter().zeros(1).text(name).zeros(5).take(); }

StateBytes pack_component_pair(ByteView component, ByteView controller) {
  StateWriter out(component.size() + controller.size() + 16);
  out.u32(component.size()).u32(1).raw(component);
  return out.u32(controller.size()).u32(0).raw(controller).take();
}

StateBytes pack_juce_tail(ByteView document) {
  StateWriter out(document.size() + kJuceTailSize + 16);
  out.u32(document.size() + kJuceTailSize).u32(1).raw(document);
  return out.text({kJuceTail, kJuceTailSize}).zeros(8).take();
}

StateBytes pack_vstw(std::string_view code, std::uint32_t version, std::string_view tag, ByteView document) {
  const std::size_t n = document.size();
  StateWriter out(n + kVstwAroundDocument + 16);
  out.u32(n + kVstwAroundDocument).u32(1);
  out.text("VstW").u32_big_endian(8).u32_big_endian(1).u32(0);
  // A bank as in a file of its own, which counts big-endian; the lengths inside the document are the plug-in's.
  out.text("CcnK").u32_big_endian(n + kBankAroundDocument).text("FBCh").u32_big_endian(2);
  out.text(code).u32_big_endian(version).u32(0).zeros(kBankReserved);
  out.u32_big_endian(n + kChunkAroundDocument);
  out.text(tag).u32(n - 1).raw(document);
  return out.zeros(kBehindDocument).text(kJucePrivate).zeros(8).take();
}

std::string plugin_code(const KnowledgeRecord& record, std::string_view signature) {
  if (signature == "JptrATLv") return "ATxL";
  const auto id = decoded(class_id_of(record.ident).substr(0, kClassIdDigits));
  const std::string_view bytes = id ? text_of({id->data(), id->size()}) : "";
  if (bytes.starts_with(kVst2Mark)) return std::string(bytes.substr(kVst2Mark.size(), kCode));
  return signature.size() < 8 ? "????" : std::string(signature.substr(signature.size() - kCode));
}

std::uint32_t plugin_version(ByteView document) {
  if (document.size() < kLeastVersioned) return 0;
  constexpr std::string_view kMark = "ChunkVersion=\"";
  const std::size_t at = text_of(document).substr(0, kVersionSearched).find(kMark);
  if (at == std::string_view::npos) return 0;
  const std::string numbers(text_of(document).substr(at + kMark.size(), kVersionText));
  unsigned a = 0, b = 0, c = 0;
  if (std::sscanf(numbers.c_str(), "%u.%u.%u", &a, &b, &c) != 3) return 0;
  return (a << 16) | ((b << 8) & 0xFFFF) | c;
}

}  // namespace frt

#include "state/makers/wrapped.h"

#include "base/text.h"
#include "state/makers/antares.h"

namespace frt {
namespace {

constexpr std::string_view kDefault = "Default";
constexpr std::size_t kAroundDocument = 128;  // room for any wrapping's words

StateBytes same_on_both_sides(const StateBytes& side) { return pack_component_pair(view_of(side), view_of(side)); }

StateBytes meta_state(const StateSource& source) {
  StateWriter out(source.document.size() + kAroundDocument);
  StateBytes body = out.text("#pgm=").text("From Pro Tools").text("\n").raw(source.document).take();
  if (!source.vst3()) return body;
  StateWriter counted(body.size() + 4);
  return same_on_both_sides(counted.u32(body.size()).raw(view_of(body)).take());
}

StateBytes counted_state(ByteView document) {
  StateWriter out(document.size() + kAroundDocument);
  return out.u32(document.size()).raw(document).u32(kDefault.size()).text(kDefault).take();
}

StateBytes zlib_state(const StateSource& source) {
  StateWriter out(source.document.size() + kAroundDocument);
  for (const std::uint32_t word : source.insert.doc_header) out.u32(word);
  const StateBytes body = out.raw(source.document).take();
  return source.vst3() ? same_on_both_sides(body) : counted_state(view_of(body));
}

StateBytes waves_state(const StateSource& source) {
  constexpr std::string_view kBypass = "<Bypass Version=\"1\" Bypass=\"0\" />\n";
  const InsertRecord& insert = source.insert;
  if (insert.plugin_sub_comp.size() != 4) return {};
  const std::uint64_t size = source.document.size();
  StateWriter preset(size + kAroundDocument);
  preset.u32_big_endian(size + 28).u32_big_endian(3).u32_big_endian(1);
  preset.text(insert.plugin_sub_comp).text(insert.active_setup.size() == 4 ? insert.active_setup : "setA");
  preset.u32_big_endian(size).text("XPst").raw(source.document).text(kBypass);
  return pack_component_pair(view_of(preset.take()));
}

StateBytes kontakt_state(const StateSource& source) {
  if (!source.options.kontakt_state || source.record.ident.empty()) return {};
  const std::uint64_t size = source.document.size();
  StateWriter out(size + 12);
  StateBytes state = out.u32(size + 12).u32(0).u32(1).raw(source.document).take();
  if (!source.vst3()) return state;
  return pack_component_pair(view_of(state));
}

StateBytes copy_of(ByteView bytes) { return {bytes.data(), bytes.data() + bytes.size()}; }

// A "VC2!" document with its text renamed; what stands behind the text stays.
StateBytes renamed_document(ByteView document) {
  constexpr std::uint64_t kLength = 4, kText = 8;
  const std::uint64_t length = std::uint64_t{document.u32_or(kLength, 0)} + 1;
  const auto stored = document.text(kText, length);
  if (!stored) return copy_of(document);
  const std::string text = antares_renamed(*stored);
  StateWriter out(document.size() + text.size());
  out.raw(document.clamped(0, kLength)).u32(text.size() - 1).text(text);
  return out.raw(document.clamped(kText + length, document.size())).take();
}

// A single program, for a plug-in that wants a bank of a hundred. Empty for everything else.
StateBytes bank_of_program(std::string_view state) {
  constexpr std::string_view kStart = "<Program ", kEnd = "</Program>";
  constexpr std::size_t kLeast = 45;
  constexpr int kEmptyPrograms = 99;
  if (state.size() < kLeast || !state.starts_with("<?xml") || contains(state, "<Bank>")) return {};
  const std::size_t start = state.find(kStart), end = state.rfind(kEnd);
  if (start == state.npos || end == state.npos || end < start) return {};
  StateWriter out(state.size() + 2048);
  out.text(state.substr(0, start)).text("<Bank>").text(state.substr(start, end + kEnd.size() - start));
  for (int i = 0; i < kEmptyPrograms; ++i) out.text("<Program />");
  return out.text("</Bank>").zeros(1).take();
}

}  // namespace

StateBytes wrapped_state(const StateSource& source) {
  const ByteView document = source.document;
  if (document.size() == 0) return {};
  switch (source.kind) {
    case StateKind::kMeta:
      return meta_state(source);
    case StateKind::kBytes7:
      return counted_state(document);
    case StateKind::kZlib:
      return zlib_state(source);
    case StateKind::kWaves:
      return waves_state(source);
    case StateKind::kIndexText:
      return source.vst3() ? pack_component_pair(document) : copy_of(document);
    case StateKind::kArchive:
      return pack_component_pair(document, document);
    case StateKind::kKontakt:
      return kontakt_state(source);
    default:
      return copy_of(document);
  }
}

StateBytes plain_state(const StateSource& source) {
  ByteView document = source.document;
  if (const std::uint32_t limit = source.record.state_limit; limit > 0) {
    if (!document.has(0, limit)) return {};
    document = document.clamped(0, limit);
  }
  const bool renamed = source.kind == StateKind::kVc2 && source.insert.signature == kAntaresAutoPan;
  StateBytes state = renamed ? renamed_document(document) : copy_of(document);
  StateBytes bank = bank_of_program(text_of(view_of(state)));
  return bank.empty() ? state : bank;
}

}  // namespace frt

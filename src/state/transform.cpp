#include "state/transform.h"

#include "state/makers/chunk.h"
#include "state/makers/control_lists.h"
#include "state/makers/fabfilter.h"
#include "state/makers/line6.h"
#include "state/makers/source.h"
#include "state/makers/template_form.h"
#include "state/makers/vc2.h"
#include "state/makers/wrapped.h"

namespace frt {
namespace {

// The block without the zeros that fill it up.
ByteView block_of(const InsertRecord& insert, ByteView image) {
  return insert.end > insert.start ? image.clamped(insert.start, insert.end - insert.start) : ByteView();
}

void set_document(StateSource& source, std::uint64_t offset, std::uint64_t length) {
  source.at = offset >= source.insert.start ? offset - source.insert.start : source.block.size();
  source.document = source.block.has(source.at, length) ? source.block.clamped(source.at, length) : ByteView();
}

StateSource second_state(const StateSource& source) {
  StateSource second = source;
  const SecondState& state = source.insert.alt;
  second.kind = StateKind::kChunk;
  second.label = state.label;
  second.copies = state.copies;
  set_document(second, state.offset, state.length);
  return second;
}

// What of a session's settings a CLAP build is known to take.
bool clap_takes(const StateSource& source) {
  const InsertRecord& insert = source.insert;
  const KnowledgeRecord& record = source.record;
  switch (source.kind) {
    case StateKind::kFabFilter:
    case StateKind::kVc2:
    case StateKind::kChunk:
      return true;
    case StateKind::kControls: {
      const bool program = !record.default_program.empty(), values = !insert.controls.empty();
      if (program && !record.floats_only && values && insert.signature.starts_with("FabF")) return true;
      return insert.alt.length != 0 && insert.alt.count == 1 && !(values && (record.floats_only || program));
    }
    default:
      return false;
  }
}

TransformedState by_kind(const StateSource& source);

TransformedState control_list(const StateSource& source) {
  const InsertRecord& insert = source.insert;
  const SecondState& alt = insert.alt;
  if (insert.signature == "xlnAxaAK" && alt.length != 0 && alt.count == 1 && source.vst3()) {
    const ByteView document = second_state(source).document;
    if (document.size() != 0) return {pack_juce_tail(document)};
  }
  const bool values = !insert.controls.empty();
  if (values && source.record.floats_only) return {raw_floats(source)};
  if (values && !source.record.default_program.empty()) return fabfilter_controls(source);
  if (alt.length == 0) return {};
  if (alt.count > 1) return {chunk_list(source)};
  return by_kind(second_state(source));
}

TransformedState by_kind(const StateSource& source) {
  switch (source.kind) {
    case StateKind::kFabFilter:
      return {source.vst3() ? fabfilter_vst3_state(source) : plain_state(source)};
    case StateKind::kControls:
      return control_list(source);
    case StateKind::kMeta:
    case StateKind::kBytes7:
    case StateKind::kZlib:
    case StateKind::kWaves:
    case StateKind::kIndexText:
    case StateKind::kArchive:
    case StateKind::kKontakt:
      return {wrapped_state(source)};
    case StateKind::kChunk:
      if (source.vst3() && source.document.size() != 0) return {chunk_vst3_state(source)};
      return {wrapped_state(source)};
    default:
      return {plain_state(source)};
  }
}

}  // namespace

TransformedState transform_state(const InsertRecord& insert, const KnowledgeRecord& record, ByteView image,
                                 const TransformOptions& options) {
  StateSource source{insert, record, options, block_of(insert, image), insert.kind};
  source.label = insert.doc_label;
  source.copies = insert.doc_copies;
  set_document(source, insert.doc_off, insert.doc_len);

  const bool any_build = source.kind == StateKind::kFabFilter || source.kind == StateKind::kIndexText;
  if (options.vst2_override && !any_build) return {};
  if (insert.signature == "Lin66SAX") return {line6_state(source)};
  if (record.is_clap() && !clap_takes(source)) return {};
  if (source.kind == StateKind::kVc2 && source.vst3()) return {vc2_state(source)};
  if (!record.state_template.empty() && record.template_mode) return {template_state(source)};
  return by_kind(source);
}

}  // namespace frt

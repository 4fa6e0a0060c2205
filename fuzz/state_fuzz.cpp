// Arbitrary plug-in blocks under records of every kind: an insert's document may stand anywhere, in a form for any
// build.
#include <array>
#include <cstdlib>
#include <vector>

#include "state/transform.h"

namespace {

using namespace frt;

constexpr std::array<const char*, 9> kSignatures = {"ABCDEFGH", "FabFFC2p", "FabFFS2a", "Lin66SAX", "AntrAPan",
                                                    "AntrHE41", "AntrSlce", "JptrATLv", "xlnAxaAK"};
constexpr std::array<const char*, 6> kIdents = {"1<5653546162436478>",
                                                "1{5653546162436478706C756700000000}",
                                                "1{ABCDEF019182FAEB4142434445464748}",
                                                "1{F2AEE70D00DE4F4E4142434445464748}",
                                                "com.maker.plug",
                                                ""};

// Numbers from the input's head, 0 where it is too short.
class Choices {
 public:
  explicit Choices(ByteView bytes) : bytes_(bytes) {}
  unsigned below(unsigned limit) { return bytes_.u8_or(at_++, 0) % limit; }
  bool yes() { return below(2) != 0; }
  std::uint64_t place() {
    at_ += 2;
    return bytes_.u16_or(at_ - 2, 0);
  }
  ByteView rest() const { return bytes_.clamped(at_, bytes_.size()); }

 private:
  ByteView bytes_;
  std::uint64_t at_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices({data, size});
  InsertRecord insert;
  insert.kind = static_cast<StateKind>(choices.below(15));
  insert.signature = kSignatures[choices.below(kSignatures.size())];
  insert.start = choices.below(8);
  insert.doc_off = choices.place();
  insert.doc_len = choices.place();
  insert.doc_copies = static_cast<int>(choices.below(4));
  insert.alt = {choices.place(), choices.place(), choices.yes() ? "AAX chunk after elck" : "", 1,
                static_cast<int>(choices.below(4))};
  insert.controls.assign(choices.place() % 1024, 0);
  insert.plugin_sub_comp = choices.yes() ? "SUBC" : "";
  KnowledgeRecord record;
  record.signature = insert.signature;
  record.ident = kIdents[choices.below(kIdents.size())];
  record.display_text = record.ident.starts_with("com") ? "CLAP: Plug" : "VST: Plug";
  record.default_program = choices.yes() ? "Default" : "";
  record.floats_only = choices.yes();
  record.state_limit = choices.yes() ? 100 : 0;
  record.template_mode = choices.yes();
  const std::vector<std::uint8_t> head(192, 1);
  if (record.template_mode) record.state_template = head;
  TransformOptions options;
  options.track_has_midi = true;

  const ByteView image = choices.rest();
  insert.end = image.size() - choices.below(4);
  TransformedState state = transform_state(insert, record, image, options);
  // Two copies of a document and what any form puts around them. The renamed parameters of one plug-in are the most.
  if (state.bytes.size() > 4 * image.size() + 4 * insert.controls.size() + 8192) std::abort();
  switch_off_midi_trigger(insert.signature, state.bytes, options);
  state_header(record, state.bytes.size(), {});
  program_record(program_name(view_of(state.bytes)));
  return 0;
}

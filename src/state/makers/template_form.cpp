#include "state/makers/template_form.h"

#include <optional>

namespace frt {
namespace {

// From the document's start
//   0    a head of Pro Tools' own
//   32   entries, the first of them "RHCP"
// An entry, from its start
//   0    4 characters, the last two "CP"
//   8    u32  length of its data
//   16        data
constexpr std::uint64_t kEntries = 32, kEntryLength = 8, kEntryHead = 16;
constexpr int kMostEntries = 16;
// Where "DPCP" stands in documents whose head the template replaces, and how much of such a document that is.
constexpr std::uint64_t kShortForm = 116, kReplaced = 208;
// What the template's two length words count, beside what is left of the document.
constexpr std::uint64_t kTemplateLength = 184;
constexpr std::uint64_t kFirstLength = 0, kSecondLength = 12;

void put_u32(StateBytes& bytes, std::uint64_t at, std::uint64_t value) {
  for (unsigned i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

struct Entries {
  std::optional<std::uint64_t> program, view;  // where "DPCP" and "VGCP" stand
};

// The first of each. The walk ends at what is no entry, and behind one that isn't whole.
Entries entries_from(ByteView document) {
  Entries entries;
  std::uint64_t at = kEntries;
  for (int i = 0; i < kMostEntries && document.has(at, kEntryHead); ++i) {
    const std::string_view tag = *document.text(at, 4);
    if (!tag.ends_with("CP")) break;
    if (tag == "DPCP" && !entries.program) entries.program = at;
    if (tag == "VGCP" && !entries.view) entries.view = at;
    const std::uint64_t length = *document.u32(at + kEntryLength);
    if (!document.has(at + kEntryHead, length)) break;
    at += kEntryHead + length;
  }
  return entries;
}

}  // namespace

StateBytes template_state(const StateSource& source) {
  const ByteView document = source.from(source.at);
  if (source.kind != StateKind::kHxmc || !document.equals(kEntries, "RHCP")) return {};
  const Entries entries = entries_from(document);
  if (!entries.program) return {};

  if (*entries.program == kShortForm) {
    const std::span<const std::uint8_t> head = source.record.state_template, end = source.record.trailer;
    if (document.size() <= kReplaced || head.size() < kSecondLength + 4) return {};
    const ByteView left = document.clamped(kReplaced, document.size());
    StateWriter out(head.size() + left.size() + end.size());
    out.raw({head.data(), head.size()}).raw(left).raw({end.data(), end.size()});
    StateBytes state = out.take();
    put_u32(state, kFirstLength, left.size() + kTemplateLength);
    put_u32(state, kSecondLength, left.size() + kTemplateLength);
    return state;
  }

  const ByteView chain = document.clamped(kEntries, document.size());
  StateWriter out(chain.size() + 24);
  out.u32(chain.size() + 8).u32(1).text("CMXH").u32(chain.size());
  const std::uint64_t head = out.size();
  out.raw(chain).zeros(8);
  StateBytes state = out.take();
  if (entries.view) {
    const std::uint64_t length = *document.u32(*entries.view + kEntryLength);
    const std::uint64_t data = *entries.view + kEntryHead;
    if (length >= 4 && document.has(data, length)) state[data + length - 4 - kEntries + head] = 0;
  }
  return state;
}

}  // namespace frt

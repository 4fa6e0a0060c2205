#include "state/makers/line6.h"

#include <algorithm>
#include <optional>

namespace frt {
namespace {

// From the mark
//   q        "6SMC"
//   q + 36   sections, the first of them "DHSH"
// A section, from its start
//   p        4 upper-case letters or digits
//   p + 4    u32  length of its data
//   p + 24        data
constexpr std::uint64_t kSections = 36, kLeast = 60;
constexpr std::uint64_t kSectionLength = 4, kSectionHead = 24;
constexpr int kMostSections = 32;

bool is_section_name(std::string_view name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
}

}  // namespace

StateBytes line6_state(const StateSource& source) {
  const ByteView block = source.block;
  const std::size_t q = text_of(block).find("6SMC");
  if (q == std::string_view::npos || !block.has(q, kLeast) || !block.equals(q + kSections, "DHSH")) return {};

  std::uint64_t end = q + kSections;
  std::optional<std::uint64_t> settings;  // the data of "LGSH"
  bool preset = false;
  for (int i = 0; i < kMostSections && block.has(end, kSectionHead); ++i) {
    const std::string_view name = *block.text(end, 4);
    if (!is_section_name(name)) break;
    const std::uint64_t length = *block.u32(end + kSectionLength);
    if (!block.has(end + kSectionHead, length)) return {};
    if (name == "LGSH" && length != 0) settings = end + kSectionHead;
    if (name == "APSH") preset = true;
    end += kSectionHead + length;
  }
  if (!settings || !preset) return {};

  const std::uint64_t size = end - q - kSections;
  StateWriter out(size + 24);
  out.u32(size + 8).u32(1).text("CMS6").u32(size);
  const std::uint64_t head = out.size();
  out.raw(block.clamped(q + kSections, size)).zeros(8);
  StateBytes state = out.take();
  state[*settings - q - kSections + head] = 0;
  return state;
}

}  // namespace frt

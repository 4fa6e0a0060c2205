#include "state/makers/control_lists.h"

#include <algorithm>
#include <optional>

#include "base/byte_order.h"
#include "session/inserts/aax_chunks.h"

namespace frt {
namespace {

constexpr std::uint32_t kUsualFloats = 20;
constexpr std::uint32_t kLeastSteps = 3;

// The list of controls, from its chunk's data
//   4 + 12i   "d_", two bytes, f64 big-endian: value of control i
constexpr std::uint64_t kItems = 4, kItemSize = 12, kItemValue = 4;
constexpr std::uint64_t kLeastList = 16;
constexpr std::size_t kLeastChunks = 3;

// The two chunks behind it
//   0   u32  the same in both
//   4   u32 big-endian  length of the name, in bytes
//   8        the name, UTF-16 big-endian
constexpr std::uint64_t kNameLength = 4, kName = 8, kLeastNamed = 16, kLongestName = 128;

// What a plug-in with a value that counts steps takes is the value's place among them.
float scaled(const StateSource& source, std::uint32_t control, float value) {
  for (const SteppedControl& row : stepped_controls()) {
    if (row.signature != source.insert.signature || row.control != control) continue;
    return row.steps < kLeastSteps ? value : value / static_cast<float>(row.steps - 1);
  }
  return value;
}

ByteView data_of(const StateSource& source, const AaxChunk& chunk) {
  return source.block.clamped(chunk.data(), chunk.data_length());
}

// Plain characters alone; nothing for any other name.
std::optional<std::string_view> chunk_name(ByteView data) {
  if (data.size() < kLeastNamed) return std::nullopt;
  const std::uint32_t length = u32_big(data, kNameLength).value_or(0);
  if (length < 2 || length > kLongestName || length % 2 != 0) return std::nullopt;
  const auto name = data.text(kName, length);
  if (!name) return std::nullopt;
  for (std::size_t i = 0; i < length; i += 2) {
    if ((*name)[i] != 0 || (*name)[i + 1] < 32 || (*name)[i + 1] > 126) return std::nullopt;
  }
  return name;
}

bool same_name(ByteView first, ByteView second) {
  const auto name = chunk_name(first);
  return name && name == chunk_name(second) && first.u32(0) == second.u32(0);
}

}  // namespace

StateBytes raw_floats(const StateSource& source) {
  const std::uint32_t count = source.record.float_count == 0 ? kUsualFloats : source.record.float_count;
  const std::uint32_t lead = source.record.float_lead;
  const std::vector<float>& controls = source.insert.controls;
  StateWriter out;
  out.u32(lead + 4 * std::uint64_t{count}).u32(1).zeros(lead);
  for (std::uint32_t i = 0; i < count; ++i) out.f32(i < controls.size() ? scaled(source, i, controls[i]) : 0);
  return out.u32(0).u32(0).take();
}

StateBytes chunk_list(const StateSource& source) {
  const AaxChunks walk = aax_chunks(source.block, 0, source.block.size());
  if (!walk.whole || walk.chunks.size() < kLeastChunks) return {};
  const std::vector<AaxChunk>& chunks = walk.chunks;
  const ByteView list = data_of(source, chunks[0]);
  if (chunks[0].id != kControlChunk || list.size() < kLeastList || (list.size() - kItems) % kItemSize != 0) return {};
  if (!same_name(data_of(source, chunks[1]), data_of(source, chunks[2]))) return {};

  const std::uint64_t count = (list.size() - kItems) / kItemSize;
  StateWriter out(source.block.size() + 64);
  out.zeros(12).u32(count);  // its length comes ahead of these
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t item = kItems + i * kItemSize;
    if (!list.equals(item, "d_")) return {};
    out.f32(static_cast<float>(f64_big(list, item + kItemValue).value_or(0)));
  }
  for (std::size_t i = 1; i < chunks.size(); ++i) {
    if (chunks[i].id == "mdfy" || chunks[i].id == kControlChunk) continue;
    out.u32(chunks[i].data_length()).raw(data_of(source, chunks[i]));
  }
  const StateBytes body = out.take();
  StateWriter whole(body.size() + 24);
  if (source.vst3()) whole.u32(body.size() + 4).u32(1);
  whole.u32(body.size() + 4 - 16).raw(view_of(body));
  if (source.vst3()) whole.u32(0).u32(0);
  return whole.take();
}

}  // namespace frt

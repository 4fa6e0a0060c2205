#include "session/mixer/io_paths.h"

#include <cstdint>

#include "base/text_index.h"
#include "image/content_types.h"

namespace frt {
namespace {

// Path, from its mark; in every session from Pro Tools 10 to 2024 seen
//   + 9           u8   kind: 0 input, 1 output, 2 bus, 3 insert
//   + 10          u8   width
//   + 11          u32  name length n, then the name
//   + 15 + n      u32  number of channels c, then c of u16
//   + 19 + n + 2c u16  0xFFFF for a path of its own, else it is a leg of another
namespace path_layout {
constexpr std::uint64_t kKind = 9, kName = 11, kNameText = 15, kChannels = 15, kFirstChannel = 19;
constexpr std::uint8_t kBus = 2, kLastKind = 3;
constexpr std::uint16_t kOwnPath = 0xFFFF;
}  // namespace path_layout

struct IoPath {
  std::uint8_t kind = 0;
  std::string_view name;
  bool leg = false;
};

std::optional<IoPath> read_path(ByteView image, const Block& block) {
  namespace at = path_layout;
  const ByteView bytes = image.clamped(0, block.end());  // every field must lie inside
  const std::uint64_t p = block.start;
  const auto kind = bytes.u8(p + at::kKind);
  const auto length = bytes.u32(p + at::kName);
  if (!kind || *kind > at::kLastKind || !length) return std::nullopt;
  const auto name = bytes.text(p + at::kNameText, *length);
  const auto channels = bytes.u32(p + at::kChannels + *length);
  if (!name || !channels) return std::nullopt;
  const auto parent = bytes.u16(p + at::kFirstChannel + *length + 2 * std::uint64_t{*channels});
  if (!parent) return std::nullopt;
  return IoPath{*kind, *name, *parent != at::kOwnPath};
}

}  // namespace

std::optional<std::vector<std::string_view>> read_listed_buses(ByteView image, const std::vector<Block>& roots) {
  TextIndex buses;
  bool any = false;
  for (const Block& root : roots) {
    if (root.content_type != content::kIoSetup) continue;
    for (const Block& child : children_of(image, root, content::kIoPath)) {
      const auto path = read_path(image, child);
      if (!path) return std::nullopt;
      any = true;
      if (path->kind == path_layout::kBus && !path->leg) buses.insert(path->name);
    }
  }
  if (!any) return std::nullopt;
  return buses.texts();
}

}  // namespace frt

#include "session/mixer/io_paths.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>

#include "base/text_index.h"
#include "image/content_types.h"
#include "session/mixer/id_mark.h"

namespace frt {
namespace {

// Path, from its mark; in every session from Pro Tools 10 to 2024 seen
//   + 9           u8   kind: 0 input, 1 output, 2 bus, 3 insert
//   + 10          u8   width
//   + 11          u32  name length n, then the name
//   + 15 + n      u32  number of channels c, then c of u16
//   + 19 + n + 2c u16  0xFFFF for a path of its own, else it is a leg of another
// The first bytes 42, 0, 0, 0 behind the channels are a mark; the path's two ids, u32 each, follow it.
namespace path_layout {
constexpr std::uint64_t kKind = 9, kName = 11, kNameText = 15, kChannels = 15, kFirstChannel = 19;
constexpr std::uint8_t kBus = 2, kLastKind = 3;
constexpr std::uint16_t kOwnPath = 0xFFFF;
constexpr std::uint32_t kLeastName = 1, kMostName = 80;
constexpr std::uint64_t kIds = 4, kMarkAndIds = 12;  // from the mark
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

// The first mark at or behind a position. Positions go back by little from call to call, where blocks nest; but for
// those few, no byte is looked at twice.
class MarkFinder {
 public:
  explicit MarkFinder(ByteView image) : image_(image) {}

  std::optional<std::uint64_t> find(std::uint64_t from, std::uint64_t limit) {
    if (from < from_) {
      const std::uint64_t to = std::min(from_, limit), mark = search(from, to);
      if (mark < to || limit < from_) return mark < to ? std::optional(mark) : std::nullopt;
      from_ = from;
    } else if (from > next_) {
      from_ = next_ = from;
    }
    next_ = search(next_, limit);
    if (next_ < limit) return next_;
    return std::nullopt;
  }

 private:
  std::uint64_t search(std::uint64_t from, std::uint64_t limit) const {
    while (from < limit && image_.u32(from) != kIdMark) from = image_.find(kIdMarkByte, from + 1, limit);
    return from;
  }

  ByteView image_;
  std::uint64_t from_ = 0, next_ = 0;  // no mark stands from the one up to the other
};

// A route as bytes: two routes are equal if these are.
std::string key_of(const Route& route) {
  std::string key;
  const auto add = [&key](std::uint32_t value) {
    for (unsigned i = 0; i < 32; i += 8) key += static_cast<char>(value >> i & 255);
  };
  add(route.id0);
  add(route.id1);
  add(route.kind);
  for (const std::uint16_t channel : route.channels) add(channel);
  return key.append(route.name);
}

std::optional<Route> read_route(ByteView image, const FlatBlock& block, MarkFinder& marks) {
  namespace at = path_layout;
  const std::uint64_t p = block.start;
  Route route;
  route.kind = image.u8_or(p + at::kKind, 0);
  route.name = read_name(image, p + at::kName, at::kLeastName, at::kMostName);
  const std::uint64_t n = route.name.size();
  const auto count = image.u32(p + at::kChannels + n);
  if (n == 0 || !count || *count > Route::kMostChannels) return std::nullopt;
  const std::uint64_t channels = p + at::kFirstChannel + n, behind = channels + 2 * std::uint64_t{*count};
  if (!image.has(channels, 2 * std::uint64_t{*count})) return std::nullopt;
  for (std::uint64_t i = channels; i < behind; i += 2) route.channels.push_back(image.u16_or(i, 0));
  if (behind + at::kMarkAndIds > block.end()) return std::nullopt;
  const auto mark = marks.find(behind, block.end() - at::kMarkAndIds + 1);
  if (!mark) return std::nullopt;
  route.id0 = image.u32_or(*mark + at::kIds, 0);
  route.id1 = image.u32_or(*mark + at::kIds + 4, 0);
  return route;
}

}  // namespace

std::vector<Route> find_routes(const SessionImage& image) {
  std::vector<Route> routes;
  std::unordered_set<std::string> known;
  MarkFinder marks(image.bytes());
  for (const std::uint32_t i : image.of_type(content::kIoPath)) {
    auto route = read_route(image.bytes(), image.block(i), marks);
    if (route && known.insert(key_of(*route)).second) routes.push_back(std::move(*route));
  }
  return routes;
}

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

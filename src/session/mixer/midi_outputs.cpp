#include "session/mixer/midi_outputs.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "image/content_types.h"
#include "image/first_fit.h"
#include "session/mixer/midi_strips.h"

namespace frt {
namespace {

// A device's name, from the mark of its block; further blocks of the device nest in it and in each other.
//   + 11  counted name, at most 199 bytes
namespace device_layout {
constexpr std::uint64_t kName = 11, kNameText = 15;
constexpr std::uint32_t kLongestName = 199;
constexpr std::uint32_t kLeastPluginNode = 29;  // size
}  // namespace device_layout

// Where a row plays to, in its setup block, from the block's mark
//   + 21  i32  number of the device, 0 for none
//   + 43  u32  1: plays an instrument of the session
//   + 64  u32  42
//   + 68  8    an instrument row: its own id; a MIDI row: the id of the instrument it plays, 0 for none
namespace output_layout {
constexpr std::uint64_t kDevice = 21, kPlaysInstrument = 43, kIdMark = 64, kId = 68;
constexpr std::uint32_t kMark = 42;
constexpr std::uint32_t kLeastSize = 18, kLeastSizeWithId = 69;
}  // namespace output_layout

std::string_view device_name(const SessionImage& image, const FlatBlock& device) {
  namespace at = device_layout;
  const FlatBlock* block = image.first_of_type(content::kMidiDeviceName, device.start, device.end());
  if (!block) return {};
  const auto length = image.bytes().u32(block->start + at::kName);
  if (!length || *length > at::kLongestName) return {};
  return image.bytes().text(block->start + at::kNameText, *length).value_or(std::string_view{});
}

std::optional<std::uint64_t> instrument_id(ByteView bytes, const FlatBlock& block) {
  namespace at = output_layout;
  if (block.size < at::kLeastSizeWithId || bytes.u32(block.start + at::kIdMark) != at::kMark) return std::nullopt;
  return bytes.u64(block.start + at::kId);
}

}  // namespace

std::vector<MidiDevice> read_midi_devices(const SessionImage& image) {
  std::vector<MidiDevice> devices;
  const FlatBlock* list = image.first_of_type(content::kMidiDevices);
  if (!list) return devices;
  std::vector<std::uint64_t> nodes;
  for (const std::uint32_t i : image.of_type(content::kPluginNode, list->start, list->end())) {
    if (image.block(i).size >= device_layout::kLeastPluginNode) nodes.push_back(image.block(i).start);
  }
  for (const std::uint32_t i : image.of_type(content::kMidiDevice, list->start, list->end())) {
    const FlatBlock& device = image.block(i);
    const auto node = std::lower_bound(nodes.begin(), nodes.end(), device.start);
    devices.push_back({device_name(image, device), node != nodes.end() && *node < device.end()});
  }
  return devices;
}

std::vector<MidiElsewhere> read_midi_elsewhere(const SessionImage& image, const std::vector<StripRow>& rows,
                                               std::span<const MidiDevice> devices) {
  namespace at = output_layout;
  const ByteView bytes = image.bytes();
  FirstFit blocks(image, content::kMidiSetup);
  std::vector<const FlatBlock*> setups(rows.size());
  std::unordered_map<std::uint64_t, std::string_view> instruments;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (!plays_midi(rows[k].kind)) continue;
    setups[k] = setup_block(image, rows[k], blocks);
    if (!setups[k] || rows[k].kind != StripKind::kInstrument) continue;
    if (const auto id = instrument_id(bytes, *setups[k])) instruments.try_emplace(*id, rows[k].label());
  }
  std::vector<MidiElsewhere> elsewhere;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (rows[k].kind != StripKind::kMidi || !setups[k] || setups[k]->size < at::kLeastSize) continue;
    const FlatBlock& block = *setups[k];
    const std::int32_t number = bytes.i32(block.start + at::kDevice).value_or(0);
    if (number >= 1) {
      const auto i = static_cast<std::size_t>(number) - 1;
      if (i < devices.size() && devices[i].is_plugin_node) elsewhere.push_back({rows[k].label(), devices[i].name});
      continue;
    }
    const std::uint64_t id = instrument_id(bytes, block).value_or(0);
    if (number != 0 || id == 0 || bytes.u32(block.start + at::kPlaysInstrument) != std::uint32_t{1}) continue;
    const auto instrument = instruments.find(id);
    elsewhere.push_back(
        {rows[k].label(), instrument != instruments.end() ? instrument->second : "an instrument on another track"});
  }
  return elsewhere;
}

}  // namespace frt

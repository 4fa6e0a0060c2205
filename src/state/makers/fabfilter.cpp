#include "state/makers/fabfilter.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace frt {
namespace {

// "FFBS" document
//   8    u32  number of values
//   12        f32 each; what follows is the controller's, up to "FFEx"
constexpr std::uint64_t kCount = 8, kValues = 12;

// The control that lets notes of the track trigger the plug-in: at 0 such a plug-in listens to the track's own MIDI in
// REAPER, which it never saw in Pro Tools.
struct MidiTrigger {
  std::string_view signature;
  std::uint32_t control;
};
constexpr std::array<MidiTrigger, 2> kMidiTriggers = {{{"FabFFC2p", 42}, {"FabFFS2a", 699}}};
constexpr float kTriggerOff = 1.0F;

const MidiTrigger* midi_trigger(std::string_view signature, const TransformOptions& options) {
  if (!options.track_has_midi || options.keep_plugin_midi) return nullptr;
  const auto is_its = [&](const MidiTrigger& row) { return row.signature == signature; };
  const auto row = std::find_if(kMidiTriggers.begin(), kMidiTriggers.end(), is_its);
  return row == kMidiTriggers.end() ? nullptr : &*row;
}

// True if a trigger was switched off among them.
bool put_values(StateWriter& out, const StateSource& source) {
  const MidiTrigger* trigger = midi_trigger(source.insert.signature, source.options);
  bool switched = false;
  for (std::size_t i = 0; i < source.insert.controls.size(); ++i) {
    const bool off = trigger && i == trigger->control && source.insert.controls[i] == 0;
    out.f32(off ? kTriggerOff : source.insert.controls[i]);
    switched |= off;
  }
  return switched;
}

constexpr std::string_view kClapMark = "CuSV";
constexpr std::size_t kProductCode = 4;  // of a signature: 4 characters behind the maker's

}  // namespace

StateBytes fabfilter_vst3_state(const StateSource& source) {
  const ByteView document = source.document;
  const auto count = document.u32(kCount);
  if (!count) return {};
  const std::uint64_t head = kValues + std::uint64_t{*count} * 4;
  if (!document.has(0, head)) return {};
  const std::string_view rest = text_of(document).substr(head);

  StateWriter component(head + 12), controller(rest.size() + 12);
  component.raw(document.clamped(0, head)).text("FFpr").u32(1).u32(0);
  controller.text(rest.substr(0, rest.rfind("FFEx"))).text("FFed").u32(0).u32(0);
  return pack_component_pair(view_of(component.take()), view_of(controller.take()));
}

TransformedState fabfilter_controls(const StateSource& source) {
  const std::string& signature = source.insert.signature;
  const std::string& program = source.record.default_program;
  const std::size_t count = source.insert.controls.size();
  TransformedState state;
  StateWriter out(4 * count + program.size() + 80);
  if (source.record.is_clap()) {
    if (signature.size() < kProductCode + 4) return {};
    out.text("FFBS").u32(1).u32(count);
    state.midi_trigger_off = put_values(out, source);
    out.text(std::string_view(signature).substr(kProductCode, 4)).u32(3).u32(program.size()).text(program);
    out.u32(0xFFFFFFFF).u32(1).u32(0).u32(0).text(kClapMark).u32(1).u32(0);
    state.bytes = out.take();
    return state;
  }
  out.text("FabF").u32(2).u32(program.size()).text(program).u32(0).u32(count);
  state.midi_trigger_off = put_values(out, source);
  const std::size_t component = out.size();
  // As a VST3 the first two of these words close the component, and a controller of 12 bytes follows.
  out.u32(1).u32(1).u32(12).u32(0).text("FFed").u32(0).f32(1.0F);
  state.bytes = out.take();
  if (source.vst3()) {
    StateWriter whole(state.bytes.size() + 8);
    state.bytes = whole.u32(component + 8).u32(1).raw(view_of(state.bytes)).take();
  }
  return state;
}

bool switch_off_midi_trigger(std::string_view signature, StateBytes& state, const TransformOptions& options) {
  const MidiTrigger* trigger = midi_trigger(signature, options);
  const ByteView bytes = view_of(state);
  const std::size_t at = trigger ? text_of(bytes).find("FFBS") : std::string_view::npos;
  if (at == std::string_view::npos || bytes.u32_or(at + kCount, 0) <= trigger->control) return false;
  const std::uint64_t place = at + kValues + 4 * std::uint64_t{trigger->control};
  if (bytes.f32(place) != 0.0F) return false;
  std::memcpy(state.data() + place, &kTriggerOff, sizeof kTriggerOff);
  return true;
}

}  // namespace frt

#include "writer/fx_chain.h"

#include "writer/fx_bytes.h"
#include "writer/stand_in.h"

namespace frt {
namespace {

constexpr std::string_view kIndent = "      ", kStateIndent = "        ";
constexpr std::string_view kEmptyProgram = "AAAAAAAA";

void write_vst(ProjectText& out, const FxSlot& slot, const StateBytes& state, std::string_view program) {
  const KnowledgeRecord& record = *slot.record;
  out.text(kIndent).text("<VST \"").text(record.display_text).text("\" \"").text(record.file).text("\" 0 \"\" ");
  out.text(record.ident).text(" \"\"\n");
  write_line_of_bytes(out, view_of(state_header(record, state.size(), slot.pins)), kIndent);
  write_lines_of_bytes(out, view_of(state), kIndent);
  write_line_of_bytes(out, view_of(program_record(program)), kIndent);
  out.text(kIndent).text(">\n");
}

void write_clap(ProjectText& out, const FxSlot& slot, const StateBytes& state) {
  const KnowledgeRecord& record = *slot.record;
  out.text(kIndent).text("<CLAP \"").text(record.display_text).text("\" ").text(record.ident).text(" \"\"\n");
  out.text(kIndent).text("  CFG 4 0 0 \"\"\n");
  if (!state.empty()) {
    out.text(kIndent).text("  <STATE\n");
    write_lines_of_bytes(out, view_of(state), kStateIndent);
    out.text(kIndent).text("  >\n");
  }
  out.text(kIndent).text(">\n");
}

void write_lane(ProjectText& out, const ParameterLane& lane) {
  out.text(kIndent).text("<PARMENV ").integer(lane.index).text(":").integer(lane.index).text(" 0 1 0.5 ");
  out.quoted(lane.title).text("\n");
  out.text(kIndent).text("  EGUID ").text(make_guid(lane.guid_seed)).text("\n");
  out.text(kIndent).text("  ACT ").text(lane.live ? "1" : "0").text(" -1\n");
  out.text(kIndent).text("  VIS 1 1 1\n").text(kIndent).text("  LANEHEIGHT 0 0\n");
  out.text(kIndent).text("  ARM 0\n").text(kIndent).text("  DEFSHAPE 0 -1 -1\n");
  if (const auto initial = lane.initial()) {
    out.text(kIndent).text("  PT 0 ").fixed(*initial, 9).text(" 0\n");
  }
  for (std::size_t i = 0; i < lane.size(); ++i) {
    out.text(kIndent).text("  PT ").fixed(lane.seconds(i), 10).text(" ").fixed(lane.value(i), 9).text(" 0\n");
  }
  out.text(kIndent).text(">\n");
}

void write_identity(ProjectText& out, const FxSlot& slot) {
  out.text(kIndent).text("FXID ").text(make_guid(static_cast<std::uint32_t>(slot.insert->start))).text("\n");
  if (slot.first_pair_only) out.text(kIndent).text("PINFLAGS 1\n");
  out.text(kIndent).text("WAK 0 0\n");
}

void write_plugin(ProjectText& out, const FxSlot& slot) {
  const StateBytes state = slot.state();
  const std::string_view program = program_name(view_of(state));
  out.text(kIndent).text(slot.bypassed ? "BYPASS 1 " : "BYPASS 0 ").text(slot.offline ? "1 0\n" : "0 0\n");
  if (slot.record->is_clap()) {
    write_clap(out, slot, state);
  } else {
    write_vst(out, slot, state, program);
  }
  out.text(kIndent).text("FLOATPOS 0 0 0 0\n");
  if (!program.empty()) out.text(kIndent).text("PRESETNAME \"").text(program).text("\"\n");
  if (!slot.has_state) out.text(kIndent).text("PRESETNAME \"** Pro Tools settings not transferred **\"\n");
  write_identity(out, slot);
  for (const ParameterLane& lane : slot.lanes) write_lane(out, lane);
}

// As many pins as the strip has channels, and no settings.
void write_empty_slot(ProjectText& out, const FxSlot& slot) {
  KnowledgeRecord nobody;
  nobody.ident = slot.empty_ident;
  nobody.pins_in = nobody.pins_out = static_cast<std::uint32_t>(slot.pins.channels);
  out.text(kIndent).text("BYPASS 1 0 0\n");
  out.text(kIndent).text("<VST \"VST3: ").text(slot.empty_name).text("\" \"\" 0 \"\" ").text(slot.empty_ident);
  out.text(" \"\"\n");
  write_line_of_bytes(out, view_of(state_header(nobody, 0, slot.pins)), kIndent);
  out.text(kIndent).text("  ").text(kEmptyProgram).text("\n");
  out.text(kIndent).text(">\n");
  out.text(kIndent).text("PRESETNAME \"** Pro Tools only - no VST exists - replace me here\"\n");
  out.text(kIndent).text("FLOATPOS 0 0 0 0\n");
  write_identity(out, slot);
}

void write_stand_in(ProjectText& out, const FxSlot& slot) {
  for (const StandInSlot& part : slot.stand_in)
    write_stand_in_slot(out, part, kIndent, slot.first_pair_only && &part == &slot.stand_in.back());
}

}  // namespace

void write_fx_chain(ProjectText& out, const FxChain& chain) {
  if (chain.empty()) return;
  out.text("    <").text(chain.of_master ? "MASTERFXLIST" : "FXCHAIN");
  out.text("\n      WNDRECT 0 0 0 0\n      SHOW 0\n      LASTSEL 0\n      DOCKED 0\n");
  if (chain.polarity) write_stand_in_slot(out, *chain.polarity, kIndent, false);
  for (const FxSlot& slot : chain.slots) {
    switch (slot.kind) {
      case FxSlot::Kind::kPlugin:
        write_plugin(out, slot);
        break;
      case FxSlot::Kind::kAaxOnly:
        write_empty_slot(out, slot);
        break;
      case FxSlot::Kind::kStandIn:
        write_stand_in(out, slot);
        break;
    }
  }
  out.text("    >\n");
}

}  // namespace frt

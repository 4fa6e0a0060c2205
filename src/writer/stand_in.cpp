#include "writer/stand_in.h"

#include <cstdint>
#include <vector>

#include "writer/fx_bytes.h"

namespace frt {
namespace {

void write_js(ProjectText& out, const StandInSlot& slot, std::string_view indent) {
  constexpr int kValues = 64;
  out.text(indent).text("<JS ").text(slot.js_path).text(" \"").text(slot.label).text("\"\n");
  out.text(indent).text("  ").text(slot.js_parameters);
  for (int i = slot.js_parameter_count; i < kValues; ++i) out.text(" -");
  out.text("\n");
}

void write_vst(ProjectText& out, const StandInSlot& slot, std::string_view indent) {
  const auto view = [](const std::vector<std::uint8_t>& bytes) { return ByteView(bytes.data(), bytes.size()); };
  out.text(indent).text("<VST \"").text(slot.vst_display).text("\" \"").text(slot.vst_file).text("\" 0 \"");
  out.text(slot.label).text("\" ").text(slot.vst_ident).text(" \"\"\n");
  write_line_of_bytes(out, view(slot.vst_header), indent);
  write_lines_of_bytes(out, view(slot.vst_state), indent);
  write_line_of_bytes(out, view(slot.vst_record), indent);
}

}  // namespace

void write_stand_in_slot(ProjectText& out, const StandInSlot& slot, std::string_view indent, bool first_pair_only) {
  out.text(indent).text(slot.bypassed ? "BYPASS 1 0 0\n" : "BYPASS 0 0 0\n");
  if (slot.js_path.empty()) {
    write_vst(out, slot, indent);
  } else {
    write_js(out, slot, indent);
  }
  out.text(indent).text(">\n");
  if (!slot.preset.empty()) out.text(indent).text("PRESETNAME \"").text(slot.preset).text("\"\n");
  out.text(indent).text("FLOATPOS 0 0 0 0\n");
  out.text(indent).text("FXID ").text(make_guid(slot.fxid_seed)).text("\n");
  if (first_pair_only) out.text(indent).text("PINFLAGS 1\n");
  out.text(indent).text("WAK 0 0\n");
}

}  // namespace frt

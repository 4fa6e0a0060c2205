// The rows of the session's inserts.
#include <string>

#include "session/dump_rows.h"

namespace frt {
namespace {

// Offsets count from the insert's mark.
std::string state_of(const InsertRecord& insert) {
  const auto from_start = [&](std::uint64_t at) { return static_cast<std::int64_t>(at - insert.start); };
  std::string text;
  if (insert.kind != StateKind::kNone) {
    text += Dump::field("kind", static_cast<int>(insert.kind)) + " doc=" + std::to_string(from_start(insert.doc_off)) +
            "+" + std::to_string(insert.doc_len) + Dump::field("label", insert.doc_label) +
            Dump::field("copies", insert.doc_copies, 1);
  }
  if (insert.kind == StateKind::kZlib) {
    text += " header=";
    for (const std::uint32_t word : insert.doc_header) text += std::to_string(word) + ",";
  }
  if (insert.alt.count != 0) {
    text += " alt=" + std::to_string(from_start(insert.alt.offset)) + "+" + std::to_string(insert.alt.length) +
            Dump::field("alt_label", insert.alt.label) + Dump::field("alts", insert.alt.count, 1);
  }
  return text;
}

std::string insert_row(const InsertRecord& insert) {
  return " " + quoted(insert.signature) + " size=" + std::to_string(insert.end - insert.start) +
         Dump::field("channels", insert.channels, 1) + Dump::field("key", insert.key_id, -1) +
         Dump::flag("bypassed", insert.bypassed) + Dump::flag("inactive", insert.inactive) + state_of(insert) +
         Dump::field("text", insert.product_text) + Dump::field("preset", insert.preset_name) +
         Dump::field("sub", insert.plugin_sub_comp) + Dump::field("name", insert.plugin_name) +
         Dump::field("setup", insert.active_setup);
}

}  // namespace

void dump_inserts(Dump& out, const Inserts& inserts) {
  if (!inserts.records.empty()) out.table("inserts");
  for (std::size_t i = 0; i < inserts.records.size() && !out.full(); ++i) {
    const InsertRecord& insert = inserts.records[i];
    out.row(indexed(i) + insert_row(insert));
    if (!insert.controls.empty()) {
      std::string text = "    controls";
      for (const float value : insert.controls) text += " " + number(value);
      out.row(text);
    }
    for (const AutomatedControl& control : insert.automated) {
      std::string text = "    automated " + quoted(control.name) + " #" + std::to_string(control.param_number) +
                         Dump::field("label", control.label) + Dump::flag("ticks", control.tick_based) + " " +
                         number(control.initial_value);
      for (const auto& [time, value] : control.points) text += " " + number(time) + "/" + number(value);
      out.row(text);
    }
  }
  if (!inserts.strips.empty()) out.table("inserts of strips");
  for (const auto& [strip, chain] : inserts.strips) {
    std::string text = quoted(strip);
    for (const std::uint32_t insert : chain) text += " " + std::to_string(insert);
    out.row(text);
  }
  if (!inserts.plugin_names.empty()) out.table("plug-in names");
  for (const auto& [key, name] : inserts.plugin_names) out.row(quoted(key) + " " + quoted(name));
  table_of(out, "multi-mono inserts", inserts.multi_mono, [](const MultiMonoInsert& one) {
    return " insert " + std::to_string(one.insert) + Dump::field("on", one.strip);
  });
  table_of(out, "hardware inserts", inserts.hardware,
           [](const HardwareInsert& one) { return " " + quoted(one.track) + " to " + quoted(one.slot); });
}

}  // namespace frt

#include "mix/fx_names.h"

#include "plugins/plugins.h"

namespace frt {
namespace {

// "64 out", "8ch": how many channels, not who made it.
bool is_channel_remark(std::string_view text) {
  const std::size_t digits = text.find_first_not_of("0123456789");
  if (digits == 0 || digits == text.npos) return false;
  const std::string_view rest = text.substr(digits);
  return rest == " out" || rest == "ch";
}

// A name out of a plug-in's own state: any text of any length. No plug-in has a longer name than a few words.
std::string one_line(std::string_view name) {
  constexpr std::size_t kLongest = 8192;
  std::string line(name.substr(0, kLongest));
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return line;
}

}  // namespace

std::string shown_name(const InsertRecord& insert, const KnowledgeRecord* record) {
  if (record) return record->name;
  if (!insert.plugin_name.empty()) return "Waves " + one_line(insert.plugin_name);
  return insert.signature;
}

std::string_view maker_in(std::string_view display_text) {
  while (display_text.ends_with(')')) {
    const std::size_t open = display_text.rfind(" (");
    if (open == display_text.npos) return {};
    const std::string_view inside = display_text.substr(open + 2, display_text.size() - open - 3);
    if (!is_channel_remark(inside)) return inside;
    display_text = display_text.substr(0, open);
  }
  return {};
}

std::string_view shown_maker(const InsertRecord& insert, const KnowledgeRecord* record) {
  if (record) return maker_in(record->display_text);
  return is_stock_family(insert.signature) ? "Avid" : "";
}

FxFormat format_of(std::string_view display_text) {
  if (display_text.starts_with("VST3")) return FxFormat::kVst3;
  if (display_text.starts_with("VST")) return FxFormat::kVst2;
  if (display_text.starts_with("CLAP")) return FxFormat::kClap;
  if (display_text.starts_with("JS")) return FxFormat::kReaper;
  return FxFormat::kNone;
}

}  // namespace frt

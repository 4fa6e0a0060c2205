#include "plugins/learned_list.h"

#include <optional>
#include <utility>

#include "base/text.h"
#include "plugins/side_text.h"

namespace frt {
namespace {

// signature | display text | file | identifier | pins in | pins out | tail word | default program
enum Field { kSignature, kDisplayText, kFile, kIdent, kPinsIn, kPinsOut, kTailWord, kDefaultProgram };
constexpr std::size_t kFewestFields = kIdent + 1;
constexpr std::size_t kSignatureLength = 8;
constexpr std::size_t kLineLimit = 4096;

std::string_view trimmed(std::string_view field) {
  constexpr std::string_view kBlank = " \t";
  const std::size_t first = field.find_first_not_of(kBlank);
  return first == field.npos ? std::string_view() : field.substr(first, field.find_last_not_of(kBlank) + 1 - first);
}

std::vector<std::string_view> fields_of(std::string_view line) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t bar = line.find('|');
    fields.push_back(trimmed(line.substr(0, bar)));
    if (bar == line.npos) return fields;
    line.remove_prefix(bar + 1);
  }
}

std::optional<KnowledgeRecord> read_row(std::string_view line) {
  const std::vector<std::string_view> fields = fields_of(line);
  if (fields.size() < kFewestFields || fields[kSignature].size() < kSignatureLength || fields[kIdent].empty())
    return std::nullopt;
  const auto field = [&](Field which) { return which < fields.size() ? fields[which] : std::string_view(); };

  KnowledgeRecord row;
  row.signature = fields[kSignature].substr(0, kSignatureLength);
  row.display_text = fields[kDisplayText];
  row.name = row.display_text.empty() ? row.signature : row.display_text;
  row.file = fields[kFile];
  row.ident = fields[kIdent];
  if (!field(kPinsIn).empty()) row.pins_in = leading_pin_count(field(kPinsIn));
  if (!field(kPinsOut).empty()) row.pins_out = leading_pin_count(field(kPinsOut));
  row.tail_word = leading_number(field(kTailWord));
  row.default_program = field(kDefaultProgram);
  if (row.default_program.empty() && row.signature.starts_with("FabF")) row.default_program = "Default Setting";
  return row;
}

}  // namespace

std::string learned_list_path(std::string_view program_path) {
  return folder_of(program_path) + "/ferrite-plugins.txt";
}

std::vector<KnowledgeRecord> read_learned_list(std::string_view text) {
  std::vector<KnowledgeRecord> rows;
  LineReader lines(text, kLineLimit);
  while (const auto line = lines.next()) {
    if (line->empty() || line->front() == '#') continue;
    if (auto row = read_row(*line)) rows.push_back(std::move(*row));
  }
  return rows;
}

}  // namespace frt

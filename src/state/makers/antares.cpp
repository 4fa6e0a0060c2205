#include "state/makers/antares.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "state/makers/antares_parameters.h"

namespace frt {
namespace {

constexpr std::string_view kListStart = "<Parameters>", kListEnd = "</Parameters>";
constexpr std::string_view kElement = "<PARAM id=\"", kValue = "value=\"";

struct NewName {
  std::string_view aax_name, vst3_name;
};
constexpr std::array<NewName, 25> kNewNames = {
    {{"bypa", "MasterBypass"}, {"vrpu", "InputType_ID"},    {"sld1", "RetuneSpeed_ID"}, {"kypu", "Key_ID"},
     {"scpu", "Scale_ID"},     {"butc", "CKey_ID"},         {"butC", "CSharpKey_ID"},   {"butd", "DKey_ID"},
     {"butD", "DSharpKey_ID"}, {"bute", "EKey_ID"},         {"butf", "FKey_ID"},        {"butF", "FSharpKey_ID"},
     {"butg", "GKey_ID"},      {"butG", "GSharpKey_ID"},    {"buta", "AKey_ID"},        {"butA", "ASharpKey_ID"},
     {"butb", "BKey_ID"},      {"papu", "Pattern_ID"},      {"busy", "HostSynch_ID"},   {"dil1", "GestureTempo_ID"},
     {"butr", "Trigger_ID"},   {"sld2", "PatternSpeed_ID"}, {"sld3", "Tracking_ID"},    {"dil7", "TempoSynchLen_ID"},
     {"HumK", "Humanize_ID"}}};

// Of the parameters' AAX names alone, the last of a name standing. Reading ends at the first element that isn't whole.
std::map<std::string_view, std::string_view> values_in(std::string_view list,
                                                       std::span<const AntaresParameter> parameters) {
  std::map<std::string_view, std::string_view> values;
  std::set<std::string_view> names;  // a document may hold any number of others
  for (const AntaresParameter& parameter : parameters) names.insert(parameter.aax_name);
  std::size_t at = 0;
  // What stands up to the next quote; moves behind it.
  const auto quoted = [&](std::string_view& text) {
    const std::size_t quote = list.find('"', at);
    if (quote == list.npos) return false;
    text = list.substr(at, quote - at);
    at = quote + 1;
    return true;
  };
  const auto behind = [&](std::string_view mark) {
    const std::size_t found = list.find(mark, at);
    if (found == list.npos) return false;
    at = found + mark.size();
    return true;
  };
  std::string_view id, value;
  while (behind(kElement) && quoted(id) && behind(kValue) && quoted(value)) {
    if (names.contains(id)) values.insert_or_assign(id, value);
  }
  return values;
}

}  // namespace

std::string antares_rewritten(std::string_view signature, std::string_view document) {
  const std::span<const AntaresParameter> parameters = antares_parameters(signature);
  const std::size_t start = document.find(kListStart), end = document.find(kListEnd);
  if (parameters.empty() || start == document.npos || end == document.npos || end < start) {
    return std::string(document);
  }
  const std::string_view list = document.substr(start, end - start);
  const std::size_t tag_end = list.find('>', kListStart.size());
  if (tag_end == list.npos) return std::string(document);
  const std::string_view opening = list.substr(kListStart.size(), tag_end + 1 - kListStart.size());
  const std::string_view name = opening.substr(1, std::min(opening.find_first_of(" >", 1), opening.size()) - 1);

  const std::map<std::string_view, std::string_view> values = values_in(list, parameters);
  std::string text(document.substr(0, start));
  text.append(kListStart).append(opening);
  for (const AntaresParameter& parameter : parameters) {
    const auto value = parameter.aax_name.empty() ? values.end() : values.find(parameter.aax_name);
    text.append(kElement).append(parameter.vst3_name).append("\" ").append(kValue);
    text.append(value == values.end() ? parameter.default_text : value->second).append("\"/>");
  }
  text.append("</").append(name).append(">");
  return text.append(document.substr(end));
}

std::string antares_renamed(std::string_view document) {
  std::string text(document);
  for (const NewName& row : kNewNames) {
    const std::string old = std::string(kElement).append(row.aax_name).append("\"");
    const std::size_t at = text.find(old);
    if (at != text.npos) text.replace(at + kElement.size(), row.aax_name.size(), row.vst3_name);
  }
  return text;
}

}  // namespace frt

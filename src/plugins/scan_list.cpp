#include "plugins/scan_list.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "base/file.h"
#include "base/text.h"
#include "plugins/side_text.h"

namespace frt {
namespace {

constexpr std::size_t kLineLimit = 4096;

constexpr const char* kVstLists[] = {"reaper-vstplugins_arm64.ini", "reaper-vstplugins_aarch64.ini",
                                     "reaper-vstplugins64.ini", "reaper-vstplugins.ini"};

// The last one is what REAPER on Apple silicon writes today.
constexpr const char* kClapLists[] = {"reaper-clap-win64.ini",        "reaper-clap-win32.ini",
                                      "reaper-clap-macos-arm64.ini",  "reaper-clap-macos-x86_64.ini",
                                      "reaper-clap-linux-x86_64.ini", "reaper-clap-linux-aarch64.ini",
                                      "reaper-clap-macos-aarch64.ini"};

constexpr std::size_t kClassIdDigits = 32;

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_hex_digit(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

std::string short_name_of(std::string_view display) { return std::string(display.substr(0, display.rfind(" ("))); }

// What stands in front of a value: a file, and behind it possibly a class id ("<", anything, ">") or the number of a
// plug-in in a shell ("<" and digits).
void take_key(std::string_view key, ReaperPluginEntry& entry) {
  const std::size_t open = key.find('<');
  entry.file = key;
  if (open == key.npos) return;
  const std::string_view behind = key.substr(open + 1);
  if (key.ends_with('>')) {
    entry.class_id = behind.substr(0, behind.size() - 1);
  } else if (behind.empty() || !std::all_of(behind.begin(), behind.end(), is_digit)) {
    return;
  }
  entry.file = key.substr(0, open);
}

// The class id behind the number: "{" and 32 digits, as REAPER writes it without a "}".
std::string_view class_id_behind(std::string_view id_field) {
  const std::size_t open = id_field.find('{');
  if (open == id_field.npos) return {};
  std::string_view id = id_field.substr(open + 1);
  while (id.ends_with('}')) id.remove_suffix(1);
  return id.size() == kClassIdDigits && std::all_of(id.begin(), id.end(), is_hex_digit) ? id : std::string_view();
}

// A line of a VST list: "Pro-Q_3.vst3=0012AB,756089518{72C4...,Pro-Q 3 (FabFilter)". Number 0 and an empty name are
// REAPER's marks of a file that failed to load.
std::optional<ReaperPluginEntry> read_vst_line(std::string_view line) {
  if (line.empty() || line.front() == '[' || line.front() == ';') return std::nullopt;
  const std::size_t equals = line.find('=');
  if (equals == line.npos) return std::nullopt;
  const std::string_view value = line.substr(equals + 1);
  const std::size_t first = value.find(',');
  const std::size_t second = first == value.npos ? first : value.find(',', first + 1);
  if (second == value.npos) return std::nullopt;
  const std::string_view id_field = value.substr(first + 1, second - first - 1);

  ReaperPluginEntry entry;
  entry.uid = leading_number(id_field);
  std::string_view display = value.substr(second + 1);
  constexpr std::string_view kInstrument = "!!!VSTi";
  if (display.size() > kInstrument.size() && display.ends_with(kInstrument)) {
    entry.is_instrument = true;
    display.remove_suffix(kInstrument.size());
  }
  if (entry.uid == 0 || display.empty()) return std::nullopt;
  entry.display = display;
  entry.short_name = short_name_of(display);
  take_key(line.substr(0, equals), entry);
  if (entry.class_id.empty()) entry.class_id = class_id_behind(id_field);
  constexpr std::string_view kEnding = ".vst3";
  entry.is_vst3 = entry.file.size() > kEnding.size() && lower_ascii(entry.file).ends_with(kEnding);
  return entry;
}

// Where a list may stand, in the order of trying: a file made for the processor wins over a plain one wherever it is.
std::vector<std::string> vst_list_paths(const ScanListPlaces& places) {
  std::vector<std::string> paths;
  if (!places.vstini_path.empty()) paths.push_back(places.vstini_path);
  for (const char* name : kVstLists) {
    for (const std::string& folder : {places.session_folder, places.program_folder}) {
      if (!folder.empty()) paths.push_back(folder + "/" + name);
    }
    paths.push_back(std::string("./") + name);
    for (const char* variable : {"APPDATA", "HOME"}) {
      const char* home = std::getenv(variable);
      if (!home) continue;
      for (const char* folder : {"/REAPER/", "/Library/Application Support/REAPER/", "/.config/REAPER/"})
        paths.push_back(std::string(home) + folder + name);
    }
  }
  return paths;
}

}  // namespace

std::string ReaperPluginEntry::ident() const {
  if (is_clap) return clap_id;
  if (!class_id.empty()) return format_text("%u{%s}", uid, class_id.c_str());
  // Made as hosts make it: "VST", the number's four bytes, the first nine of the name.
  std::string bytes = "VST";
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(uid >> shift & 0xFF);
  bytes += lower_ascii(std::string_view(short_name).substr(0, 9));
  bytes.resize(16, '\0');
  std::string id;
  for (const char c : bytes) id += format_text("%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
  return format_text(is_vst3 ? "%u{%s}" : "%u<%s>", uid, id.c_str());
}

std::string ReaperPluginEntry::display_text() const {
  const char* format = is_clap ? "CLAP" : is_vst3 || !class_id.empty() ? "VST3" : "VST";
  return std::string(format) + (is_instrument ? "i: " : ": ") + display;
}

std::vector<ReaperPluginEntry> read_vst_list(std::string_view text) {
  std::vector<ReaperPluginEntry> entries;
  LineReader lines(text, kLineLimit);
  while (const auto line = lines.next()) {
    if (auto entry = read_vst_line(*line)) entries.push_back(std::move(*entry));
  }
  return entries;
}

// Sections name a file, lines its plug-ins: "com.maker.plugin=1|Name (Maker)".
std::vector<ReaperPluginEntry> read_clap_list(std::string_view text) {
  std::vector<ReaperPluginEntry> entries;
  LineReader lines(text, kLineLimit);
  std::string section;
  while (const auto line = lines.next()) {
    if (line->empty() || line->front() == ';') continue;
    if (line->front() == '[') {
      const std::size_t close = line->find(']');
      section = close == line->npos ? std::string_view() : line->substr(1, close - 1);
      continue;
    }
    const std::size_t equals = line->find('=');
    if (equals == line->npos || equals == 0) continue;
    const std::string_view id = line->substr(0, equals);
    if (id == "_") continue;  // the scanner's own mark
    const std::string_view value = line->substr(equals + 1);
    const std::size_t bar = value.find('|');
    if (bar == value.npos || bar + 1 == value.size()) continue;
    ReaperPluginEntry entry;
    entry.file = section;
    entry.display = value.substr(bar + 1);
    entry.short_name = short_name_of(entry.display);
    entry.is_instrument = (std::strtol(std::string(value.substr(0, bar)).c_str(), nullptr, 10) & 1) != 0;
    entry.is_clap = true;
    entry.clap_id = id;
    entries.push_back(std::move(entry));
  }
  return entries;
}

ReaperPluginCache load_plugin_cache(const ScanListPlaces& places) {
  ReaperPluginCache cache;
  for (const std::string& path : vst_list_paths(places)) {
    const auto file = read_side_file(path);
    if (!file) continue;
    cache.entries = read_vst_list(text_of(*file));
    if (cache.entries.empty()) continue;
    cache.path = path;
    break;
  }
  if (cache.empty()) return cache;

  const std::string folder = cache.path.substr(0, last_separator(cache.path) + 1);
  for (const char* name : kClapLists) {
    const auto file = read_side_file(folder + name);
    if (!file) continue;
    auto claps = read_clap_list(text_of(*file));
    cache.clap_count = claps.size();
    std::move(claps.begin(), claps.end(), std::back_inserter(cache.entries));
    if (cache.clap_count > 0) break;
  }
  return cache;
}

}  // namespace frt

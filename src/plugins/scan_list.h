// The plug-ins installed for REAPER, from the lists that it leaves behind when it scans them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace frt {

struct ReaperPluginEntry {
  std::string file;        // as the list spells it; of a CLAP its section
  std::string display;     // without the mark of an instrument
  std::string short_name;  // `display` without its last remark in parentheses
  std::string class_id;    // 32 hexadecimal digits of a VST3 class, or empty
  std::uint32_t uid = 0;   // 0 for a CLAP
  bool is_instrument = false;
  bool is_vst3 = false;
  bool is_clap = false;
  std::string clap_id;

  std::string ident() const;         // as a project names it
  std::string display_text() const;  // "VST3i: ..."
};

struct ReaperPluginCache {
  std::vector<ReaperPluginEntry> entries;  // VSTs, then CLAPs, each in file order
  std::string path;                        // of the list that was taken, empty for none
  std::size_t clap_count = 0;

  bool empty() const { return entries.empty(); }
};

// Where lists are sought, beside REAPER's own folders below APPDATA and HOME. Folders may be empty.
struct ScanListPlaces {
  std::string vstini_path;  // of --vstini
  std::string session_folder;
  std::string program_folder;
};

// The first VST list that holds a plug-in, and the first such CLAP list of its folder.
ReaperPluginCache load_plugin_cache(const ScanListPlaces& places);

std::vector<ReaperPluginEntry> read_vst_list(std::string_view text);
std::vector<ReaperPluginEntry> read_clap_list(std::string_view text);

}  // namespace frt

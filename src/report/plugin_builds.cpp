#include "report/plugin_builds.h"

#include "plugins/plugin_names.h"

namespace frt {

int inserts_kept_on_vst3(const Plugins& plugins) {
  int inserts = 0;
  for (const auto& [key, kept] : plugins.kept_on_vst3) inserts += kept.second;
  return inserts;
}

std::string plugins_kept_on_vst3(const Plugins& plugins) {
  std::string list;
  for (const auto& [key, kept] : plugins.kept_on_vst3) {
    if (!list.empty()) list += ", ";
    list += kept.first + " x" + std::to_string(kept.second);
  }
  return list;
}

std::string kontakt_name(const Plugins& plugins) { return std::string(bare_name(plugins.kontakt_display)); }

}  // namespace frt

#include "plugins/load_plugins.h"

#include <string>

#include "base/text.h"
#include "plugins/learned_list.h"
#include "plugins/match_inserts.h"
#include "plugins/side_text.h"
#include "run/text_output.h"

namespace frt {
namespace {

KnowledgeList load_learned_list(const std::string& program_path) {
  KnowledgeList learned;
  if (const auto file = read_side_file(learned_list_path(program_path))) {
    for (KnowledgeRecord& row : read_learned_list(text_of(*file))) learned.add(std::move(row));
  }
  if (!learned.empty())
    print_text("  %d plug-in(s) learned from ferrite-plugins.txt\n\n", static_cast<int>(learned.size()));
  return learned;
}

// A list has no place beside a path without a folder: the working directory is tried anyway.
std::string list_folder(const std::string& path) {
  const std::size_t separator = last_separator(path);
  return separator == path.npos ? std::string() : path.substr(0, separator);
}

void print_cache(const ReaperPluginCache& cache) {
  print_text("  --- plug-in cache dump ---\n");
  for (const ReaperPluginEntry& entry : cache.entries) {
    print_text("    %-46s %s\n      %s\n", entry.file.c_str(), entry.display_text().c_str(), entry.ident().c_str());
  }
  print_text("  --- %d entries ---\n\n", static_cast<int>(cache.entries.size()));
}

}  // namespace

Plugins load_plugins(const ConversionOptions& options, const Inserts& inserts, const ClapStep& clap_step) {
  Plugins plugins;
  plugins.learned = load_learned_list(options.program_path);
  plugins.param_names = load_param_names(folder_of(options.program_path), options.param_files);
  plugins.cache =
      load_plugin_cache({options.vstini_path, list_folder(options.session_path), list_folder(options.program_path)});
  if (!plugins.cache.empty()) {
    print_text("  plug-in cache: %d entries from %s\n", static_cast<int>(plugins.cache.entries.size()),
               plugins.cache.path.c_str());
    match_inserts(inserts, options.prefer_vst3, plugins);
    if (options.prefer_clap && clap_step) clap_step(plugins);
    if (plugins.overrides.empty() && plugins.matched.empty()) print_text("    (nothing new matched)\n");
    print_text("\n");
  } else if (!options.vstini_path.empty()) {
    print_text("  could not read plug-in cache: %s\n\n", options.vstini_path.c_str());
  }
  if (options.dump_cache) print_cache(plugins.cache);
  return plugins;
}

}  // namespace frt

#include "state/clap_overrides.h"

#include <map>
#include <string>
#include <utility>

#include "base/name_hash.h"
#include "plugins/plugin_names.h"
#include "run/text_output.h"
#include "state/transform.h"

namespace frt {
namespace {

// The CLAP entries by what they are looked up by: the session's plug-ins can be as many as the list's.
class ClapEntries {
 public:
  explicit ClapEntries(const ReaperPluginCache& cache) {
    for (const ReaperPluginEntry& entry : cache.entries) {
      if (!entry.is_clap) continue;
      by_name_.try_emplace(alnum_lower(entry.display), &entry);
      // One file may hold several plug-ins; its name says then nothing.
      const auto [at, is_new] = by_stem_.try_emplace(file_stem(entry.file), &entry);
      if (!is_new) at->second = nullptr;
    }
  }

  // The CLAP build of a known plug-in; null if there is none, or if several could be it.
  const ReaperPluginEntry* build_of(const KnowledgeRecord& record) const {
    const std::string_view text = record.display_text;
    const std::size_t colon = text.find(": ");
    const auto named = by_name_.find(alnum_lower(colon == text.npos ? text : text.substr(colon + 2)));
    if (named != by_name_.end()) return named->second;
    const std::string stem = file_stem(record.file);
    const auto filed = by_stem_.find(stem);
    return stem.empty() || filed == by_stem_.end() ? nullptr : filed->second;
  }

 private:
  HashByName<const ReaperPluginEntry*> by_name_, by_stem_;
};

}  // namespace

void prefer_clap_builds(Plugins& plugins, const Inserts& inserts, const ConversionOptions& options) {
  const ClapEntries entries(plugins.cache);
  std::map<std::string, const InsertRecord*> first_of_key;
  for (const InsertRecord& insert : inserts.records) first_of_key.try_emplace(insert_key(insert), &insert);

  for (const auto& [key, insert] : first_of_key) {
    const KnowledgeRecord* known = plugins.lookup(key);
    if (!known || known->ident.empty() || known->is_clap()) continue;
    const ReaperPluginEntry* entry = entries.build_of(*known);
    if (!entry) continue;
    KnowledgeRecord moved = *known;
    moved.signature = key;
    moved.display_text = entry->display_text();
    moved.file = entry->file;
    moved.ident = entry->ident();

    TransformOptions transform;
    transform.keep_plugin_midi = options.keep_plugin_midi;
    transform.kontakt_state = options.kontakt_state;
    transform.vst2_override = plugins.vst2_overrides.contains(key);
    if (transform_state(*insert, moved, inserts.image, transform).bytes.empty()) {
      plugins.clap_refusals.push_back(known->name);
      print_text("    %s stays on %s: its settings cannot be carried to the CLAP build yet\n", key.c_str(),
                 known->display_text.c_str());
      continue;
    }
    ++plugins.clap_overrides;
    print_text("    %s -> %-46s [--prefer-clap]\n", key.c_str(), moved.display_text.c_str());
    plugins.overrides.replace(std::move(moved));
  }
}

}  // namespace frt

#include "plugins/match_inserts.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/text.h"
#include "plugins/identity.h"
#include "plugins/plugin_names.h"
#include "plugins/side_text.h"
#include "run/text_output.h"

namespace frt {
namespace {

constexpr std::uint32_t kMatchedTail = 65535;
constexpr std::size_t kWavesKeyLength = 12;
constexpr const char kKeptOnVst3[] = "kept on VST3: its VST2 build cannot take these settings";

// What the inserts of one key have in common.
struct KeyFacts {
  int inserts = 0;
  bool keyed = false;        // any has a key input
  bool all_portable = true;  // the settings of all are the ones that every build of the plug-in takes
};

bool is_portable(StateKind kind) { return kind == StateKind::kFabFilter || kind == StateKind::kIndexText; }

std::map<std::string, KeyFacts> gather_keys(const std::vector<InsertRecord>& inserts) {
  std::map<std::string, KeyFacts> keys;
  for (const InsertRecord& insert : inserts) {
    KeyFacts& facts = keys[insert_key(insert)];
    ++facts.inserts;
    facts.keyed = facts.keyed || insert.key_id >= 0;
    facts.all_portable = facts.all_portable && is_portable(insert.kind);
  }
  return keys;
}

// ---- Kontakt: one signature for all versions, of which REAPER may know several ----

constexpr std::string_view kKontakt = "NiInNi$D";
constexpr std::uint32_t kKontaktVst2 = 0x4E692444;  // "Ni$D"
constexpr std::string_view kKontakt7 = "5653544E694B376B6F6E74616B742037";
constexpr std::string_view kMaker = "Native Instruments";

bool is_32_bit(const ReaperPluginEntry& entry) { return contains(entry.display, "(x86)"); }

// The version in a name "Kontakt 8 (...)", 0 for another name.
std::uint64_t kontakt_version(const ReaperPluginEntry& entry) {
  const std::string name = alnum_lower(bare_name(entry.display));
  constexpr std::string_view kName = "kontakt";
  if (!name.starts_with(kName)) return 0;
  std::uint64_t version = 0;
  for (const char c : std::string_view(name).substr(kName.size())) {
    if (c < '0' || c > '9') return 0;
    constexpr std::uint64_t kHigh = 1'000'000'000'000'000'000;
    version = std::min(version * 10 + static_cast<std::uint64_t>(c - '0'), kHigh);
  }
  return version;
}

struct KontaktVersions {
  const ReaperPluginEntry* vst2 = nullptr;
  const ReaperPluginEntry* seven = nullptr;
  const ReaperPluginEntry* newer = nullptr;
};

KontaktVersions find_kontakts(const ReaperPluginCache& cache) {
  KontaktVersions found;
  std::uint64_t highest = 7;
  for (const ReaperPluginEntry& entry : cache.entries) {
    if (entry.is_clap) continue;
    if (!entry.is_vst3) {
      if (entry.class_id.empty() && entry.uid == kKontaktVst2 && !is_32_bit(entry)) found.vst2 = &entry;
      continue;
    }
    if (entry.class_id == kKontakt7) {
      found.seven = &entry;
    } else if (!entry.class_id.empty() && contains(entry.display, kMaker)) {
      const std::uint64_t version = kontakt_version(entry);
      if (version <= highest) continue;
      highest = version;
      found.newer = &entry;
    }
  }
  return found;
}

// The number in "Kontakt 7 (Native Instruments) (64 out)"; nothing where none is told.
std::optional<std::uint32_t> told_outputs(std::string_view display) {
  const std::size_t out = display.rfind(" out)");
  if (out == display.npos) return std::nullopt;
  const std::size_t open = display.substr(0, out).rfind('(');
  if (open == display.npos) return std::nullopt;
  const std::uint32_t outputs = leading_pin_count(display.substr(open + 1));
  return outputs >= 1 ? std::optional(outputs) : std::nullopt;
}

// ---- the matching of each key ----

class Matching {
 public:
  Matching(const Inserts& inserts, bool prefer_vst3, Plugins& plugins)
      : inserts_(inserts), prefer_vst3_(prefer_vst3), plugins_(plugins), index_(plugins.cache) {}

  void run() {
    for (const auto& [key, facts] : gather_keys(inserts_.records)) {
      const KnowledgeRecord* row = plugins_.table->all.find(key);
      if (!row || row->ident.empty()) {
        match(key, facts, row);
      } else if (key != kKontakt || !override_kontakt(key, facts, *row)) {
        if (!prefer_vst3_) override_by_vst2(key, facts, *row);
      }
    }
  }

 private:
  const ReaperPluginEntry& entry(std::size_t index) const { return plugins_.cache.entries[index]; }

  static void trace(const std::string& key, const std::string& display_text, std::string_view rule) {
    print_text("    %s -> %-46s [%s]\n", key.c_str(), display_text.c_str(), std::string(rule).c_str());
  }

  // False where the table's row serves.
  bool override_kontakt(const std::string& key, const KeyFacts& facts, const KnowledgeRecord& row) {
    const KontaktVersions found = find_kontakts(plugins_.cache);
    if (found.vst2 && (!prefer_vst3_ || !found.seven)) return false;
    const ReaperPluginEntry* chosen = found.seven ? found.seven : found.newer;
    if (!chosen) return false;

    KnowledgeRecord record = row;
    record.signature = key;
    record.display_text = chosen->display_text();
    record.file = repaired_file(chosen->file, bare_name(chosen->display));
    record.ident = chosen->ident();
    record.tail_word = kMatchedTail;
    record.pins_out = told_outputs(chosen->display).value_or(row.pins_out);
    plugins_.kontakt_instances += facts.inserts;
    plugins_.kontakt_display = chosen->display;
    plugins_.kontakt_measured = chosen == found.seven;
    trace(key, record.display_text,
          plugins_.kontakt_measured ? "Kontakt 7 takes Kontakt 6's settings, measured"
                                    : "predicted: written the way Kontakt 7 takes them");
    plugins_.overrides.replace(std::move(record));
    return true;
  }

  void override_by_vst2(const std::string& key, const KeyFacts& facts, const KnowledgeRecord& row) {
    if (!row.is_vst3() || !row.state_template.empty() || key.size() == kWavesKeyLength) return;
    const auto found = index_.match_identity(key, row.name, prefer_vst3_);
    if (!found) return;
    const ReaperPluginEntry& vst2 = entry(found->entry);
    if (vst2.is_vst3 || !vst2.class_id.empty() || is_32_bit(vst2)) return;
    if (!facts.all_portable) {
      plugins_.kept_on_vst3[key] = {row.name.empty() ? key : row.name, facts.inserts};
      trace(key, row.display_text.empty() ? "?" : row.display_text, kKeptOnVst3);
      return;
    }
    KnowledgeRecord record = row;
    record.signature = key;
    record.display_text = vst2.display_text();
    record.file = repaired_file(vst2.file, vst2.short_name);
    record.ident = vst2.ident();
    record.tail_word = 0;
    trace(key, record.display_text, "--prefer-vst2 over the table row");
    plugins_.overrides.replace(std::move(record));
    plugins_.vst2_overrides.insert(key);
  }

  void match(const std::string& key, const KeyFacts& facts, const KnowledgeRecord* row) {
    const std::string hint_name = row ? row->name : "";
    std::optional<IdentityIndex::Match> found;
    if (key.size() == kWavesKeyLength) {
      if (const auto shell = index_.compatible(std::string_view(key).substr(8)))
        found = {*shell, "Waves PluginSubComp"};
    } else {
      // A FabFilter's settings in another form than its own are taken by its VST3 alone.
      const bool forced = !prefer_vst3_ && key.size() == 8 && key.starts_with("FabF") && !facts.all_portable;
      found = index_.match_identity(key, hint_name, prefer_vst3_ || forced);
      if (forced && found) keep_on_vst3(key, facts, hint_name, *found);
      if (!found && !row && key.size() == 8 && !is_stock_family(key)) found = match_stored_name(key);
    }
    if (found) add_matched(key, facts, row, *found);
  }

  // Tells of a plug-in that would be its VST2, were it not for its settings.
  void keep_on_vst3(const std::string& key, const KeyFacts& facts, const std::string& hint_name,
                    IdentityIndex::Match& found) {
    const ReaperPluginEntry& kept = entry(found.entry);
    if (!kept.is_vst3) return;
    const auto wanted = index_.match_identity(key, hint_name, /*prefer_vst3=*/false);
    if (!wanted || entry(wanted->entry).is_vst3 || !entry(wanted->entry).class_id.empty()) return;
    const bool named = kept.short_name.starts_with("FabFilter ");
    plugins_.kept_on_vst3[key] = {(named ? "" : "FabFilter ") + kept.short_name, facts.inserts};
    found.rule = kKeptOnVst3;
  }

  std::optional<IdentityIndex::Match> match_stored_name(const std::string& key) const {
    const auto name = inserts_.plugin_names.find(key);
    if (name == inserts_.plugin_names.end()) return std::nullopt;
    const auto found = index_.of_stored_name(name->second);
    if (!found) return std::nullopt;
    return IdentityIndex::Match{*found, "the name Pro Tools stores"};
  }

  void add_matched(const std::string& key, const KeyFacts& facts, const KnowledgeRecord* row,
                   const IdentityIndex::Match& found) {
    const ReaperPluginEntry& target = entry(found.entry);
    KnowledgeRecord record;
    record.signature = key;
    record.name = row ? row->name : target.short_name;
    record.display_text = target.display_text();
    record.file = repaired_file(target.file, target.short_name);
    record.ident = target.ident();
    record.default_program = key.starts_with("FabF") ? "Default Setting" : "";
    record.class_id_known = !target.is_vst3 || !target.class_id.empty();
    record.pins_in = facts.keyed ? 4 : 2;
    record.tail_word = kMatchedTail;
    std::string rule(found.rule);
    if (!record.class_id_known) {
      plugins_.marker_only.insert(key);
      rule += ", VST3 class id unknown - marker only";
    }
    trace(key, record.display_text, rule);
    plugins_.matched.add(std::move(record));
  }

  const Inserts& inserts_;
  const bool prefer_vst3_;
  Plugins& plugins_;
  const IdentityIndex index_;
};

}  // namespace

void match_inserts(const Inserts& inserts, bool prefer_vst3, Plugins& plugins) {
  if (!plugins.cache.empty()) Matching(inserts, prefer_vst3, plugins).run();
}

}  // namespace frt

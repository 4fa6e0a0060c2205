// Arbitrary text files: REAPER's lists, chains, the learned list and parameter names. The first byte says what the rest
// stands for. In a list, words of eight characters behind "@" are also the signatures that are matched against it.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "plugins/learn.h"
#include "plugins/learned_list.h"
#include "plugins/match_inserts.h"
#include "plugins/param_names.h"
#include "support/console.h"

namespace {

using namespace frt;

// A regular file in memory that holds the text.
std::string file_of(std::string_view text) {
  static const int file = ::memfd_create("side.txt", 0);
  if (::ftruncate(file, 0) != 0) std::abort();
  if (::pwrite(file, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) std::abort();
  return "/proc/self/fd/" + std::to_string(file);
}

void match_all(std::string_view text, bool prefer_vst3) {
  Inserts inserts;
  for (std::size_t at = text.find('@'); at < text.size(); at = text.find('@', at + 1)) {
    InsertRecord insert;
    insert.signature = std::string(text.substr(at + 1, 8));
    insert.signature.resize(8, '.');
    insert.kind = static_cast<StateKind>(inserts.records.size() % 14);
    insert.plugin_sub_comp = text.substr(at + 1, 4);
    inserts.plugin_names.try_emplace(insert.signature, text.substr(at / 2, 12));
    inserts.records.push_back(std::move(insert));
  }
  Plugins plugins;
  plugins.cache.entries = read_vst_list(text);
  for (ReaperPluginEntry& clap : read_clap_list(text)) plugins.cache.entries.push_back(std::move(clap));
  const KnowledgeRecord rows[] = {{.signature = "FabFRowA", .name = "Row A", .ident = "5{x"},
                                  {.signature = "AbcdRowB", .name = "Row B"}};
  const KnowledgeTable table(rows);
  if (text.size() % 2 == 0) plugins.table = &table;
  match_inserts(inserts, prefer_vst3, plugins);
  for (const InsertRecord& insert : inserts.records) {
    const KnowledgeRecord* record = plugins.lookup(insert_key(insert));
    if (record && !insert_key(insert).starts_with(record->signature)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const test::Console silent;
  switch (data[0] % 5) {
    case 0:
      match_all(text, /*prefer_vst3=*/true);
      break;
    case 1:
      match_all(text, /*prefer_vst3=*/false);
      break;
    case 2:
      for (const KnowledgeRecord& row : read_learned_list(text)) {
        if (row.signature.size() != 8 || row.ident.empty()) std::abort();
      }
      break;
    case 3:
      load_param_names("", {file_of(text)});
      break;
    default:
      // No list can be written there.
      learn_plugin(file_of(text), "AbcdEfgh", "/proc/self/nowhere/ferrite");
  }
  return 0;
}

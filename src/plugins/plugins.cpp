#include "plugins/plugins.h"

#include <array>

namespace frt {
namespace {

// The built-in rows with an identifier, and all of them: in both the earlier of two rows wins.
struct BuiltIn {
  KnowledgeList identified, all;

  BuiltIn() {
    for (const KnowledgeRecord& row : knowledge_rows()) {
      if (!row.ident.empty()) identified.add(row);
      all.add(row);
    }
  }
};

const BuiltIn& built_in() {
  static const BuiltIn tables;
  return tables;
}

// The first list that knows the key decides.
template <std::size_t N>
const KnowledgeRecord* first_hit(std::string_view key, const std::array<const KnowledgeList*, N>& lists) {
  for (const KnowledgeList* list : lists) {
    if (const KnowledgeRecord* record = list->find(key)) return record;
  }
  return nullptr;
}

}  // namespace

std::string insert_key(const InsertRecord& insert) {
  constexpr std::size_t kSubComponent = 4;
  std::string key = insert.signature;
  if (insert.kind == StateKind::kWaves && insert.plugin_sub_comp.size() == kSubComponent) key += insert.plugin_sub_comp;
  return key;
}

bool is_stock_family(std::string_view signature) {
  for (const std::string_view maker : {"Digi", "AVID", "Avid", "BFD ", "TrLn"}) {
    if (signature.substr(0, 4) == maker) return true;
  }
  return false;
}

const KnowledgeRecord* built_in_record(std::string_view key) { return built_in().all.find(key); }

const KnowledgeRecord* Plugins::lookup(std::string_view key) const {
  return first_hit<5>(key, {&overrides, &built_in().identified, &learned, &matched, &built_in().all});
}

const KnowledgeRecord* Plugins::lookup_unmatched(std::string_view key) const {
  return first_hit<3>(key, {&built_in().identified, &learned, &built_in().all});
}

}  // namespace frt

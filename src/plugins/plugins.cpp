#include "plugins/plugins.h"

#include <array>

namespace frt {
namespace {

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

const KnowledgeRecord* Plugins::lookup(std::string_view key) const {
  return first_hit<5>(key, {&overrides, &table->identified, &learned, &matched, &table->all});
}

const KnowledgeRecord* Plugins::lookup_unmatched(std::string_view key) const {
  return first_hit<3>(key, {&table->identified, &learned, &table->all});
}

}  // namespace frt

#include "plugins/knowledge_list.h"

#include <algorithm>

namespace frt {

void KnowledgeList::add(KnowledgeRecord record) {
  const std::size_t length = record.signature.size();
  if (std::find(lengths_.begin(), lengths_.end(), length) == lengths_.end()) lengths_.push_back(length);
  first_.try_emplace(record.signature, records_.size());
  records_.push_back(std::move(record));
}

void KnowledgeList::replace(KnowledgeRecord record) {
  const auto there = first_.find(record.signature);
  if (there == first_.end()) return add(std::move(record));
  records_[there->second] = std::move(record);
}

const KnowledgeRecord* KnowledgeList::find(std::string_view key) const {
  std::size_t found = records_.size();
  for (const std::size_t length : lengths_) {
    if (length > key.size()) continue;
    const auto there = first_.find(key.substr(0, length));
    if (there != first_.end()) found = std::min(found, there->second);
  }
  return found < records_.size() ? &records_[found] : nullptr;
}

KnowledgeTable::KnowledgeTable(std::span<const KnowledgeRecord> rows) {
  for (const KnowledgeRecord& row : rows) {
    if (!row.ident.empty()) identified.add(row);
    all.add(row);
  }
}

const KnowledgeTable& built_in_table() {
  static const KnowledgeTable table(knowledge_rows());
  return table;
}

}  // namespace frt

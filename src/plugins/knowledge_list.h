// Records of known plug-ins in the order in which they are asked.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/name_hash.h"
#include "plugins/knowledge.h"

namespace frt {

// A hostile session has 50,000 keys, and a user's list may hold as many lines: a walk over the list for each key would
// take minutes.
class KnowledgeList {
 public:
  // Behind those that are there: of two records whose signature begins a key, the earlier is the one that it finds.
  void add(KnowledgeRecord record);
  // The same, but a record of the same signature gives its place to it.
  void replace(KnowledgeRecord record);

  // The first record whose signature is the beginning of the key; null if none is. It stays where it is.
  const KnowledgeRecord* find(std::string_view key) const;

  std::size_t size() const { return records_.size(); }
  bool empty() const { return records_.empty(); }
  auto begin() const { return records_.begin(); }
  auto end() const { return records_.end(); }

 private:
  std::deque<KnowledgeRecord> records_;
  HashByName<std::size_t> first_;     // by signature
  std::vector<std::size_t> lengths_;  // of signatures, each once
};

// A table of rows, with an identifier and without.
struct KnowledgeTable {
  explicit KnowledgeTable(std::span<const KnowledgeRecord> rows);
  KnowledgeList identified, all;
};

const KnowledgeTable& built_in_table();

}  // namespace frt

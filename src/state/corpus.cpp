#include "state/corpus.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "base/file.h"
#include "base/text.h"

namespace frt {
namespace {

constexpr std::uint64_t kHashStart = 0xcbf29ce484222325, kHashPrime = 0x100000001b3;

// FNV-1a, carried on from `hash`.
std::uint64_t hashed(ByteView bytes, std::uint64_t hash) {
  for (std::size_t i = 0; i < bytes.size(); ++i) hash = (hash ^ bytes.data()[i]) * kHashPrime;
  return hash;
}

// A signature comes from the session: as a part of a name it must not lead out of the folder.
std::string file_name(const std::string& folder, std::string signature, std::uint64_t hash, const char* ending) {
  std::replace_if(
      signature.begin(), signature.end(), [](char c) { return c == '/' || c == '\\'; }, '.');
  return format_text("%s/%s.%08x%08x.%s", folder.c_str(), signature.c_str(), static_cast<unsigned>(hash >> 32),
                     static_cast<unsigned>(hash & 0xFFFFFFFF), ending);
}

bool write_file(const std::string& path, ByteView bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return false;
  const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && whole;
}

void append_row(const std::string& path, const std::string& row) {
  std::FILE* file = std::fopen(path.c_str(), "a");
  if (!file) return;
  std::fseek(file, 0, SEEK_END);
  if (std::ftell(file) == 0) {
    std::fputs("name\tsig\tproduct\tident\tkind\tblocklen\tdocoff\tdoclen\tchunklen\tsession\n", file);
  }
  std::fputs(row.c_str(), file);
  std::fclose(file);
}

}  // namespace

void dump_corpus(const std::string& folder, const std::string& session_path, const InsertRecord& insert,
                 const KnowledgeRecord& record, ByteView state, ByteView image) {
  if (folder.empty() || state.size() == 0 || (insert.kind == StateKind::kNone && insert.doc_len == 0)) return;
  const ByteView block = image.clamped(insert.start, insert.end - insert.start);
  const std::uint64_t block_hash = hashed(block, kHashStart), state_hash = hashed(state, block_hash);
  const std::string block_path = file_name(folder, insert.signature, block_hash, "block");
  if (can_open(block_path)) return;
  if (!write_file(block_path, block)) {
    std::fprintf(stderr, "--dump-corpus: cannot write in %s (does the directory exist?)\n", folder.c_str());
    return;
  }
  write_file(file_name(folder, insert.signature, state_hash, "chunk"), state);

  const std::uint64_t document = insert.doc_off == 0 ? 0 : insert.doc_off - insert.start;
  append_row(
      folder + "/index.tsv",
      format_text("%s\t%s\t%s\t%s\t%d\t%llu\t%llu\t%u\t%u\t%s\n",
                  file_name("", insert.signature, state_hash, "").c_str(), insert.signature.c_str(),
                  record.name.c_str(), record.ident.c_str(), static_cast<int>(insert.kind),
                  static_cast<unsigned long long>(block.size()), static_cast<unsigned long long>(document),
                  static_cast<unsigned>(insert.doc_len), static_cast<unsigned>(state.size()), session_path.c_str()));
}

}  // namespace frt

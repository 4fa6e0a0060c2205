// Many texts, each once, numbered in the order they came; found by text or by a hash that grows byte by byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace frt {

// The hash of a run of bytes, extended by one byte at a time: a walk over text asks at each length it passes.
struct TextHash {
  std::uint64_t value = 0;
  void add(char c) { value = value * 0x9E3779B97F4A7C15u + static_cast<std::uint8_t>(c) + 1; }
  // Every bit of it depends on all bytes.
  std::uint64_t mixed() const {
    const std::uint64_t product = (value ^ (value >> 29)) * 0xBF58476D1CE4E5B9u;
    return product ^ (product >> 32);
  }
};

// A hash map of views, which hashes each text anew at each length asked, took 1.2 to 1.5 times as long for sessions of
// 1 MB full of bus names; real sessions hardly notice. Its hash is fixed: a session made against it (70,000 names that
// fall into one place) still takes seconds.
class TextIndex {
 public:
  // The end of the text from which its hash takes the bytes: the end at which a walk of the caller begins.
  enum class Side { kFirstByte, kLastByte };
  explicit TextIndex(Side side = Side::kFirstByte) : side_(side) {}

  // The text's number, and whether it is new. Texts are views: their bytes must stay.
  std::pair<std::uint32_t, bool> insert(std::string_view text);
  std::optional<std::uint32_t> find(std::string_view text) const { return find(text, hash_of(text)); }
  // The same where the caller has the text's hash already.
  std::optional<std::uint32_t> find(std::string_view text, TextHash hash) const;

  TextHash hash_of(std::string_view text) const;
  bool contains(std::string_view text) const { return find(text).has_value(); }
  bool empty() const { return texts_.empty(); }
  std::size_t size() const { return texts_.size(); }
  const std::vector<std::string_view>& texts() const { return texts_; }

 private:
  // The slot that holds the text, or the free one where it belongs.
  std::size_t slot_of(std::string_view text, std::uint64_t mixed) const;
  void grow();

  Side side_;
  std::vector<std::string_view> texts_;
  // With 32 bits of the hash beside it, a slot answers without a look at the text, as a rule.
  struct Slot {
    std::uint32_t number = 0;  // + 1, 0 for a free slot
    std::uint32_t check = 0;
  };
  std::vector<Slot> slots_;  // the size is a power of two
};

}  // namespace frt

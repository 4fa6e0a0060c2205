// What readers refused: blocks that bear a content type but don't hold what such a block holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace frt {

struct Skipped {
  std::uint16_t content_type = 0;
  std::uint64_t position = 0;  // of the block in the image
  const char* why = "";        // the field or test that failed
};

// Collects them in the order in which they were met. Real sessions give a handful; of a session made to be refused
// everywhere the first ones are kept and the rest only counted.
class Skips {
 public:
  static constexpr std::size_t kMostKept = 10'000;

  void add(std::uint16_t content_type, std::uint64_t position, const char* why) {
    if (kept_.size() < kMostKept) kept_.push_back({content_type, position, why});
    ++count_;
  }
  const std::vector<Skipped>& kept() const { return kept_; }
  std::size_t count() const { return count_; }

 private:
  std::vector<Skipped> kept_;
  std::size_t count_ = 0;
};

}  // namespace frt

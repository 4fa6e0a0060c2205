#include "image/bus_finder.h"

#include <algorithm>
#include <bit>

namespace frt {

NearestBus::NearestBus(ByteView image, const std::vector<std::string_view>& names) : image_(image) {
  for (const std::string_view name : names) {
    if (name.size() < kLeastName || name.size() > kMostName) continue;
    names_.insert(name);
    first_bytes_[static_cast<std::uint8_t>(name.front())] = true;
    lengths_[bucket_of(name)] |= std::uint64_t{1} << name.size();
  }
}

std::size_t NearestBus::bucket_of(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[i])); };
  return ((byte(0) | byte(1) << 8 | byte(2) << 16) * 0x9E3779B1u) >> 20;
}

std::optional<std::string_view> NearestBus::longest_at(std::uint64_t position, std::uint64_t end) const {
  if (position >= end) return std::nullopt;
  const std::uint64_t reach = std::min<std::uint64_t>(end - position, kMostName);
  const std::string_view there = image_.text(position, reach).value_or("");
  if (there.size() < kLeastName) return std::nullopt;
  const std::uint64_t lengths = lengths_[bucket_of(there)];
  if (lengths == 0) return std::nullopt;
  std::optional<std::string_view> found;
  const std::size_t longest =
      std::min<std::size_t>(there.size(), static_cast<std::size_t>(std::bit_width(lengths) - 1));
  TextHash hash;
  for (std::size_t length = 1; length <= longest; ++length) {
    hash.add(there[length - 1]);
    if (!(lengths >> length & 1)) continue;
    if (names_.find(there.substr(0, length), hash)) found = there.substr(0, length);
  }
  return found;
}

std::optional<std::string_view> NearestBus::near(std::uint64_t v) {
  if (names_.empty()) return std::nullopt;
  const std::uint64_t from = v < kReach ? 0 : v - kReach;
  const std::uint64_t end = std::min<std::uint64_t>(v + kReach, image_.size());
  while (!hits_.empty() && hits_.front() < from) hits_.pop_front();
  for (std::uint64_t p = std::max(searched_, from); p < end; ++p) {
    if (first_bytes_[image_.u8_or(p, 0)] && longest_at(p, image_.size())) hits_.push_back(p);
  }
  searched_ = std::max(searched_, end);

  // Outward from v on both sides; only close to the window's end can a hit run out of it.
  auto right = std::lower_bound(hits_.begin(), hits_.end(), v);
  const auto left = right == hits_.begin() ? hits_.end() : right - 1;
  std::optional<std::string_view> before, after;
  if (left != hits_.end()) before = longest_at(*left, end);
  for (; right != hits_.end() && *right < end; ++right) {
    if ((after = longest_at(*right, end))) break;
  }
  if (!before || !after) return before ? before : after;
  const std::uint64_t back = v - *left, ahead = *right - v;
  if (back != ahead) return back < ahead ? before : after;
  // Of equally long names either way the one that sorts first.
  if (before->size() != after->size()) return before->size() > after->size() ? before : after;
  return std::min(*before, *after);
}

}  // namespace frt

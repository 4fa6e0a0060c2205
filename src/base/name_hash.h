// Hashed look-ups by name that take a view without making a string. Never iterated: order is not defined.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace frt {

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
};

template <typename T>
using HashByName = std::unordered_map<std::string, T, NameHash, std::equal_to<>>;
using NameSet = std::unordered_set<std::string, NameHash, std::equal_to<>>;

}  // namespace frt

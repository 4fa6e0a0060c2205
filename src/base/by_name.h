// An ordered map by name, looked up by views.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace frt {

template <typename T>
using ByName = std::map<std::string, T, std::less<>>;

}  // namespace frt

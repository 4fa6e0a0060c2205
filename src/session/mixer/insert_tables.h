// The plug-ins on the session's strips as plain records.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace frt {

struct InsertRecord {
  std::string signature = "........";  // maker code, then AAX code
  std::string_view plugin_name;        // as the plug-in's own state tells it, empty if it doesn't
  std::int32_t key_id = -1;            // what feeds the key input, in the session's key buses; negative for none
};

// By the strip's name, in the order of its chain. Iterated in name order.
using StripInserts = std::map<std::string_view, std::vector<InsertRecord>>;

}  // namespace frt

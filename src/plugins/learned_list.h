// ferrite-plugins.txt: plug-ins that a user taught the program, one a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "plugins/knowledge.h"

namespace frt {

// Beside the program.
std::string learned_list_path(std::string_view program_path);

// The rows of the list, in file order.
std::vector<KnowledgeRecord> read_learned_list(std::string_view text);

}  // namespace frt

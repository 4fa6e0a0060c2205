// Where the session itself lay when it was saved.
#pragma once

#include <string_view>
#include <vector>

#include "image/blocks.h"

namespace frt {

// The volume and the folders down to the session's own; that of its original for a session among the backups. Empty
// where the session doesn't tell, or a name is none that could be followed.
std::vector<std::string_view> read_own_chain(const SessionImage& image);

// A volume's name: sound, or a letter, ":" and "\\".
bool is_sound_volume(std::string_view name);

}  // namespace frt

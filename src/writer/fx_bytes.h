// Bytes of a plug-in's settings as text, two blanks behind the lines around them.
#pragma once

#include <string_view>

#include "base/bytes.h"
#include "writer/rpp_text.h"

namespace frt {

// A header stands on one line, however long.
void write_line_of_bytes(ProjectText& out, ByteView bytes, std::string_view indent);
// Cut into lines of 128 characters. REAPER reads longer lines too, but writes these.
void write_lines_of_bytes(ProjectText& out, ByteView bytes, std::string_view indent);

}  // namespace frt

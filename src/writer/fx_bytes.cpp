#include "writer/fx_bytes.h"

#include <algorithm>
#include <cstddef>

#include "base/base64.h"

namespace frt {

void write_line_of_bytes(ProjectText& out, ByteView bytes, std::string_view indent) {
  out.text(indent).text("  ").text(base64(bytes)).text("\n");
}

void write_lines_of_bytes(ProjectText& out, ByteView bytes, std::string_view indent) {
  constexpr std::size_t kBytesInLine = 96;
  for (std::size_t at = 0; at < bytes.size(); at += kBytesInLine) {
    const std::size_t size = std::min(kBytesInLine, bytes.size() - at);
    write_line_of_bytes(out, ByteView(bytes.data() + at, size), indent);
  }
}

}  // namespace frt

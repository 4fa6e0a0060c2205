// What the dump of the session's tables is made of: headings, rows, values that are left out at rest.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "session/inserts/insert_tables.h"

namespace frt {

inline std::string number(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

// A session's text in quotes; control bytes and quotes as \xNN.
inline std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    out += byte < 32 || byte == 127 || c == '"' || c == '\\' ? format_text("\\x%02x", byte) : std::string(1, c);
  }
  return out + '"';
}

class Dump {
 public:
  void table(std::string_view name) { (text_ += name) += '\n'; }
  void row(const std::string& text) {
    if (!full()) ((text_ += "  ") += text) += '\n';
  }
  // A session made to share its notes among thousands of clips would print them again for each; no real one comes near.
  bool full() const { return text_.size() > kMost; }
  // Values of a row: by name, left out at rest.
  static std::string field(std::string_view name, std::int64_t value, std::int64_t rest = 0) {
    return value == rest ? "" : " " + std::string(name) + "=" + std::to_string(value);
  }
  static std::string field(std::string_view name, std::string_view value) {
    return value.empty() ? "" : " " + std::string(name) + "=" + quoted(value);
  }
  static std::string flag(std::string_view name, bool value) { return value ? " " + std::string(name) : ""; }
  std::string take() {
    if (full()) text_ += "cut here\n";
    return std::move(text_);
  }

 private:
  static constexpr std::size_t kMost = std::size_t{64} << 20;
  std::string text_;
};

inline std::string indexed(std::size_t i) { return std::to_string(i) + ":"; }

template <typename Rows, typename Text>
void table_of(Dump& out, std::string_view name, const Rows& rows, Text text) {
  if (rows.empty()) return;
  out.table(name);
  std::size_t i = 0;
  for (const auto& one : rows) out.row(indexed(i++) + text(one));
}

void dump_inserts(Dump& out, const Inserts& inserts);

}  // namespace frt

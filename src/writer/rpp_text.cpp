#include "writer/rpp_text.h"

#include <charconv>
#include <cstdio>
#include <cstring>

#include "base/fixed_point.h"

namespace frt {
namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
// What a number can take beside its fraction digits, an exponent included.
constexpr std::size_t kNumberRoom = kFixedRoom;

char delimiter_for(std::string_view text) {
  for (const char c : {'"', '\'', '`'}) {
    if (text.find(c) == text.npos) return c;
  }
  return '"';
}

// No byte of a session's text may end a line of the project or the project's text itself.
char quoted_byte(char c, char delimiter) {
  if (c == delimiter) return '_';
  return c == '\r' || c == '\n' || c == '\t' || c == '\0' ? ' ' : c;
}

// No name that Pro Tools or a disc holds is near this long. A count gone wrong can make a name of the rest of the
// session, which would be written again for each of its placements.
constexpr std::size_t kLongestText = 8192;

// Without branches, so that compilers make vector code of it: nearly every text passes.
bool ends_no_line(std::string_view text) {
  unsigned found = 0;
  for (const char c : text) found |= static_cast<unsigned>(c == '\r') | (c == '\n') | (c == '\t') | (c == '\0');
  return found == 0;
}

char* put_quoted(char* out, std::string_view text) {
  char delimiter = '"';
  bool holds_delimiter = text.find(delimiter) != text.npos;
  if (holds_delimiter) {
    delimiter = delimiter_for(text);
    holds_delimiter = text.find(delimiter) != text.npos;
  }
  *out++ = delimiter;
  if (!holds_delimiter && ends_no_line(text)) {
    out += text.copy(out, text.size());
  } else {
    for (const char c : text) *out++ = quoted_byte(c, delimiter);
  }
  *out++ = delimiter;
  return out;
}

std::size_t digits_room(int digits) { return kNumberRoom + static_cast<std::size_t>(digits > 0 ? digits : 0); }

}  // namespace

std::string quote_rpp_string(std::string_view text) {
  text = text.substr(0, kLongestText);
  std::string out(text.size() + 2, '\0');
  put_quoted(out.data(), text);
  return out;
}

std::string make_guid(std::uint32_t seed) {
  const std::uint32_t a = seed * 0x9E3779B1u + 0x9E3779B9u;
  const std::uint32_t b = a * 0x85EBCA77u, c = a * 0x218A205Bu, d = a * 0x9C6B79B5u;
  return format_text("{%08X-%04X-%04X-%04X-%04X%08X}", a, b >> 16, b & 0xFFFF, c >> 16, c & 0xFFFF, d);
}

ProjectText::ProjectText(TextTarget& target) : target_(target), buffer_(kBufferSize, '\0') {}

ProjectText::~ProjectText() { flush(); }

bool ProjectText::flush() {
  if (used_ > 0 && good_) good_ = target_.write(buffer_.data(), used_);
  used_ = 0;
  return good_;
}

// A place for n bytes at the buffer's used end.
char* ProjectText::room(std::size_t n) {
  if (n > buffer_.size() - used_) {
    flush();
    if (n > buffer_.size()) buffer_.resize(n);
  }
  return buffer_.data() + used_;
}

void ProjectText::print(const char* format, ...) {
  std::va_list values, again;
  va_start(values, format);
  va_copy(again, values);
  const int n = std::vsnprintf(buffer_.data() + used_, buffer_.size() - used_, format, values);
  if (n > 0) {
    const auto length = static_cast<std::size_t>(n);
    if (length >= buffer_.size() - used_) {  // cut: the text and its final zero byte did not fit
      char* out = room(length + 1);
      std::vsnprintf(out, length + 1, format, again);
    }
    used_ += length;
  }
  va_end(again);
  va_end(values);
}

ProjectText& ProjectText::text(std::string_view piece) {
  if (piece.size() > buffer_.size()) {
    flush();
    if (good_) good_ = target_.write(piece.data(), piece.size());
    return *this;
  }
  if (!piece.empty()) std::memcpy(room(piece.size()), piece.data(), piece.size());
  used_ += piece.size();
  return *this;
}

ProjectText& ProjectText::fixed(double value, int digits) {
  char* out = room(digits_room(digits));
  used_ += static_cast<std::size_t>(put_fixed(out, value, digits) - out);
  return *this;
}

ProjectText& ProjectText::general(double value, int digits) {
  const std::size_t most = digits_room(digits);
  char* out = room(most);
  used_ +=
      static_cast<std::size_t>(std::to_chars(out, out + most, value, std::chars_format::general, digits).ptr - out);
  return *this;
}

ProjectText& ProjectText::integer(long long value) {
  char* out = room(kNumberRoom);
  used_ += static_cast<std::size_t>(std::to_chars(out, out + kNumberRoom, value).ptr - out);
  return *this;
}

ProjectText& ProjectText::quoted(std::string_view value) {
  value = value.substr(0, kLongestText);
  char* out = room(value.size() + 2);
  used_ += static_cast<std::size_t>(put_quoted(out, value) - out);
  return *this;
}

}  // namespace frt

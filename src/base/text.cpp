#include "base/text.h"

#include <algorithm>
#include <cstdio>

namespace frt {

std::string format_text_v(const char* format, std::va_list values) {
  std::va_list again;
  va_copy(again, values);
  char small[512];
  const int n = std::vsnprintf(small, sizeof small, format, values);
  std::string out;
  if (n >= 0 && static_cast<std::size_t>(n) < sizeof small) {
    out.assign(small, static_cast<std::size_t>(n));
  } else if (n > 0) {
    out.resize(static_cast<std::size_t>(n));
    std::vsnprintf(out.data(), out.size() + 1, format, again);
  }
  va_end(again);
  return out;
}

std::string format_text(const char* format, ...) {
  std::va_list values;
  va_start(values, format);
  std::string out = format_text_v(format, values);
  va_end(values);
  return out;
}

std::string lower_ascii(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return out;
}

std::size_t last_separator(std::string_view path) { return path.find_last_of("/\\"); }

std::string folder_of(std::string_view path) {
  const std::size_t at = last_separator(path);
  return at == path.npos ? "." : std::string(path.substr(0, at));
}

namespace {
std::size_t extension_at(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const std::size_t separator = last_separator(path);
  if (dot == path.npos || (separator != path.npos && separator > dot)) return path.size();
  return dot;
}
}  // namespace

std::string without_extension(std::string_view path) { return std::string(path.substr(0, extension_at(path))); }
std::string extension_of(std::string_view path) { return std::string(path.substr(extension_at(path))); }

}  // namespace frt

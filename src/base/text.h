// Small text helpers without session knowledge: checked formatting, case, path ends.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#define FRT_PRINTF(format_index, first_value) __attribute__((format(printf, format_index, first_value)))

namespace frt {

// A printf format and its values as text, of any length.
std::string format_text(const char* format, ...) FRT_PRINTF(1, 2);
std::string format_text_v(const char* format, std::va_list values) FRT_PRINTF(1, 0);

// ASCII letters lowered, all else as it is.
std::string lower_ascii(std::string_view text);

// The position of the last "/" or "\\" of a path; npos if it holds none.
std::size_t last_separator(std::string_view path);

// Everything before the last separator; "." if there is none.
std::string folder_of(std::string_view path);

// The path with everything from its last "." on cut, unless a separator follows that dot.
std::string without_extension(std::string_view path);
// From that dot on, or empty.
std::string extension_of(std::string_view path);

inline bool contains(std::string_view text, std::string_view part) { return text.find(part) != text.npos; }

}  // namespace frt

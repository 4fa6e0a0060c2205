#include "report/note_row.h"

#include "base/text.h"
#include "run/text_output.h"

namespace frt {
namespace {

std::string formatted_value(const char* conversion, const std::string& value) {
  return format_text(conversion, value.c_str());
}
std::string formatted_value(const char* conversion, std::string_view value) {
  return format_text(conversion, std::string(value).c_str());
}
template <typename T>
std::string formatted_value(const char* conversion, T value) {
  return format_text(conversion, value);
}

}  // namespace

std::string Value::formatted(const std::string& conversion, const Told& told) const {
  return std::visit(
      [&](auto source) {
        if constexpr (std::is_same_v<decltype(source), const char*>) {
          return formatted_value(conversion.c_str(), source);
        } else {
          return formatted_value(conversion.c_str(), source(told));
        }
      },
      source_);
}

void Note::print(const Told& told) const {
  if (function_) {
    function_(told);
  } else if (names_) {
    print_names(names_(told));
  } else if ((!count_ || count_(told) > 0) && when_.holds(told)) {
    print_text("%s", formatted(told).c_str());
  }
}

void Note::print_names(const NameVector& names) const {
  if (names.empty()) return;
  if (form_ != NameList::kCommas) {
    print_text(text_, count_of(names), joined_names(names, form_).c_str());
    return;
  }
  for (TextParts parts(text_); !parts.done();) {
    const TextPart part = parts.next();
    if (part.type == "d") {
      print_text("%d", count_of(names));
    } else if (part.type == "s") {
      bool first = true;
      for (const std::string& name : names) {
        print_text("%s", name_in_list(name, form_, first).c_str());
        first = false;
      }
    } else {
      print_text("%s", std::string(part.text).c_str());
    }
  }
}

std::string Note::formatted(const Told& told) const {
  if (number_of_values_ == 0) return text_;
  std::string out;
  std::size_t next = 0;
  for (TextParts parts(text_); !parts.done();) {
    const TextPart part = parts.next();
    if (part.type.empty()) {
      out += part.text;
    } else {
      out += values_[next++].formatted(std::string(part.text), told);
    }
  }
  return out;
}

}  // namespace frt

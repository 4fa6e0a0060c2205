// The parts of a printf text: the compiler checks by them that a row's text takes its values, and the row prints
// by them.
#pragma once

#include <cstddef>
#include <string_view>

namespace frt {

struct TextPart {
  std::string_view text;  // a conversion as it stands, such as "%03ld", or what prints as it is
  std::string_view type;  // of a conversion its length and letter, such as "ld"; empty for plain text
};

class TextParts {
 public:
  constexpr explicit TextParts(std::string_view text) : rest_(text) {}

  constexpr bool done() const { return rest_.empty(); }

  constexpr TextPart next() {
    if (rest_.front() != '%') return {take(rest_.find('%')), {}};
    if (rest_.starts_with("%%")) {
      take(1);
      return {take(1), {}};
    }
    std::size_t at = skip(1, "-+ #0");
    at = skip(at, kDigits);
    if (rest_.substr(at).starts_with('.')) at = skip(at + 1, kDigits);
    const std::size_t type = at;
    const std::string_view text = take(skip(type, "l") + 1);
    // A text that ends inside a conversion has one of no known type.
    return {text, type < text.size() ? text.substr(type) : text};
  }

 private:
  static constexpr std::string_view kDigits = "0123456789";

  constexpr std::size_t skip(std::size_t at, std::string_view what) const {
    const std::size_t behind = rest_.find_first_not_of(what, at);
    return behind == rest_.npos ? rest_.size() : behind;
  }
  constexpr std::string_view take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

}  // namespace frt

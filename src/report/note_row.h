// One row of the console notes: when it prints, its text, and its values.
//
// Texts are printf formats. Each form checks at compile time that its text takes exactly the values that the form
// prints, so a row with a wrong conversion doesn't compile.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>

#include "report/name_list.h"
#include "report/note_text.h"
#include "report/note_value.h"
#include "report/told.h"

namespace frt {

class Note {
 public:
  using Count = int (*)(const Told&);
  using Names = const NameVector& (*)(const Told&);
  using Print = void (*)(const Told&);

  // Prints while the count is above 0. The count is the text's first value, those given follow.
  template <typename... Values>
  consteval Note(Count count, const char* text, Values... values) : Note(count, always, text, values...) {}
  // The same, if something else holds as well.
  template <typename... Values>
  consteval Note(Count count, Condition when, const char* text, Values... values)
      : when_(when),
        count_(count),
        text_(text),
        values_{Value(count), Value(values)...},
        number_of_values_(1 + sizeof...(values)) {
    check_values();
  }
  // Prints while there are names. Their number and the list are the text's values.
  consteval Note(Names names, NameList form, const char* text) : names_(names), form_(form), text_(text) {
    check_names();
  }
  // Prints with a switch given or anything else that holds; `always` does.
  template <typename... Values>
  consteval Note(Condition when, const char* text, Values... values)
      : when_(when), text_(text), values_{Value(values)...}, number_of_values_(sizeof...(values)) {
    check_values();
  }
  // Prints what the function finds to print, where no text with its values does.
  consteval Note(Print function) : function_(function) {}

  void print(const Told& told) const;

 private:
  static constexpr std::size_t kMostValues = 6;

  // A text without values prints as it stands, so "%%" has no place in it.
  consteval void check_values() const {
    if (number_of_values_ == 0 && std::string_view(text_).find('%') != std::string_view::npos)
      throw "a text without values holds a conversion";
    std::size_t next = 0;
    for (TextParts parts(text_); !parts.done();) {
      const TextPart part = parts.next();
      if (part.type.empty()) continue;
      if (next == number_of_values_) throw "the text has more conversions than the row has values";
      if (!values_[next++].fits(part.type)) throw "a conversion is not that of its value";
    }
    if (next != number_of_values_) throw "the text lacks a conversion";
  }
  consteval void check_names() const {
    std::size_t next = 0;
    for (TextParts parts(text_); !parts.done();) {
      const TextPart part = parts.next();
      if (part.type.empty()) continue;
      if (next > 1 || part.text != (next == 0 ? "%d" : "%s")) throw "a note of names takes their number and the list";
      ++next;
    }
    if (next != 2) throw "the text lacks a conversion";
  }

  void print_names(const NameVector& names) const;
  std::string formatted(const Told& told) const;

  Condition when_;
  Count count_ = nullptr;
  Names names_ = nullptr;
  NameList form_ = NameList::kLines;
  Print function_ = nullptr;
  const char* text_ = nullptr;
  std::array<Value, kMostValues> values_{};
  std::size_t number_of_values_ = 0;
};

// Rows that print one behind the other.
using NoteGroup = std::span<const Note>;

}  // namespace frt

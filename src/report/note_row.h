// One row of the console notes: when it prints, its text, and where its values come from.
//
// Texts are printf formats. Each form checks at compile time that its text takes exactly the values that the
// form prints, so a row with a wrong conversion doesn't compile.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/notes.h"
#include "run/counters.h"
#include "run/options.h"

namespace frt {

// How a list of names stands in the one "%s" of a note.
enum class NameList {
  kLines,   // each name on a line of its own, indented by six blanks
  kBlanks,  // one blank before each name
  kQuoted,  // in double quotes, with commas between
};
std::string joined_names(const std::vector<std::string>& names, NameList form);

// The list behind a note's own text, piece by piece: " a, b, c".
void print_comma_list(const std::vector<std::string>& names);

class Note {
 public:
  using Count = int RunCounters::*;
  using Names = std::vector<std::string> RunCounters::*;
  using Switch = bool ConversionOptions::*;
  using Print = void (*)(const NotesInput&);

  // Prints while the count is above 0, with the count as its value.
  consteval Note(Count count, const char* text) : count_(count), text_(checked(text, "d")) {}
  // Prints while there are names, with their number and the list as its values.
  consteval Note(Names names, NameList form, const char* text)
      : names_(names), form_(form), text_(checked(text, "ds")) {}
  // Prints with the switch given.
  consteval Note(Switch option, const char* text) : switch_(option), text_(checked(text, "")) {}
  // Prints what the function finds to print: any other condition, any other values.
  consteval Note(Print function) : print_(function) {}

  void print(const NotesInput& in) const;

 private:
  // The text, if its conversions are `wanted` in that order; anything else doesn't compile. "%%" is none of them,
  // and has no place in a text without values, which is printed as it stands.
  static consteval const char* checked(const char* text, std::string_view wanted) {
    std::size_t found = 0;
    for (const char* p = text; *p != '\0'; ++p) {
      if (*p != '%') continue;
      ++p;
      if (*p == '%' && !wanted.empty()) continue;
      if (found == wanted.size() || *p != wanted[found]) throw "the text's conversions are not those of its form";
      ++found;
    }
    if (found != wanted.size()) throw "the text lacks a conversion";
    return text;
  }

  Count count_ = nullptr;
  Names names_ = nullptr;
  NameList form_ = NameList::kLines;
  Switch switch_ = nullptr;
  Print print_ = nullptr;
  const char* text_ = nullptr;
};

}  // namespace frt

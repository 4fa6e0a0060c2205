// Names of plug-ins and of their files, brought to the forms in which they are compared.
#pragma once

#include <string>
#include <string_view>

namespace frt {

// Lower-cased, only "0" to "9" and "a" to "z" of it.
std::string alnum_lower(std::string_view text);

// Without the remarks in parentheses at its end: "Kontakt (Native Instruments) (64 out)" is "Kontakt".
std::string_view bare_name(std::string_view display);

// What stands between the last "(" and the last ")", as alnum_lower; empty where they don't stand so.
std::string maker_of(std::string_view display);

// The file's name without folder and ending, as alnum_lower.
std::string file_stem(std::string_view file);

// REAPER's lists hold "_" for each blank of a file's name. Where `name` is as long as the file's name without its
// ending, every "_" gives way to the name's character there, if that is neither letter nor digit.
std::string repaired_file(std::string_view file, std::string_view name);

}  // namespace frt

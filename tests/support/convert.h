// Converts a session made by SessionBuilder and hands over everything that came out.
#pragma once

#include <string>

#include "run/options.h"
#include "support/session_builder.h"

namespace frt::test {

struct Converted {
  int status = -1;
  std::string project;  // empty if none was written
  std::string console;
};

// Runs a conversion in a folder of its own, gone afterwards; that folder's path reads "<folder>" in the texts.
// Session path and output path of the options are filled here.
Converted convert(const SessionBuilder& session, ConversionOptions options = {});

}  // namespace frt::test

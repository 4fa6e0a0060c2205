// Which Pro Tools saved the session.
#pragma once

#include <string_view>

#include "image/blocks.h"

namespace frt {

// Texts are views of the image.
struct SavedBy {
  std::string_view product;  // the text that names Pro Tools, or empty
  std::string_view version;  // digits and dots, or empty
  int version_major = -1;    // the number before the first ".", -1 if none was read
  int version_minor = 0;     // the number behind it

  // Pro Tools draws in its Dark theme by default from 2020.11 on; a session that doesn't say counts as new.
  bool dark_by_default() const;
};

// From the session's first kilobyte, else from its block that names the product. Empty where the session doesn't say.
SavedBy read_saved_by(const SessionImage& image);

}  // namespace frt

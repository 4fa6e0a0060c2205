// Strip wrappers: each holds a strip row and, behind it, the playlists of its track and whether the strip is active.
#pragma once

#include <vector>

#include "image/blocks.h"
#include "image/first_fit.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The row that stands in a wrapper; null if none does. `rows` are in file order.
const StripRow* row_in(const FlatBlock& wrapper, const std::vector<StripRow>& rows);

// The block behind a wrapper's word of activity.
class ActivityMarks {
 public:
  explicit ActivityMarks(const SessionImage& image);
  // The first one in the wrapper; null for none.
  const FlatBlock* in(const FlatBlock& wrapper);

 private:
  FirstFit marks_;
};

// Current and original names of the rows whose wrapper says that the strip's voice is off, in file order; a name can
// repeat.
std::vector<std::string_view> read_voice_off_names(const SessionImage& image, const std::vector<StripRow>& rows);

}  // namespace frt

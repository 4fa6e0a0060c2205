// The colours of clips as they are written, and what is told of them.
#pragma once

#include <cstdint>
#include <set>

#include "run/options.h"
#include "session/session.h"

namespace frt {

struct ClipColorCounts {
  int colored = 0;
  std::set<std::int32_t> indices;     // distinct palette indices of these
  int hand_picked = 0, invented = 0;  // of these: from the palette's lower rows, off the known grid
  int auto_assigned = 0;              // left in their track's colour
  std::set<std::int32_t> auto_assigned_indices;
  int dark_measured = 0, dark_derived = 0;
  int midi_clip_color = 0;  // MIDI clips in Pro Tools' colour for them
  int left_out = 0;         // that would carry a colour, under --no-clip-colors
};

class ClipColors {
 public:
  ClipColors(const Session& session, const ConversionOptions& options);

  // REAPER's colour of a clip, 0 for none, by its palette index (-2 for none).
  std::uint32_t of_midi_clip(std::int32_t index);

  const ClipColorCounts& counts() const { return counts_; }

 private:
  std::uint32_t of_index(std::int32_t index);
  std::uint32_t written(std::uint32_t color);

  bool dark_ = false;
  bool coded_by_channels_ = false;
  bool leave_out_ = false;
  ClipColorCounts counts_;
};

}  // namespace frt

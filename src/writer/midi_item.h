// MIDI clips as REAPER items. What a clip is was decided before; here it is printed.
#pragma once

#include <span>

#include "mix/midi_items.h"
#include "writer/rpp_text.h"

namespace frt {

void write_midi_items(ProjectText& out, std::span<const MidiItemPage> items);

}  // namespace frt

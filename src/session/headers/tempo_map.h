// The session's tempo as stored: the fixed tempo by its signature, and the tempo map.
#pragma once

#include "image/blocks.h"
#include "session/clock.h"

namespace frt {

// The fixed tempo in BPM: the first number behind the tempo signature that is above 20 and below 400;
// `fallback` if the image holds none.
double find_tempo(ByteView image, double fallback);

// The session's tempo map (blocks tagged "Tempo"), indexed for conversions. `sample_rate` in Hz places
// a song start. `tempo_override` in BPM, if above 0, replaces the session's one
// tempo but not the map. Without any tempo record the map is empty and the tempo is find_tempo's, or 120.
TempoMap read_tempo(const SessionImage& image, double sample_rate, double tempo_override);

}  // namespace frt

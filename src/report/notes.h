// The console notes: what a run tells in plain words about what was carried, approximated and lost.
//
// The rows stand in notes/, a file a subject; note_order.cpp says in which order they print.
#pragma once

#include "report/told.h"

namespace frt {

// What can't wait: before the project is opened.
void print_mix_notes(const Told& told);
// From "Read:" to the plug-ins: after the project is closed, before the media step is reported.
void print_notes(const Told& told);
// What the media check found: after the media step is reported.
void print_media_notes(const Told& told);
// After the report stage: long clips, recording format, media folder, privacy.
void print_closing_notes(const Told& told);

}  // namespace frt

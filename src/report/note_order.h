// The order in which the groups of note rows print.
#pragma once

#include <span>

#include "report/note_row.h"

namespace frt {

using NoteOrder = std::span<NoteGroup (*const)()>;

NoteOrder mix_note_order();
NoteOrder run_note_order();
NoteOrder media_note_order();
NoteOrder closing_note_order();

}  // namespace frt

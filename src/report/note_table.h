// The rows of the console notes, in printing order.
#pragma once

#include <span>

#include "report/note_row.h"

namespace frt {

std::span<const Note> run_note_rows();
std::span<const Note> media_note_rows();
std::span<const Note> closing_note_rows();

}  // namespace frt

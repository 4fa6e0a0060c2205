#include "report/notes.h"

#include "report/note_order.h"

namespace frt {
namespace {

void print_groups(NoteOrder order, const Told& told) {
  for (const auto group : order) {
    for (const Note& row : group()) row.print(told);
  }
}

}  // namespace

void print_mix_notes(const Told& told) { print_groups(mix_note_order(), told); }
void print_notes(const Told& told) { print_groups(run_note_order(), told); }
void print_media_notes(const Told& told) { print_groups(media_note_order(), told); }
void print_closing_notes(const Told& told) { print_groups(closing_note_order(), told); }

}  // namespace frt

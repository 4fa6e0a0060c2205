// Frozen tracks.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool delivers_none_frozen(const Told& told) { return told.frozen_tracks_delivered == 0; }

constexpr Note kFreezeRecords[] = {
    {in<&OrderCounts::freeze_records>, delivers_none_frozen,
     "  %d internal freeze record(s) left out (Pro Tools writes these when a\n"
     "      track is frozen). The track itself converts UNFROZEN: original\n"
     "      audio with its plug-ins live and editable.\n"},
    // Frozen tracks delivered.
};

}  // namespace

NoteGroup freeze_records() { return kFreezeRecords; }

}  // namespace frt::notes

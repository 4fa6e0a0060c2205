// Mixer strips and master faders.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool names_came_from_rows(const Told& told) { return told.session.mixer.table.name_scan_count >= 0; }
bool has_master(const Told& told) { return !told.session.mixer.master.name.empty(); }
bool has_several_masters(const Told& told) { return told.session.mixer.master.count > 1; }

constexpr Note kStrips[] = {
    {always, "  %d mixer strips (faders, pans, mute)\n", in<&Told::strips_with_mixer_data>},
    {names_came_from_rows, "  track list taken from the strip rows (name scan found %d of %d)\n",
     in<&StripTable::name_scan_count>, in<&Told::strip_table_size>},
};

constexpr Note kMasterFader[] = {
    {has_master, "  master fader \"%s\" carried onto the REAPER master\n", in<&MasterStrip::name>},
};

constexpr Note kFurtherMasters[] = {
    {has_several_masters,
     "  WARNING: this session has %d MASTER FADERS. REAPER has exactly\n"
     "      one master, so only the first was carried. The others are\n"
     "      NOT in the .rpp -- neither their gain nor their inserts.\n"
     "      Pro Tools also allows them at any width (mono, stereo, LCR,\n"
     "      5.1); anything past stereo is untested here.\n"
     "      If a second master was doing real work, print through it\n"
     "      before converting.\n",
     in<&MasterStrip::count>},
};

}  // namespace

NoteGroup strips() { return kStrips; }
NoteGroup master_fader() { return kMasterFader; }
NoteGroup further_masters() { return kFurtherMasters; }

}  // namespace frt::notes

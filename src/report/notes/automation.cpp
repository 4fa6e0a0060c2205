// Automation: points, dual pan, and the modes that tracks arrive in.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

// Tracks in mode Off stand in this count and list too; they alone don't make it print.
bool has_modes_beside_off(const Told& told) {
  const TrackCounts& counts = told.mix.tracks;
  return counts.tracks_not_in_read > count_of(counts.automation_off_tracks);
}

std::string other_modes(const Told& told) {
  std::string list;
  for (const auto& [name, mode] : told.mix.tracks.other_mode_tracks)
    list += name_in_list(name, NameList::kBlanks, list.empty()) + "=" + std::string(mode);
  return list;
}

constexpr Note kAutomationPoints[] = {
    {in<&EnvelopeCounts::automation_points>, "  %d automation points across %d tracks\n",
     in<&EnvelopeCounts::tracks_with_points>},
};

constexpr Note kDualPan[] = {
    {[](const Told& told) { return told.dual_pan().points; },
     "  %d dual-pan point(s) on %d stereo track(s) (REAPER dual pan)\n",
     [](const Told& told) { return told.dual_pan().tracks; }},
};

constexpr Note kAutomatedTracks[] = {
    {in<&TrackCounts::automated_tracks>,
     "  %d automated track(s) set to Read (Trim/Read would\n"
     "      apply the fader on top of its own automation)\n"},
    {in<&Told::faders_at_unity>,
     "  %d fader(s) parked at unity so the volume envelope alone\n"
     "      carries the level, not the fader times the envelope\n"},
};

constexpr Note kAutomationModes[] = {
    {in<&TrackCounts::automation_off_tracks>, NameList::kBlanks,
     "  %d track(s) have automation mode OFF in Pro Tools:%s\n"
     "      Pro Tools ignores their automation. They arrive in Trim/Read with\n"
     "      every envelope written INACTIVE, so the moves are kept but not\n"
     "      played -- the same thing Pro Tools does.\n"},
    {has_modes_beside_off,
     "  %d track(s) use an automation mode other than Read and arrive in it:%s\n"
     "      (Touch/Latch has no REAPER equivalent and lands on Latch.)\n",
     in<&TrackCounts::tracks_not_in_read>, other_modes},
};

}  // namespace

NoteGroup automation_points() { return kAutomationPoints; }
NoteGroup dual_pan() { return kDualPan; }
NoteGroup automated_tracks() { return kAutomatedTracks; }
NoteGroup automation_modes() { return kAutomationModes; }

}  // namespace frt::notes

// Ticks or samples: what items follow, and how tracks were told apart.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool writes_timebases(const Told& told) {
  const TrackCounts& counts = told.mix.tracks;
  return counts.timebase_time > 0 || counts.timebase_beats > 0 || counts.timebase_beats_position > 0;
}

const char* base_of_all_records(const Told& told) {
  return told.clips.pairing.all_samples ? "sample-based" : "tick-based";
}

constexpr Note kItemTimebase[] = {
    {writes_timebases,
     "  Item timebase written per track: %d Time (sample-based), %d Beats\n"
     "      (tick-based MIDI), %d Beats-position (tick-based audio), so a tempo\n"
     "      edit in REAPER moves what Pro Tools would move.\n",
     in<&TrackCounts::timebase_time>, in<&TrackCounts::timebase_beats>, in<&TrackCounts::timebase_beats_position>},
};

constexpr Note kTrackTimebase[] = {
    {always, "  %d tick-based tracks, %d sample-based\n", in<&PairingCounts::tick_based>,
     in<&PairingCounts::sample_based>},
    {in<&PairingCounts::read_that_way>,
     "      %d of them could not be paired with their own timebase record;\n"
     "      every record in the session says %s, so they were read that way\n",
     base_of_all_records},
    {in<&PairingCounts::judged>, in<&PairingCounts::records_exist>,
     "      %d of them could not be paired with their own timebase record, and\n"
     "      the records disagree, so they were judged by the size of their\n"
     "      positions -- check their timing\n"},
    {in<&PairingCounts::judged>, unless(in<&PairingCounts::records_exist>),
     "      %d of them: this session holds no timebase records at all, so\n"
     "      they were judged by the size of their positions -- check their timing\n"},
};

}  // namespace

NoteGroup item_timebase() { return kItemTimebase; }
NoteGroup track_timebase() { return kTrackTimebase; }

}  // namespace frt::notes

// Tracks, buses and strips wider than stereo.
#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

void print_wide_strips(const Told& told) {
  constexpr std::size_t kMostNames = 8;
  if (told.wide_strips.empty()) return;
  print_text(
      "  WARNING: %d mixer strip(s) are neither mono nor stereo and were\n"
      "      read as mono. Level and mute are right; PAN IS NOT. This is\n"
      "      what a surround or multichannel strip looks like, which this\n"
      "      tool does not convert. Please send the session:\n",
      count_of(told.wide_strips));
  print_first_names(told.wide_strips, kMostNames);
}

constexpr Note kSurroundFolds[] = {
    {in<&FoldCounts::surround_folds>,
     "  %d surround track(s) folded from their Pro Tools legs into one\n"
     "      multichannel track each, the way a stereo pair is folded: one\n"
     "      track, one item, one insert chain, channels in the file's order.\n"
     "      A wide strip's own panner is not carried; a mono or stereo\n"
     "      source panned into a surround bus gets ReaSurroundPan (below).\n"},
};

constexpr Note kSurroundBuses[] = {
    {in<&TrackCounts::surround_aux_widths>,
     "  %d aux(es) taking a surround bus written as wide as that bus, and\n"
     "      the tracks feeding it send every channel, not just the first two.\n"},
    // Panners set, panner automation written.
    {in<&EnvelopeCounts::surround_panner_lanes_left>,
     "  %d surround panner automation lane(s) not written: a stereo source's\n"
     "      panner, or a session older than Pro Tools 2026.\n"},
    // Layouts that cannot be placed.
};

constexpr Note kWideStrips[] = {
    {in<&EnvelopeCounts::surround_pan_points>,
     "  %d surround/multichannel strip(s) carry PAN automation that is NOT\n"
     "      written: a surround strip has no single pan, and its panner lanes\n"
     "      are not named in the session. Volume, trim and mute automation ARE\n"
     "      carried. Please send the session: %s\n",
     kSupportAddress},
    {print_wide_strips},
};

}  // namespace

NoteGroup surround_folds() { return kSurroundFolds; }
NoteGroup surround_buses() { return kSurroundBuses; }
NoteGroup wide_strips() { return kWideStrips; }

}  // namespace frt::notes

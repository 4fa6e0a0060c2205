// Track and clip colours.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool classic_was_chosen_over_dark(const Told& told) {
  constexpr int kClassic = 1;
  const ConversionOptions& options = told.options;
  return options.pt_theme == kClassic && told.session.saved_by.dark_by_default() && !options.no_clip_colors;
}

constexpr Note kColorOptions[] = {
    {in<&ConversionOptions::no_track_colors>,
     "  --no-track-colors: every track is in REAPER's default color; the\n"
     "      session's track colors were left out.\n"},
    {in<&ConversionOptions::no_clip_colors>,
     "  --no-clip-colors: %d clip(s) that would carry a color are drawn\n"
     "      in their track's color instead.\n",
     in<&ItemCounts::uncolored_by_option>},
};

constexpr Note kTrackColors[] = {
    {in<&TrackCounts::colored_tracks>, "  %d track(s) carried a color onto REAPER track colors\n"},
    {in<&TrackCounts::uncolored_tracks>,
     "  %d track(s) have no color set. Pro Tools does not STORE a color\n"
     "      for those -- it draws them from a display setting, so the same\n"
     "      session shows different colors on a machine set up\n"
     "      differently. There is nothing to carry, so they keep REAPER's\n"
     "      own default rather than a color this tool guessed.\n"},
    // Track records off the palette.
};

constexpr Note kColorTheme[] = {
    // Clip colours and the Dark theme.
    {classic_was_chosen_over_dark, "  Clip colors follow Pro Tools' Classic theme, as chosen.\n"},
};

}  // namespace

NoteGroup color_options() { return kColorOptions; }
NoteGroup track_colors() { return kTrackColors; }
NoteGroup color_theme() { return kColorTheme; }

}  // namespace frt::notes

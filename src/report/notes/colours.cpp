// Track and clip colours.
#include <cstdint>
#include <set>
#include <string>

#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool classic_was_chosen_over_dark(const Told& told) {
  constexpr int kClassic = 1;
  const ConversionOptions& options = told.options;
  return options.pt_theme == kClassic && told.session.saved_by.dark_by_default() && !options.no_clip_colors;
}

std::string numbers(const std::set<std::int32_t>& indices) {
  std::string list;
  for (const std::int32_t index : indices) (list += ' ') += std::to_string(index);
  return list;
}

std::string auto_assigned(const Told& told) { return numbers(told.mix.midi.colors.auto_assigned_indices); }
int distinct_colors(const Told& told) { return static_cast<int>(told.mix.midi.colors.indices.size()); }

bool writes_clip_colors(const Told& told) { return !told.options.no_clip_colors; }

bool draws_dark(const Told& told, int theme) {
  const ClipColorCounts& counts = told.mix.midi.colors;
  return writes_clip_colors(told) && told.options.pt_theme == theme && counts.dark_measured + counts.dark_derived > 0;
}
bool dark_was_chosen(const Told& told) {
  constexpr int kDark = 2;
  return draws_dark(told, kDark);
}
bool dark_by_default(const Told& told) {
  constexpr int kFollowSession = 0;
  return draws_dark(told, kFollowSession);
}

constexpr Note kColorOptions[] = {
    {in<&ConversionOptions::no_track_colors>,
     "  --no-track-colors: every track is in REAPER's default color; the\n"
     "      session's track colors were left out.\n"},
    {in<&ConversionOptions::no_clip_colors>,
     "  --no-clip-colors: %d clip(s) that would carry a color are drawn\n"
     "      in their track's color instead.\n",
     in<&Told::uncolored_clips>},
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
    // The colours of audio clips and of their rows' coding.
    {in<&ClipColorCounts::midi_clip_color>, writes_clip_colors,
     "  %d MIDI clip(s) drawn in Pro Tools' MIDI clip color under this\n"
     "      coding (light blue).\n"},
    {in<&ClipColorCounts::auto_assigned>, writes_clip_colors,
     "  %d clip(s) carry a Pro Tools auto-assigned color (palette index%s)\n"
     "      whose clip shade has not been measured from Pro Tools. They are\n"
     "      left in their track's color rather than given a guessed one.\n",
     auto_assigned},
    {in<&ClipColorCounts::colored>,
     "  %d clip(s) carried a color, %d distinct Pro Tools palette\n"
     "      index(es). Clips sharing an index share a REAPER color, so\n"
     "      the GROUPING is exact; the shade is as close as the palette\n"
     "      allows.\n",
     distinct_colors},
    {in<&ClipColorCounts::hand_picked>,
     "      %d of them carry a hand-picked palette color from the lower rows,\n"
     "      written as the palette swatch; Pro Tools draws a clip body paler\n"
     "      than its swatch, so these read stronger in REAPER than there.\n"},
    {in<&ClipColorCounts::invented>,
     "      WARNING: %d clip(s) carry a palette index off the known\n"
     "      grid. They are given a distinct color so the grouping still\n"
     "      transfers, but the shade is invented. Please send the\n"
     "      session in.\n"},
    {dark_was_chosen,
     "  Clip colors follow Pro Tools' Dark theme, as chosen (%d measured,\n"
     "      %d derived).%s\n",
     in<&ClipColorCounts::dark_measured>, in<&ClipColorCounts::dark_derived>,
     [](const Told& told) {
       return std::string(told.session.saved_by.dark_by_default() ? ""
                                                                  : " This session predates the Dark theme (2020.11).");
     }},
    {dark_by_default,
     "  Clip colors follow Pro Tools' Dark theme (%d measured, %d derived),\n"
     "      the default for sessions from Pro Tools 2020.11 on. The theme\n"
     "      is not saved in the session; --pt-theme classic gives the pastels.\n",
     in<&ClipColorCounts::dark_measured>, in<&ClipColorCounts::dark_derived>},
    {classic_was_chosen_over_dark, "  Clip colors follow Pro Tools' Classic theme, as chosen.\n"},
};

}  // namespace

NoteGroup color_options() { return kColorOptions; }
NoteGroup track_colors() { return kTrackColors; }
NoteGroup color_theme() { return kColorTheme; }

}  // namespace frt::notes

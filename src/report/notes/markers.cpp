// Memory locations.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool none_is_colored(const Told& told) {
  const MarkerCounts& counts = told.mix.header.markers;
  return counts.markers + counts.regions > 0 && counts.colored == 0;
}

constexpr Note kMarkers[] = {
    {in<&MarkerCounts::markers>, "  %d memory location(s) written as REAPER markers\n"},
    {in<&MarkerCounts::regions>,
     "  %d written as REAPER REGIONS -- those are Pro Tools\n"
     "      Selection memory locations, which store a time RANGE\n"
     "      rather than a point\n"},
    {in<&MarkerCounts::colored>,
     "      %d of them carried a marker color. A marker Pro Tools\n"
     "      left unset keeps REAPER's default -- the color it shows\n"
     "      for those is generated for display and not stored.\n"},
    {in<&MarkerCounts::unmapped_colors>, NameList::kCommas,
     "      %d marker(s) carry a Pro Tools color this build cannot\n"
     "      map yet, and arrive in REAPER's default color:%s\n"},
    {in<&MarkerCounts::without_time>,
     "  %d memory location(s) have time property NONE and were NOT\n"
     "      written. Those store no timeline position at all -- Pro\n"
     "      Tools does not draw them either, so there is nothing to\n"
     "      place. Their zoom, height and group settings are Pro\n"
     "      Tools view state and have no REAPER equivalent.\n"},
    {none_is_colored,
     "      None carried a stored marker color, so REAPER shows them\n"
     "      in its default color. Pro Tools may still draw them in\n"
     "      colors it generates for display; those are not stored\n"
     "      in the session.\n"},
};

}  // namespace

NoteGroup markers() { return kMarkers; }

}  // namespace frt::notes

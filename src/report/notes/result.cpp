// What the run read, what it wrote, and how much of it.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

long long rate(const Told& told) { return told.session.rate; }

bool says_who_saved_it(const Told& told) { return !told.session.saved_by.version.empty(); }

bool is_outside_tested_versions(const Told& told) {
  const SavedBy& saved_by = told.session.saved_by;
  return saved_by.version_major > 0 && !saved_by.version.starts_with("12.5");
}

constexpr Note kReadAndWritten[] = {
    {unless(says_who_saved_it),
     "\n  Read:  Pro Tools (this session does not record which version saved it), %lld Hz, %g BPM\n", rate,
     in<&TempoMap::session_tempo>},
    {says_who_saved_it, "\n  Read:  %s %s, %lld Hz, %g BPM\n", in<&SavedBy::product>, in<&SavedBy::version>, rate,
     in<&TempoMap::session_tempo>},
    {in<&ConversionOptions::check_only>, "  Not written (--check).\n"},
    {unless(in<&ConversionOptions::check_only>), "  Wrote: %s\n", in<&Told::output_path>},
    {is_outside_tested_versions,
     "  NOTE: the sessions this tool is tested against were all saved\n"
     "      by Pro Tools 12.5. %s is outside that.\n"
     "      Anything it could not read is named above rather than\n"
     "      skipped silently, but please check the result against Pro\n"
     "      Tools before relying on it -- and send the session in\n"
     "      either way.\n",
     in<&SavedBy::version>},
};

constexpr Note kBlankLine[] = {{always, "\n"}};

constexpr Note kTotals[] = {
    {always, "  %d tracks, %d clips, %d MIDI notes\n", in<&Told::tracks_written>, in<&ItemCounts::clips_written>,
     in<&MidiItemCounts::notes>},
};

}  // namespace

NoteGroup read_and_written() { return kReadAndWritten; }
NoteGroup blank_line() { return kBlankLine; }
NoteGroup totals() { return kTotals; }

}  // namespace frt::notes

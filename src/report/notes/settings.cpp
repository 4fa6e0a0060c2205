// The session's setup window: pan law, recording format, timecode, grid.
#include "report/notes/subjects.h"
#include "report/timecode_text.h"

namespace frt::notes {
namespace {

// As stored: 1, 3 and 4 are depths beside the usual one.
constexpr int kUsualPanDepth = 2;
bool has_other_pan_depth(const Told& told) {
  const PanDepth& depth = told.session.headers.settings.pan_depth;
  return depth.was_read && (depth.value == 1 || depth.value == 3 || depth.value == 4);
}
bool has_unknown_pan_depth(const Told& told) {
  const PanDepth& depth = told.session.headers.settings.pan_depth;
  return depth.was_read && !has_other_pan_depth(told) && depth.value != kUsualPanDepth;
}

const RecordingFormat& recording(const Told& told) { return told.session.headers.settings.recording; }
const char* float_mark(const Told& told) { return recording(told).is_float ? " float" : ""; }
bool recording_format_is_written(const Told& told) { return told.recording_depth().has_value(); }
bool leaves_aiff_format(const Told& told) {
  constexpr int kReapersOwn = 24;
  const RecordingFormat& format = recording(told);
  return !recording_format_is_written(told) && format.is_aiff() && format.depth != 0 && format.depth != kReapersOwn;
}
bool leaves_a_depth(const Told& told) {
  return recording(told).depth_read && recording(told).depth_byte > 0 && !recording_format_is_written(told);
}

const TimecodeSettings& timecode_settings(const Told& told) { return told.session.headers.settings.timecode; }
bool timecode_is_written(const Told& told) { return told.timecode().has_value(); }
std::string session_start(const Told& told) { return session_start_text(timecode_settings(told)); }
double project_offset(const Told& told) { return told.timecode()->project_offset; }
bool ruler_differs(const Told& told) {
  return timecode_is_written(told) && !timecode_settings(told).ruler_label.empty();
}
bool ruler_differs_at_30(const Told& told) {
  constexpr int kDrop30 = 8;
  return timecode_is_written(told) && !ruler_differs(told) && timecode_settings(told).rate_code == kDrop30;
}

bool grid_is_written(const Told& told) { return told.grid_quarters().has_value(); }
double grid_quarters(const Told& told) { return *told.grid_quarters(); }
const MusicalStep& nudge(const Told& told) { return told.session.headers.settings.grid.nudge; }
bool leaves_a_nudge(const Told& told) { return grid_is_written(told) && nudge(told).any(); }

constexpr Note kPanLaw[] = {
    {has_other_pan_depth,
     "  Pan law: %.1f dB, read from the session's Pan Depth\n"
     "      setting (Pro Tools' own default is -3.0 dB).\n",
     in<&PanDepth::db>},
    {has_unknown_pan_depth,
     "  *** Pan Depth enum %d is not one this build knows.\n"
     "      PANLAW was written as -3.0 dB, Pro Tools' default.\n"
     "      Check Setup > Pan Depth against REAPER's pan law.\n",
     in<&PanDepth::value>},
};

constexpr Note kRecordingFormat[] = {
    {recording_format_is_written,
     "  Bit depth: %d-bit%s written as REAPER's recording format, so new\n"
     "      recordings in this project match the session's files.\n",
     in<&RecordingFormat::depth>, float_mark},
    {leaves_aiff_format,
     "  Bit depth: %d-bit AIFF session; REAPER's recording format is left at\n"
     "      its default, since only the WAV config is measured.\n",
     in<&RecordingFormat::depth>},
};

constexpr Note kTimecode[] = {
    {timecode_is_written,
     "  Timecode: %s fps, Session Start %s (%.4f s) written as REAPER's\n"
     "      frame rate and project start, so the ruler reads the same timecode.\n",
     in<&TimecodeSettings::rate_label>, session_start, project_offset},
    {ruler_differs, "      REAPER has no %s drop-frame setting; the ruler runs at %s non-drop.\n",
     in<&TimecodeSettings::ruler_label>, in<&TimecodeSettings::ruler_label>},
    {ruler_differs_at_30, "      REAPER has no 30 drop-frame setting; the ruler runs at 30 non-drop.\n"},
};

constexpr Note kGrid[] = {
    {grid_is_written, "  Edit grid written as REAPER's grid (%g of a quarter note).\n", grid_quarters},
    {leaves_a_nudge,
     "      Nudge (%ld| %ld| %03ld) is not carried: REAPER keeps its nudge\n"
     "      amount outside the project file.\n",
     [](const Told& told) { return nudge(told).bars; }, [](const Told& told) { return nudge(told).beats; },
     [](const Told& told) { return nudge(told).ticks; }},
};

constexpr Note kRecordingFormatLeft[] = {
    {leaves_a_depth,
     "  The session records at %d-bit%s. Existing audio is unaffected\n"
     "      (each file states its own depth), but REAPER's own recording\n"
     "      format is left at its default -- set it if you will overdub.\n",
     in<&RecordingFormat::depth_byte>, float_mark},
};

}  // namespace

NoteGroup pan_law() { return kPanLaw; }
NoteGroup recording_format() { return kRecordingFormat; }
NoteGroup timecode() { return kTimecode; }
NoteGroup grid() { return kGrid; }
NoteGroup recording_format_left() { return kRecordingFormatLeft; }

}  // namespace frt::notes

// Audio clips: stretching, fades, gain, locks and sync points.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

constexpr Note kClips[] = {
    // Pitch and warp.
    {always, "  %d clips stretched, %d of them read from the session\n", in<&Told::stretched_clips>,
     in<&Told::stretched_from_session>},
    {always, "  %d fade-ins, %d fade-outs, %d crossfades\n", in<&FadeCounts::fade_ins>, in<&FadeCounts::fade_outs>,
     in<&FadeCounts::crossfades>},
    {always, "  %d clips given clip gain\n", in<&GainCounts::clips>},
    {in<&GainCounts::group_clips>,
     "  %d clip(s) inside a clip group given the group's own clip gain as well,\n"
     "      as Pro Tools plays it.\n"},
    {in<&GainCounts::group_lines>, NameList::kQuotedLines,
     "  WARNING: %d clip(s) sit in a clip group whose own clip gain is a drawn\n"
     "      line, which is NOT carried (a fixed group gain is):%s\n"},
    // Clip loops.
};

constexpr Note kGainLines[] = {
    {in<&ItemCounts::gain_envelopes>,
     "  %d of them carried a clip gain ENVELOPE, written as REAPER\n"
     "      take volume envelopes. Points outside the clip are kept by\n"
     "      interpolating to its edge, as Pro Tools plays them.\n"},
    {in<&GainCounts::count_disagrees>,
     "  WARNING: %d clip gain entr(ies) state a point count that disagrees\n"
     "      with their own length. The length was used, because the walk to\n"
     "      the next entry depends on it, but this session holds a variant of\n"
     "      the clip gain table nobody has seen. The gain on those clips may\n"
     "      be wrong. Please send the session in.\n"},
};

constexpr Note kClipLocks[] = {
    {in<&ItemCounts::locked_clips>,
     "  %d clip(s) were locked in Pro Tools and are LOCKED in REAPER. REAPER\n"
     "      has one item lock, so a clip that was only Time-locked (kept in\n"
     "      place but still editable) is locked for edits as well.\n"},
};

constexpr Note kSyncPoints[] = {
    {in<&ItemCounts::sync_point_clips>,
     "  %d clip(s) carry a sync point and are placed by it, as Pro Tools\n"
     "      places them: the clip starts that far before its stored position\n"},
    {in<&ClipCounts::sync_points_unmatched>,
     "  WARNING: this session has clips with sync points that could not be\n"
     "      matched to their placements; those clips may sit late by the\n"
     "      distance to their sync point. Please send the session in.\n"},
};

constexpr Note kFades[] = {
    {in<&DeletedCounts::fade_clips_dropped>, "  %d fade references dropped as clips\n"},
    {in<&FadeCounts::unbound>, "  %d fades sat on no kept clip edge\n"},
    {in<&FadeCounts::not_understood>, "  %d fade records not understood\n"},
    {in<&FadeCounts::s_curves>, "  %d S-curve fade(s) written as REAPER's S shape (5.1)\n"},
};

}  // namespace

NoteGroup clips() { return kClips; }
NoteGroup gain_lines() { return kGainLines; }
NoteGroup clip_locks() { return kClipLocks; }
NoteGroup sync_points() { return kSyncPoints; }
NoteGroup fades() { return kFades; }

}  // namespace frt::notes

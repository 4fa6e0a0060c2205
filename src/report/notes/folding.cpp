// What became of the session's per-leg tracks and of its playlists: folds, lanes, what was set aside.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

constexpr Note kOrphanPlaylists[] = {
    {in<&TrackCounts::orphan_playlists>,
     "  %d alternate playlist(s) could not be matched to a parent track by\n"
     "      name and arrive as their own tracks, MUTED -- Pro Tools plays one\n"
     "      playlist per track, so these never sounded there either. Unmute\n"
     "      one in REAPER to audition it.\n"},
};

constexpr Note kFoldedTracks[] = {
    {in<&FoldCounts::owner_matches>, "  %d alternate playlists matched to their parent track\n"},
    {in<&FoldCounts::stereo_merges>, "  %d Pro Tools stereo track(s) merged from split mono\n"},
};

constexpr Note kFixedLanes[] = {
    {in<&Told::lanes>, "  %d written as REAPER fixed lanes\n"},
};

constexpr Note kSetAside[] = {
    {in<&DeletedCounts::deleted>, in<&ConversionOptions::recover_deleted>,
     "  %d deleted clip placement(s) RECOVERED: written as MUTED \"[alt takes]\"\n"
     "      tracks beside their parent, at their original positions, because\n"
     "      --recover-deleted was given. Unmute one to audition it.\n"},
    {in<&DeletedCounts::deleted>, unless(in<&ConversionOptions::recover_deleted>),
     "  %d deleted clip placement(s) are still in this session: edits or takes\n"
     "      removed from a track that Pro Tools keeps in the file for its undo\n"
     "      queue and cannot show after a reopen. Left out, as the author removed\n"
     "      them; --recover-deleted brings them back as muted tracks beside their\n"
     "      parent, at their original positions.\n"},
    {in<&Told::lanes>, in<&ConversionOptions::keep_alt_takes>,
     "  %d alternate playlists kept as lanes (--drop-alt-takes to leave them out)\n"},
    {in<&FoldCounts::alternates_left_out>, unless(in<&ConversionOptions::keep_alt_takes>),
     "  %d alternate playlists set aside (--drop-alt-takes was given)\n"},
};

}  // namespace

NoteGroup orphan_playlists() { return kOrphanPlaylists; }
NoteGroup folded_tracks() { return kFoldedTracks; }
NoteGroup fixed_lanes() { return kFixedLanes; }
NoteGroup set_aside() { return kSetAside; }

}  // namespace frt::notes

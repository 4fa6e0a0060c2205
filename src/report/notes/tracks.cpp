// Tracks: what Pro Tools shows of them, solo, and which of them are written, silenced or left out.
#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

// Where comments go, as --comments says it.
constexpr int kToItems = 0, kToProject = 1;
bool writes_comments(const Told& told, int to) {
  return !told.mix.tracks.commented_tracks.empty() && told.options.comments_mode == to;
}
bool comments_to_items(const Told& told) { return writes_comments(told, kToItems); }
bool comments_to_project(const Told& told) { return writes_comments(told, kToProject); }
bool comments_left_out(const Told& told) {
  return !told.mix.tracks.commented_tracks.empty() && !comments_to_items(told) && !comments_to_project(told);
}

bool has_solo_keeper(const Told& told) { return told.mix.tracks.soloed_and_muted > 0 && told.mix.tracks.solo_keeper; }

std::string clicks_left_out(const Told& told) {
  return joined_names(told.order.click_left_out_names, NameList::kQuoted);
}

void print_clicks_kept(const Told& told) {
  for (const std::string& name : told.order.click_kept) {
    print_text(
        "  \"%s\" holds a Click II but also something else (inserts, sends, clips or\n"
        "      a name another track shares), so the click toggle leaves it in, whole.\n",
        name.c_str());
  }
}

constexpr Note kTrackState[] = {
    {in<&TrackCounts::hidden_tracks>, NameList::kBlanks,
     "  %d track(s) are HIDDEN in Pro Tools and arrive hidden in both REAPER's\n"
     "      track panel and its mixer:%s\n"},
    {in<&TrackCounts::tracks_with_height>,
     "  %d track(s) carry their Pro Tools track HEIGHT, in pixels as Pro Tools\n"
     "      stores it. REAPER raises anything below its own minimum.\n"},
    {in<&TrackCounts::soloed_tracks>, NameList::kBlanks,
     "  %d track(s) are SOLOED in the session and arrive soloed:%s\n"},
    {in<&TrackCounts::solo_safe_tracks>, NameList::kBlanks,
     "  %d track(s) are SOLO SAFE and arrive solo-defeated:%s\n"},
};

constexpr Note kComments[] = {
    {in<&TrackCounts::commented_tracks>, NameList::kBlanks, "  %d track(s) carry a COMMENT in Pro Tools:%s\n"},
    {comments_to_items,
     "      Each arrives as the notes of a small empty item at the start of\n"
     "      its track, named \"Pro Tools comment\". It plays nothing.\n"},
    {comments_to_project,
     "      Each is a \"Track: comment\" line in the project notes window\n"
     "      (View > Project Notes). --comments item puts them on the tracks.\n"},
    {comments_left_out, "      NOT WRITTEN (--comments none).\n"},
};

constexpr Note kSoloedAndMuted[] = {
    {in<&TrackCounts::soloed_and_muted>,
     "  %d track(s) were soloed AND muted in Pro Tools, which keeps them silent.\n"
     "      REAPER would play them (a solo overrides a mute there), so they arrive\n"
     "      muted with their solo off.\n"},
    {has_solo_keeper,
     "      Every soloed track was muted, so the track \"Pro Tools solo (the\n"
     "      soloed tracks were muted)\" was added, soloed and empty: it keeps the\n"
     "      other tracks silent the way Pro Tools' solo does. Unsolo it to hear\n"
     "      everything; delete it when you like.\n"},
    {in<&TrackCounts::soloed_with_mute_points>,
     "  %d soloed, muted track(s) with mute automation keep their solo: REAPER\n"
     "      plays a soloed track through its mute, Pro Tools does not.\n"},
};

constexpr Note kSelection[] = {
    {in<&OrderCounts::empty_tracks>, "  %d track(s) had no clips and were written empty, mixer state intact\n"},
    {in<&OrderCounts::click_left_out>, "  %d Click track(s) left out (--no-click):%s\n", clicks_left_out},
    // Hidden and inactive tracks left out or kept.
    {print_clicks_kept},
    {in<&OrderCounts::unmatched_tracks>,
     "  %d track(s) matched no strip row and were appended at the end --\n"
     "      please send this session file, that should not happen\n"},
};

constexpr Note kSilencedTracks[] = {
    {in<&OrderCounts::inactive_tracks>,
     "  %d track(s) were INACTIVE in Pro Tools and are written MUTED --\n"
     "      silent, as they were, with clips and plug-ins intact. Unmute\n"
     "      in REAPER to bring one back.\n"},
    {in<&OrderCounts::voice_off_tracks>,
     "  %d track(s) had VOICE set to OFF in Pro Tools and are\n"
     "      written MUTED -- silent, as they were, with clips and\n"
     "      plug-ins intact. REAPER has no voice limit, so unmute\n"
     "      to bring one back.\n"},
};

constexpr Note kTrackNames[] = {
    {unless(in<&Mixer::names_aligned>),
     "  WARNING: this session holds a track type this build does not\n"
     "      recognize, so CURRENT track names could not be bound and the\n"
     "      ORIGINAL names were kept instead. Track names and playlist\n"
     "      matching in this conversion may be wrong. Please send the\n"
     "      session in -- this is a gap in the tool, not in your session.\n"},
};

}  // namespace

NoteGroup track_state() { return kTrackState; }
NoteGroup comments() { return kComments; }
NoteGroup soloed_and_muted() { return kSoloedAndMuted; }
NoteGroup selection() { return kSelection; }
NoteGroup silenced_tracks() { return kSilencedTracks; }
NoteGroup track_names() { return kTrackNames; }

}  // namespace frt::notes

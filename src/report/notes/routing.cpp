// Sends, outputs and key inputs.
#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

// A list that may name every track of a large session ends at some point.
std::string names_without_output(const Told& told) {
  constexpr std::size_t kMostNames = 12;
  const NameVector& names = told.mix.routing.no_output_names;
  if (names.size() <= kMostNames) return joined_names(names, NameList::kQuoted);
  return joined_names({names.begin(), names.begin() + kMostNames}, NameList::kQuoted) + ", ...";
}

int mismatched_keys(const Told& told) {
  int plugins = 0;
  for (const auto& [strip, count] : told.mix.routing.keys.key_mismatch) plugins += count;
  return plugins;
}

void print_mismatched_keys(const Told& told) {
  if (mismatched_keys(told) == 0) return;
  print_text(
      "  %d sidechained plug-in(s) key off a different source than the key\n"
      "      wired on their track, one that could not be wired itself (or the\n"
      "      second leg of a multi-mono pair), so they hear that key (3/4)\n"
      "      instead of their own:",
      mismatched_keys(told));
  const char* separator = "";
  for (const auto& [strip, count] : told.mix.routing.keys.key_mismatch) {
    print_text("%s %s (%d)", separator, strip.c_str(), count);
    separator = ",";
  }
  print_text("\n");
}

void print_multi_mono_pairs(const Told& told) {
  for (const MultiMonoPair& pair : told.mix.routing.multi_mono_pairs) {
    const KnowledgeRecord* known = told.plugins.lookup(insert_key(*pair.first_leg));
    const std::string& plugin = known ? known->name : pair.first_leg->signature;
    print_text(
        "  NOTE: '%s' carries what looks like ONE unlinked MULTI-MONO\n"
        "    %s: two records, keyed off '%s' and '%s'. It is written\n"
        "    as two stereo plug-ins IN SERIES, which compresses twice --\n"
        "    Pro Tools runs one per channel in parallel. Known gap.\n",
        std::string(pair.strip).c_str(), plugin.c_str(), std::string(pair.first_bus).c_str(),
        std::string(pair.second_bus).c_str());
  }
}

void print_one_sided(const Told& told) {
  const auto& sides = told.session.mixer.one_sided;
  if (sides.empty()) return;
  print_text(
      "  %d track(s) output to ONE channel of a stereo output, so Pro Tools\n"
      "      plays the whole track from that side; written with both pan\n"
      "      knobs hard to that side:\n",
      static_cast<int>(sides.size()));
  for (const auto& [track, side] : sides)
    print_text("      %s (%s)\n", std::string(track).c_str(), side < 0 ? "left" : "right");
}

constexpr Note kMultiMonoPairs[] = {
    {print_multi_mono_pairs},
};

constexpr Note kSends[] = {
    {always, "  %d sends into %d return tracks\n", in<&ReceiveCounts::sends>, in<&MixCounts::return_tracks>},
    {in<&TrackCounts::prefader_faders_down>, NameList::kLines,
     "  %d muted track(s) feed a pre-fader send, and are written UNMUTED with\n"
     "      the fader all the way down:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing; REAPER's\n"
     "      mute would silence them too. With the fader down the send plays\n"
     "      and the track itself is silent, as in Pro Tools.\n"},
    {in<&TrackCounts::prefader_kept_muted>, NameList::kLines,
     "  WARNING: %d muted track(s) feed a pre-fader send but have volume or mute\n"
     "      automation, so they stay muted and the send goes quiet in REAPER:%s\n"
     "      Pro Tools keeps a muted track's pre-fader sends playing.\n"},
};

constexpr Note kOutputs[] = {
    {[](const Told& told) { return count_of(told.mix.routing.no_output_names); },
     "  %d track(s) have NO OUTPUT in Pro Tools, so they reach the mix only through\n"
     "      their sends (or not at all); REAPER's master send is off on them:%s\n",
     names_without_output},
};

constexpr Note kSendSettings[] = {
    {in<&SendCounts::panned>, "      %d send(s) panned off center, carried\n"},
    {in<&ReceiveCounts::sends_off>, "      %d send(s) switched off in Pro Tools, written muted\n"},
    {in<&SendCounts::centered>, NameList::kCommas,
     "  %d stereo track(s) have a send whose two pan knobs are moved off\n"
     "      their defaults; REAPER gives a send one pan knob, so these\n"
     "      arrive centered -- check them:%s\n"},
    {in<&SendCounts::pan_lanes_left>,
     "  %d send pan automation lane(s) NOT carried: the send keeps its\n"
     "      static pan\n"},
    {[](const Told& told) { return told.mix.tracks.receives.sends > 0; },
     "      Follow Main Pan on a send is not read yet: such a send keeps\n"
     "      its own pan setting\n"},
    {in<&ReceiveCounts::bus_feeds>, "  %d track output(s) routed into the aux that takes their bus\n"},
    {in<&SendCounts::to_aux>, "  %d of them routed bus -> aux by the aux's input\n"},
    {in<&SendCounts::matched_leg>, "  %d of those matched a mono leg to its stereo pair\n"},
    {in<&SendCounts::split_pair>,
     "  NOTE: %d send(s) target a stereo bus whose two legs are taken by\n"
     "    DIFFERENT aux tracks. Pro Tools feeds both, one leg each; this\n"
     "    converts to the first. Please send the session in.\n"},
};

constexpr Note kKeyInputs[] = {
    {in<&KeyCounts::wired>, "  %d sidechain key inputs wired to channels 3/4\n"},
    {in<&KeyCounts::more_wired>,
     "  %d more key input(s) wired to channels 5/6 and up, for a second\n"
     "      plug-in on the same track keyed off another source (v256)\n"},
};

constexpr Note kKeysLeft[] = {
    {in<&ConversionOptions::no_sidechain>, "  --no-sidechain: key inputs left unwired\n"},
    {in<&KeyCounts::unresolved>, "  %d sidechain key inputs could not be resolved\n"},
    {print_mismatched_keys},
};

constexpr Note kSendAutomation[] = {
    {in<&ReceiveCounts::send_points>, "  %d send automation points\n"},
};

constexpr Note kOneSided[] = {
    {print_one_sided},
};

}  // namespace

NoteGroup multi_mono_pairs() { return kMultiMonoPairs; }
NoteGroup sends() { return kSends; }
NoteGroup outputs() { return kOutputs; }
NoteGroup send_settings() { return kSendSettings; }
NoteGroup key_inputs() { return kKeyInputs; }
NoteGroup keys_left() { return kKeysLeft; }
NoteGroup send_automation() { return kSendAutomation; }
NoteGroup one_sided() { return kOneSided; }

}  // namespace frt::notes

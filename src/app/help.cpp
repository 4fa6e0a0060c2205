#include "app/help.h"

#include <string_view>

namespace frt {
namespace {

constexpr std::string_view kUsage =
    "ferrite: convert a Pro Tools session to a REAPER project\n"
    "\n"
    "  ferrite \"My Song.ptx\" [-o out.rpp] [--tempo N]\n"
    "          [--audio-dir \"Audio Files\"] [--drop-alt-takes]\n"
    "          [--no-fades] [--keep-fade-clips]\n"
    "          [--no-click] [--report]\n"
    "          [--vstini reaper-vstplugins64.ini] [--dump-cache]\n"
    "          [--params ferrite-params.tsv ...] [--want-params FILE]\n"
    "          [--prefer-vst2]\n"
    "          [--skip-bypassed-fx] [--offline-bypassed-fx]\n"
    "          [--pt-theme auto|classic|dark]\n"
    "          [--no-placeholders] [--no-aax-slots]\n"
    "          [--comments project|item|none]\n"
    "  ferrite --learn chain.RfxChain AAXSIGN\n"
    "\n";

constexpr std::string_view kBeforeYouStart =
    "  BEFORE YOU START: Pro Tools does NOT need to be installed, and\n"
    "  neither do its AAX plug-ins -- this reads the session file. But\n"
    "  REAPER cannot load an AAX, so for a plug-in to open there you need\n"
    "  its VST, VST2 or VST3 build installed. Same product, usually the\n"
    "  same installer with a different box selected. An empty slot in REAPER\n"
    "  is almost always that, not a failed conversion -- the settings are\n"
    "  in the project either way and appear once the plug-in is there.\n"
    "\n";

struct HelpRow {
  std::string_view option;
  std::string_view text;  // lines without their indentation
};

constexpr HelpRow kRows[] = {
    {"--check",
     "answer \"will this session convert?\" and write\n"
     "NOTHING. Same reading, same report, no files.\n"
     "Use it before converting, or to see exactly\n"
     "which plug-ins you are missing."},
    {"--skip-bypassed-fx",
     "leave out every plug-in that was bypassed or\n"
     "made inactive in Pro Tools."},
    {"--prefer-vst2",
     "load the VST2 build wherever your REAPER scan\n"
     "has one, falling back to VST3 when it does\n"
     "not. The default is VST3 where both are\n"
     "installed."},
    {"--offline-bypassed-fx",
     "keep them in the chain but OFFLINE: no DSP,\n"
     "no RAM, one click in REAPER to bring back."},
    {"--pt-theme classic",
     "clip colors as Pro Tools' Classic theme draws\n"
     "them. The default follows the session: Dark\n"
     "from Pro Tools 2020.11 on, Classic before."},
    {"--no-placeholders",
     "do not insert plug-ins whose settings could not\n"
     "be read (they go in offline by default)."},
    {"--no-aax-slots",
     "do not leave a named, bypassed slot where an\n"
     "AAX-only plug-in sat. The default leaves one\n"
     "so the chain order survives and you can see\n"
     "exactly where a replacement goes."},
    {"--skip-missing-fx",
     "leave out a plug-in that is not installed for\n"
     "REAPER on this machine (the report names each).\n"
     "The default writes it under its own name."},
    {"--no-click",
     "leave out Click tracks: every track holding\n"
     "only Click II (any number of it), whatever its\n"
     "name, and an empty track named Click. A track\n"
     "holding anything else stays, named in the report."},
    {"--skip-hidden-tracks",
     "leave out tracks hidden in Pro Tools, with their\n"
     "clips and plug-ins, even ones that play. A hidden\n"
     "track a written track needs (an aux it sends or\n"
     "outputs to, a key input, its folder) is kept.\n"
     "The report names every track left out or kept."},
    {"--skip-inactive-tracks",
     "leave out tracks made inactive in Pro Tools\n"
     "(silent there; by default written muted). Kept\n"
     "the same way when a written track needs one."},
    {"--recover-deleted",
     "recover deleted clips and takes: placements the\n"
     "session still holds on no playlist, written as\n"
     "muted tracks beside their parent, at their original\n"
     "positions with their edits. Off by default: the\n"
     "author removed them."},
    {"--comments MODE",
     "where Pro Tools track comments go: project\n"
     "(the project notes window, one line per\n"
     "track; the default), item (a small empty\n"
     "item at the start of each commented track,\n"
     "notes on the item), or none."},
    {"--keep-frozen",
     "deliver a track frozen in Pro Tools frozen in\n"
     "REAPER: Pro Tools' own render plays, locked, and\n"
     "Track > Unfreeze gives back the source clips and\n"
     "plug-ins. Off: frozen tracks convert unfrozen."},
    {"--keep-inaudible-midi",
     "play the MIDI Pro Tools silences: notes and\n"
     "controllers outside a clip's boundary are written\n"
     "unmuted (by default they are kept, muted)."},
    {"--truncate-midi-to-clip",
     "cut notes at the clip edge. By default a note\n"
     "rings its full length past the edge, as Pro\n"
     "Tools plays it; the notes are not shortened\n"
     "either way, only the item."},
    {"--no-stand-ins",
     "leave Avid's own plug-ins as named, switched-off\n"
     "slots instead of REAPER's stock equivalents: EQ3\n"
     "7-Band, Dyn3 Compressor/Limiter and Expander/Gate,\n"
     "Channel Strip, and Trim's gain and one-sided\n"
     "polarity. Clip Effects are not plug-ins and still\n"
     "carry."},
    {"--progress",
     "for the app: on stderr, one line per stage\n"
     "(\"progress 2/6 tracks\") while converting, then\n"
     "\"progress 6/6 done\" and one summary line\n"
     "(\"summary tracks=.. clips=.. notes=.. fx=..\n"
     "written=.. needs_look=..\"). Stdout is unchanged.\n"
     "When something went wrong on this tool's side,\n"
     "\"problem kind=<kind> <detail>\" comes just before\n"
     "the summary, which then ends \"problem=1\"."},
    {"--no-track-colors", "leave every track in REAPER's default color."},
    {"--no-clip-colors", "leave clips in their track's color."},
    {"--tempo-ramps [ramps|steps]",
     "write each drawn tempo ramp as one REAPER linear\n"
     "tempo point instead of the steps Pro Tools stores.\n"
     "Beat-anchored things after a ramp (bar lines,\n"
     "tick-based items, MIDI notes) move by a few ms,\n"
     "which the report prints; the default (steps)\n"
     "keeps every position exactly as computed."},
    {"--prefer-clap",
     "use a plug-in's CLAP build where REAPER has one AND\n"
     "its settings can be carried to it; otherwise the\n"
     "VST build keeps them and the report says so."},
    {"--usage-json FILE",
     "also write an anonymous summary of this run to\n"
     "FILE (counts, plug-in names and how each one\n"
     "converted; no names of yours, no paths). This\n"
     "program sends nothing; the app sends the file\n"
     "only for people who switched usage summaries on."},
    {"--usage-shared",
     "the report's PRIVACY paragraph says that summary\n"
     "is being shared (the app passes this with it)."},
    {"--predict",
     "accepted and ignored: since v194 every plug-in\n"
     "the converter can name is tried, including ones\n"
     "no rule was written for, and the report names\n"
     "every one whose settings were predicted."},
    {"--no-kontakt-state",
     "insert Kontakt without its settings (they are\n"
     "written by default; --kontakt-state is the\n"
     "default spelled out)."},
    {"--keep-plugin-midi",
     "keep the MIDI trigger of FabFilter Pro-C 2 and\n"
     "Saturn 2 as saved. By default it is switched\n"
     "off on tracks that carry MIDI, where REAPER\n"
     "would feed the track's notes to the plug-in."},
    {"--no-sidechain", "leave out sidechain (key input) routing."},
    {"--no-stretch", "ignore elastic audio: clips play unstretched."},
    {"--list",
     "print the session's tempo, sample rate, tracks\n"
     "and buses."},
    {"--dump-cc",
     "print the decoded MIDI controller streams\n"
     "(for bug reports)."},
    {"--pause / --no-pause",
     "hold the window open when finished. On\n"
     "Windows this is on by default (so a\n"
     "drag-and-drop run stays readable); on\n"
     "macOS and Linux it is off."},
    {"--report",
     "also write a conversion report (.txt) next to\n"
     "the .rpp: track list, plug-ins, what needs a look."},
    {"--learn",
     "teach this program a plug-in from a REAPER\n"
     ".RfxChain export holding that one plug-in.\n"
     "AAXSIGN is the 8-character signature this\n"
     "program reports for it. Written to\n"
     "ferrite-plugins.txt beside this program."},
};

constexpr std::string_view kDropHint = "\nOr drag a .ptx file onto this program.\n\n";

constexpr std::size_t kTextColumn = 25;     // blanks before the text of an entry
constexpr std::size_t kLongestBeside = 22;  // a longer option has its line to itself

}  // namespace

std::string help_text() {
  const std::string margin(kTextColumn, ' ');
  std::string out(kUsage);
  out += kBeforeYouStart;
  for (const HelpRow& row : kRows) {
    out += "  ";
    out += row.option;
    if (row.option.size() <= kLongestBeside) {
      out.append(kTextColumn - 2 - row.option.size(), ' ');
    } else {
      out += '\n' + margin;
    }
    for (const char c : row.text) {
      out += c;
      if (c == '\n') out += margin;
    }
    out += '\n';
  }
  out += kDropHint;
  return out;
}

}  // namespace frt

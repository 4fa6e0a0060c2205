// Which track feeds which: from the session's rows, routes and plug-ins to the lines of the receiving tracks.
#include "mix/routing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "mix/track_page.h"
#include "support/project_text.h"
#include "writer/track_block.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;

// Rows with a written track each, and the buses between them.
struct Scene {
  Session session;
  Mixer& mixer = session.mixer;
  std::vector<OutputTrack> tracks;
  TrackFacts facts;
  MixTables tables;
  ConversionOptions options;
  RoutingCounts counts;
  TrackCounts track_counts;
  std::deque<std::string> names;

  std::string_view keep(std::string name) { return names.emplace_back(std::move(name)); }
  OutputTrack& track(std::string name, std::string pt_name) {
    OutputTrack& track = tracks.emplace_back();
    track.name = std::move(name), track.pt_name = std::move(pt_name);
    return track;
  }
  // A row alone.
  TrackRouting& row(std::string name, std::string output = "") {
    TrackRouting& row = mixer.routing.emplace_back();
    row.name = row.display_name = keep(std::move(name));
    row.output = keep(std::move(output));
    return row;
  }
  TrackRouting& add(std::string name, std::string output = "") {
    track(name, name);
    return row(std::move(name), std::move(output));
  }
  static std::uint32_t id_of(std::string_view name) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>{}(name));
  }
  void bus(const std::string& name, std::vector<std::uint16_t> channels, std::uint8_t kind = Route::kBus) {
    mixer.routes.push_back({id_of(name), 7, kind, keep(name), std::move(channels)});
  }
  TrackRouting& aux(std::string name, std::string input, std::string output = "") {
    TrackRouting& row = add(std::move(name), std::move(output));
    row.input_id0 = id_of(input), row.input_id1 = 7, row.input_kind = Route::kBus;
    row.input_bus = keep(std::move(input));
    return row;
  }
  static SendRecord& send(TrackRouting& row, std::string_view bus, double db = 0) {
    SendRecord& send = row.sends.emplace_back();
    send.bus = bus, send.level_db = db, send.post_fader = true;
    return send;
  }
  StripRecord& strip(std::string_view name, bool stereo = false) {
    StripRecord& strip = mixer.strips.emplace_back();
    strip.name = name, strip.has_mixer_data = true, strip.is_stereo = stereo;
    return strip;
  }
  // A plug-in keyed by a bus.
  InsertRecord& insert(std::string_view strip, std::string_view bus) {
    const auto id = static_cast<std::uint16_t>(mixer.key_buses.size());
    mixer.key_buses[id] = bus;
    mixer.inserts.strips[strip].push_back(static_cast<std::uint32_t>(mixer.inserts.records.size()));
    InsertRecord& insert = mixer.inserts.records.emplace_back();
    insert.signature = "AbcdComp", insert.key_id = id;
    return insert;
  }

  std::string written() {
    Routing routing = route_tracks(mixer, tracks, options);
    counts = std::move(routing.counts);
    std::vector<std::string_view> returns;
    for (const auto& [name, index] : routing.return_index) returns.push_back(name);
    const Trims trims;
    TrimPolarity polarity(trims);
    TrackPages made = make_track_pages(session, bind_tracks(session, tracks, facts, returns), tracks, routing, tables,
                                       polarity, options);
    track_counts = made.counts;
    return test::written_by([&](ProjectText& out) {
      write_tracks(out, made.pages, nullptr);
      write_return_tracks(out, made.returns);
    });
  }
  // A line a track: "-" if it doesn't play to the master, its channels unless 2, then what each receive holds up to
  // its tail, in the order of the lines.
  std::string fed() {
    std::string text;
    const std::string project = written();
    for (std::size_t at = project.find("  <TRACK"); at < project.size();) {
      const std::size_t end = std::min(project.find("\n  >\n", at) + 5, project.size());
      const std::string_view block = std::string_view(project).substr(at, end - at);
      text += (text.empty() ? "" : "\n") + lines_of(block, "NAME")[0];
      if (lines_of(block, "MAINSEND")[0] == "0 0") text += " -";
      if (const std::string channels = lines_of(block, "NCHAN")[0]; channels != "2") text += " " + channels + "ch";
      for (const std::string& line : lines_of(block, "AUXRECV")) text += " | " + line.substr(0, line.find(" 31:U"));
      at = end;
    }
    return text;
  }
};

// ---- buses ----

TEST(Buses, ResolveByTheAuxInputThenByTheirChannels) {
  Scene s;
  s.bus("Verb", {1, 2}), s.bus("Verb.L", {1}), s.bus("Pair", {3, 4}), s.bus("Twice", {5, 6}), s.bus("Twice", {7, 8});
  s.bus("Left", {3}), s.bus("Right", {4}), s.bus("Nobody's", {9}), s.bus("Out", {1, 2}, 1);
  s.aux("Verb aux", "Verb"), s.aux("Left aux", "Left"), s.aux("Right aux", "Right"), s.aux("Twice aux", "Twice");
  const BusMaps maps = build_bus_maps(s.mixer.routes, s.mixer.routing);
  std::string text;
  for (const char* bus : {"Verb", "Verb.L", "Pair", "Right", "Twice", "Nobody's", "Out", "Unknown"}) {
    const ResolvedBus resolved = resolve_bus(maps, bus);
    text += std::string(resolved.aux) + format_text(" %d, ", resolved.count);
  }
  EXPECT_EQ(text, "Verb aux 1, Verb aux 1, Left aux 2, Right aux 1, Twice aux 1,  0,  0,  0, ");
}

TEST(Outputs, FeedTheAuxThatTakesTheirBusAndNothingElse) {
  Scene s;
  s.bus("Drums", {1, 2}), s.bus("Loop", {3, 4}), s.bus("Shared", {5, 6}), s.bus("Shared", {7, 8}), s.bus("Free", {9});
  s.add("Kick", "Drums"), s.add("Snare", "Drums"), s.add("To master", "Main"), s.add("To nobody", "Free");
  s.add("By a shared name", "Shared");
  s.aux("Drum bus", "Drums", "Main"), s.aux("Self", "Loop", "Loop"), s.aux("Shared aux", "Shared");
  s.row("Unwritten", "Drums"), s.track("Kick [alt takes]", "Kick").alt_takes = true;
  EXPECT_EQ(s.fed(), R"("Kick" -
"Snare" -
"To master"
"To nobody"
"By a shared name"
"Drum bus" | 0 0 1 0 0 0 0 0 0 | 1 0 1 0 0 0 0 0 0
"Self"
"Shared aux"
"Kick [alt takes]" -)");
  EXPECT_EQ(s.track_counts.receives.bus_feeds, 2);
}

TEST(Outputs, TracksWithoutOneAreClosedAndNamedOnce) {
  Scene s;
  for (const char* name : {"A", "A", "B"}) s.row(name).no_output = true;
  s.track("A (2)", "A"), s.track("C", "C");
  EXPECT_EQ(s.fed(), "\"A (2)\" -\n\"C\"");
  EXPECT_EQ(s.counts.no_output_names, Lines{"A"});
}

TEST(Outputs, WideOnesSendAllTheirChannelsToAnAuxThatIsWideEnough) {
  Scene s;
  s.bus("5.1", {1, 2, 3, 4, 5, 6}), s.bus("LCR", {7, 8, 9}), s.bus("Panned", {1, 2, 3, 4, 5, 6});
  s.add("Six", "5.1"), s.add("Three", "5.1"), s.add("Mono", "5.1"), s.add("Six to LCR", "LCR");
  s.add("By its panner", "Panned");
  s.facts.width = {{"Six", 6}, {"Three", 3}, {"Mono", 1}, {"Six to LCR", 6}};
  s.tables.surround_panners["By its panner"].speakers = 5;
  s.aux("Sub", "5.1"), s.aux("Front", "LCR"), s.aux("Panned aux", "Panned");
  EXPECT_EQ(s.fed(), R"("Six" -
"Three" -
"Mono" -
"Six to LCR" -
"By its panner" - 6ch
"Sub" 6ch | 0 0 1 0 0 0 0 3072 0 | 1 0 1 0 0 0 0 2048 0 | 2 0 1 0 0 0 0 0 0
"Front" 4ch | 3 0 1 0 0 0 0 0 0
"Panned aux" 6ch | 4 0 1 0 0 0 0 3072 0)");
  EXPECT_EQ(s.track_counts.surround_aux_widths, 3);
}

TEST(Outputs, LegsComeOffTheSourcesFurtherPairs) {
  Scene s;
  s.add("Synth"), s.add("Out 3-4"), s.add("Unwritten"), s.tracks.pop_back();
  s.track("Synth [alt takes]", "Synth").alt_takes = true;
  s.mixer.leg_routes = {{0, 1, 3}, {0, 1, 2}, {2, 1, 1}};
  EXPECT_EQ(s.fed(), R"("Synth" 6ch
"Out 3-4" | 0 0 1 0 0 0 0 4 0 | 0 0 1 0 0 0 0 2 0
"Synth [alt takes]" 6ch)");
}

// ---- sends ----

TEST(Sends, GoToTheAuxOrToAReturnTrackOfTheBus) {
  Scene s;
  s.bus("Verb", {1, 2}), s.bus("Verb.L", {1}), s.bus("Split", {3, 4}), s.bus("Sp.L", {3}), s.bus("Sp.R", {4});
  TrackRouting& vox = s.add("Vox");
  Scene::send(vox, "Verb", -20), Scene::send(vox, "Verb.L"), Scene::send(vox, "Split"), Scene::send(vox, "Zeta");
  Scene::send(vox, "Echo").post_fader = false;
  Scene::send(vox, "Legs", 6);                     // no written name, but the name of two tracks in Pro Tools
  Scene::send(s.aux("Verb aux", "Verb"), "Verb");  // to itself
  s.aux("L", "Sp.L"), s.aux("R", "Sp.R");
  s.track("Legs [L]", "Legs"), s.track("Legs [R]", "Legs"), s.track("Takes", "Vox").alt_takes = true;
  s.strip("Vox").muted = true;
  EXPECT_EQ(s.fed(), R"("Vox"
"Verb aux" | 0 0 0.1000000000 0 0 0 0 0 0 | 0 0 1.0000000000 0 0 0 0 0 0
"L" | 0 0 1.0000000000 0 0 0 0 0 0
"R"
"Legs [L]" | 0 0 1.9952623150 0 0 0 0 0 0
"Legs [R]" | 0 0 1.9952623150 0 0 0 0 0 0
"Takes"
"Echo" | 0 3 1.0000000000 0 0 0 0 0 0
"Legs" | 0 0 1.9952623150 0 0 0 0 0 0
"Zeta" | 0 0 1.0000000000 0 0 0 0 0 0)");
  const SendCounts& sends = s.counts.sends;
  EXPECT_EQ(format_text("%d %d %d", sends.to_aux, sends.matched_leg, sends.split_pair), "4 2 1");
  EXPECT_EQ(s.track_counts.receives.sends, 8);
  // Muted, it still feeds a send ahead of its fader.
  EXPECT_EQ(s.track_counts.prefader_faders_down, Lines{"Vox"});
}

TEST(Sends, PanByTheWidthOfTheirSource) {
  const struct {
    const char* what;
    std::optional<bool> stereo;
    int count, left, right;
    const char* pan;  // and "p" counted as panned, "c" told as centred
  } rows[] = {
      {"one knob", false, 1, -50, 0, "0"},
      {"mono", false, 2, -50, 30, "-0.5 p"},
      {"mono, beyond its range", false, 2, 200, 0, "1 p"},
      {"mono in the middle", false, 2, 0, 30, "0"},
      {"stereo at rest", true, 2, -100, 100, "0"},
      {"stereo moved", true, 2, -100, 99, "0 c"},
      {"no strip, one side", std::nullopt, 2, 40, 0, "0.4 p"},
      {"no strip, both sides", std::nullopt, 2, 40, 1, "0 c"},
  };
  for (const auto& row : rows) {
    Scene s;
    TrackRouting& vox = s.add("Vox");
    for (int k = 0; k < 2; ++k) {
      SendRecord& send = Scene::send(vox, "Echo");
      send.pan_count = row.count, send.left_pan = row.left, send.right_pan = row.right;
      send.first_pan_lane.points = send.second_pan_lane.points = {{0, 1}};
    }
    if (row.stereo) s.strip("Vox", *row.stereo);
    const std::string line = lines_of(s.written(), "AUXRECV").at(0);
    std::string pan = line.substr(17, line.find(' ', 17) - 17);
    if (s.counts.sends.panned == 2) pan += " p";
    if (s.counts.sends.centered == Lines{"Vox"}) pan += " c";
    EXPECT_EQ(pan, row.pan) << row.what;
    EXPECT_EQ(s.counts.sends.pan_lanes_left, row.count == 2 ? 2 : 0) << row.what;
  }
}

TEST(Sends, LanesMuteThemOrBecomeEnvelopesOfTheReceivingTrack) {
  Scene s;
  TrackRouting& vox = s.add("Vox");
  SendRecord& off = Scene::send(vox, "Vox aux");
  off.mute_lane.initial = 1;
  SendRecord& moving = Scene::send(vox, "Vox aux");
  moving.mute_lane = {{{48000, 1}}, 0, false};
  moving.volume_lane = {{{24000, -200}}, -60, false};
  s.add("Vox aux");
  s.mixer.rows.emplace_back().current_name = "Vox aux";
  s.mixer.track_rows.emplace_back().automation_mode = AutomationMode::kOff;
  s.session.clock.rate = 48000;
  const std::string text = s.written();
  EXPECT_NE(text.find(R"(    AUXRECV 0 0 1.0000000000 0 1 0 0 0 0 31:U 4177951 -1 ''
    AUXRECV 0 0 1.0000000000 0 0 0 0 0 0 31:U 4177951 -1 ''
    <AUXVOLENV 0
      ACT 0 -1
      VIS 1 1 1
      LANEHEIGHT 0 0
      ARM 0
      DEFSHAPE 0 -1 -1
      PT 0.0000000000 0.501187234 0
      PT 0.5000000000 0.100000000 0
    >
    <AUXMUTEENV 0
      ACT 0 -1
      VIS 1 1 1
      LANEHEIGHT 0 0
      ARM 0
      DEFSHAPE 1 -1 -1
      PT 0.0000000000 1.000000000 1
      PT 1.0000000000 0.000000000 1
    >
)"),
            text.npos)
      << text;
  EXPECT_EQ(s.track_counts.receives.sends_off, 1);
  EXPECT_EQ(s.track_counts.receives.send_points, 2);
}

// Rows, tracks and sends that all bear one name would give the product of their numbers.
TEST(SlowSends, OneNameForAllStaysInBounds) {
  Scene s;
  for (int k = 0; k < 3000; ++k) Scene::send(s.add("Same"), "Same");
  const std::string text = s.written();
  EXPECT_GT(s.track_counts.receives.sends, 1'000'000);
  EXPECT_LT(s.track_counts.receives.sends, 4'000'000);
}

// ---- return tracks ----

TEST(ReturnTracks, BearWhatTheirStripAndRowTell) {
  Scene s;
  for (const char* bus : {"Plain", "Mono", "Stereo"}) Scene::send(s.row("Vox"), bus).post_fader = false;
  s.track("Vox", "Vox");
  StripRecord& mono = s.strip("Mono");
  mono.fader_db = -6, mono.pan = 50, mono.muted = true;
  mono.pan_lane.points = {{0, 10}}, mono.mute_lane.points = {{0, 1}}, mono.trim_lane.points = {{0, 1}};
  StripRecord& stereo = s.strip("Stereo", true);
  stereo.pan = -100, stereo.second_pan = 40, stereo.volume_lane.points = {{0, 10}};
  for (const char* name : {"Mono", "Stereo"}) {
    s.mixer.rows.emplace_back().current_name = name;
    TrackRow& row = s.mixer.track_rows.emplace_back();
    row.visible = false, row.row_height = 30, row.solo = row.solo_safe = Told01::kYes, row.comment = "dry";
  }
  s.mixer.track_rows[1].automation_mode = AutomationMode::kLatch;
  s.tables.groups.masks[GroupLinks::kVolume] = {{"Stereo", 1}};
  s.tables.colors.stored = {{"Mono", 25}};
  s.options.comments_mode = 0;
  const std::string text = s.written();
  const std::size_t at = text.find("\"Mono\"");
  EXPECT_EQ(text.substr(at, text.find("AUXRECV", at) - at), R"("Mono"
    PEAKCOL 33292332
    BEAT -1
    AUTOMODE 1
    VOLPAN 0.501187 0 -1 -1 1
    MUTESOLO 1 2 1
    IPHASE 0
    ISBUS 0 0
    SHOWINMIX 0 0.6667 0.5 0 0.5 0 0 0 0
    FREEMODE 0
    TRACKHEIGHT 30 0 0 0 0 0 0
    INQ 0 0 0 0.5 100 0 0 100
    NCHAN 2
    FX 1
    TRACKID )" + make_guid(60001) + "\n    MAINSEND 1 0\n    ");
  EXPECT_NE(text.find("    <MUTEENV\n", at), text.npos);
  EXPECT_NE(text.find("    <PANENV2\n", at), text.npos);
  EXPECT_EQ(text.find("VOLENV3"), text.npos);
  EXPECT_NE(text.find(make_guid(50002) + "\n    NAME \"Plain\"\n    PEAKCOL 16576\n    BEAT -1\n    AUTOMODE 0\n"
                                         "    VOLPAN 1.000000 0 -1 -1 1\n    MUTESOLO 0 0 0\n"),
            text.npos);
  EXPECT_NE(
      text.find("    AUTOMODE 4\n    VOLPAN 1.000000 -0.3 -1 -1.000000 0.400000\n    MUTESOLO 0 2 1\n    IPHASE 0\n"
                "    ISBUS 0 0\n    PANMODE 6\n    SHOWINMIX 0 0.6667 0.5 0 0.5 0 0 0 0\n    GROUP_FLAGS 1 1\n"),
      text.npos);
  const TrackCounts& counts = s.track_counts;
  EXPECT_EQ(counts.hidden_tracks, (Lines{"Mono", "Stereo"}));
  EXPECT_EQ(format_text("%d %d %d %d %d", counts.automated_tracks, counts.uncolored_tracks, counts.comment_items,
                        counts.envelopes.automation_points, counts.soloed_with_mute_points),
            "2 3 2 3 1");
}

// ---- key inputs ----

// Slot of each keyed insert of a strip, "-" for none, with "!" if it hears its own key.
std::string slots(Scene& s, std::string_view strip) {
  const Routing routing = route_tracks(s.mixer, s.tracks, s.options);
  std::string text;
  for (const std::uint32_t i : s.mixer.inserts.strips[strip]) {
    const InsertRecord& insert = s.mixer.inserts.records[i];
    const auto slot = routing.keys.insert_key_slot.find(&insert);
    text += slot == routing.keys.insert_key_slot.end() ? "-" : std::to_string(slot->second);
    text += routing.keys.keyed_inserts.contains(&insert) ? "! " : " ";
  }
  return text;
}

TEST(KeyInputs, EachBusOfAStripArrivesOnAPairOfItsOwn) {
  Scene s;
  s.bus("Kick", {1}), s.bus("Snare", {2, 3}), s.bus("Bass", {4}), s.bus("Nowhere", {5});
  s.add("Bass"), s.aux("Kick aux", "Kick"), s.aux("Snare aux", "Snare");
  s.insert("Bass", "Nowhere");
  s.insert("Bass", "Kick.X");  // a leg of "Kick"
  s.insert("Bass", "Kick"), s.insert("Bass", "Snare.L1");
  s.insert("Bass", "Nowhere"), s.insert("Bass", "Snare.Left");
  s.insert("Bass", "Snare").key_id = -1;
  // Itself among others, and first of all.
  for (const char* bus : {"Snare", "Kick", "Bass"}) s.insert("Kick aux", bus);
  for (const char* bus : {"Snare", "Kick"}) s.insert("Snare aux", bus);
  EXPECT_EQ(s.fed(), R"("Bass" 6ch | 1 1 1 0 0 0 0 0 2 | 2 1 1 0 0 0 0 0 4
"Kick aux" 8ch | 2 1 1 0 0 0 0 0 2 | 0 1 1 0 0 0 0 0 6
"Snare aux")");
  EXPECT_EQ(slots(s, "Bass"), "- 0 0! 1! - - - ");
  const KeyCounts& keys = s.counts.keys;
  EXPECT_EQ(format_text("%d %d %d", keys.wired, keys.more_wired, keys.unresolved), "3 4 1");
  EXPECT_EQ(keys.key_mismatch, (std::map<std::string, int>{{"Bass", 2}}));
  s.options.no_sidechain = true;
  EXPECT_EQ(s.fed(), "\"Bass\"\n\"Kick aux\"\n\"Snare aux\"");
}

TEST(KeyInputs, AReturnTrackThatOnlyKeysListenToIsClosed) {
  Scene s;
  s.bus("Key", {1}), s.bus("Key wide", {1, 2}), s.bus("Verb", {3, 4}), s.bus("Track", {5}), s.bus("Leg.L", {6});
  TrackRouting& kick = s.add("Kick");
  for (const char* bus : {"Key", "Key wide", "Leg", "Verb"}) Scene::send(kick, bus);
  s.add("Track"), s.add("Bass");
  s.insert("Bass", "Key"), s.insert("Bass", "Track"), s.insert("Bass", "Leg.L");
  s.track("Track [alt takes]", "Track").alt_takes = true;
  EXPECT_EQ(s.fed(), R"("Kick"
"Track"
"Bass" 8ch | 4 1 1 0 0 0 0 0 2 | 1 1 1 0 0 0 0 0 4 | 6 1 1 0 0 0 0 0 6
"Track [alt takes]"
"Key" - | 0 0 1.0000000000 0 0 0 0 0 0
"Key wide" - | 0 0 1.0000000000 0 0 0 0 0 0
"Leg" - | 0 0 1.0000000000 0 0 0 0 0 0
"Verb" | 0 0 1.0000000000 0 0 0 0 0 0)");
}

TEST(KeyInputs, TheSecondLegOfAMultiMonoPairHearsTheFirstOnesKey) {
  Scene s;
  s.bus("K.L", {2}), s.bus("K.R", {1}), s.bus("K", {1, 2}), s.bus("K.R", {8, 9}), s.bus("Other", {5});
  s.add("Bass"), s.aux("Kick", "K");
  s.insert("Bass", "K.L"), s.insert("Bass", "K.R");
  s.insert("Bass", "K.L").signature = "AbcdGate", s.insert("Bass", "Other").signature = "AbcdGate";
  EXPECT_EQ(s.fed(), "\"Bass\" 4ch | 1 1 1 0 0 0 0 0 2\n\"Kick\"");
  ASSERT_EQ(s.counts.multi_mono_pairs.size(), 1U);
  const MultiMonoPair& pair = s.counts.multi_mono_pairs[0];
  EXPECT_EQ(std::string(pair.first_bus) + " " + std::string(pair.second_bus), "K.L K.R");
  EXPECT_EQ(pair.first_leg, &s.mixer.inserts.records[0]);
  EXPECT_EQ(slots(s, "Bass"), "0! - 0! - ");
  EXPECT_EQ(s.counts.keys.key_mismatch.at("Bass"), 2);
}

}  // namespace
}  // namespace frt

// The lines of a track, and which value wins where several speak.
#include "writer/track_block.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/project_text.h"
#include "writer/comments.h"
#include "writer/envelopes.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;
using test::written_by;

class StageTexts final : public frtgui::Progress {
 public:
  bool report(int step, int total, const char* stage) override {
    texts.push_back(format_text("%d/%d %s", step, total, stage));
    return true;
  }
  Lines texts;
};

struct Project {
  ConversionOptions options;
  TempoMap tempo;
  std::vector<StripRecord> strips;
  ByName<TrackRow> rows;
  TrackMaps maps;
  RunCounters counters;
  std::vector<OutputTrack> tracks;
  StageTexts progress;
  // What a test sets in the tables of later passes.
  TrackColors colors;
  TrackGroups groups;
  TrackRoutes routes;
  TrackFolders folders;
  Names wide_strips;
  ByName<SurroundPanner> panners;
  ByName<MidiTrackState> midi_states;
  Names sample_based_midi;

  Project() { options.comments_mode = 1; }
  // One track "T" with its strip.
  explicit Project(const StripRecord& strip) : Project() {
    strips = {strip};
    track("T");
  }

  OutputTrack& track(const std::string& name) { return track(name, name); }
  OutputTrack& track(const std::string& name, const std::string& pt_name) {
    OutputTrack& track = tracks.emplace_back();
    track.name = name;
    track.pt_name = pt_name;
    return track;
  }
  StripRecord& strip(std::string_view name) {
    StripRecord& strip = strips.emplace_back();
    strip.name = name;
    strip.has_mixer_data = true;
    return strip;
  }
  std::string write() {
    const AudioFileFolders files;
    MediaFolders media{"/media", "", files};
    AudioItems items{options, media, 1000.0};
    const StripIndex index = index_strips(strips);
    const WriterTables tables{options, tempo,  1000.0,  index,       rows,    maps,        colors,
                              groups,  routes, folders, wide_strips, panners, midi_states, sample_based_midi};
    return written_by([&](ProjectText& out) { write_tracks(out, tracks, tables, items, counters, &progress); });
  }
  Lines lines(std::string_view word) { return lines_of(write(), word); }
};

AutomationLane lane(std::vector<std::pair<double, double>> points, double initial = 0) {
  AutomationLane lane;
  lane.points = std::move(points);
  lane.initial = initial;
  return lane;
}

StripRecord strip_of(double fader_db, int pan, int second_pan = 0, bool stereo = false) {
  StripRecord strip;
  strip.name = "T";
  strip.has_mixer_data = true;
  strip.fader_db = fader_db;
  strip.pan = pan;
  strip.second_pan = second_pan;
  strip.is_stereo = stereo;
  return strip;
}

StripRecord with_lane(StripRecord strip, AutomationLane StripRecord::*which, int dual_pan = 0) {
  strip.*which = lane({{0, 10}});
  strip.dual_pan = dual_pan;
  return strip;
}

// What stands behind a track's lines: lanes, then envelopes, then the comment's item.
TEST(TrackBlock, LanesThenEnvelopesThenTheComment) {
  StripRecord strip = strip_of(-6, -100, 50, true);
  strip.volume_lane = lane({{500, -60}}, -200);
  Project project(strip);
  project.options.comments_mode = 0;
  project.rows["T"].comment = "DI\r\n>";
  project.rows["T"].automation_mode = 2;
  project.maps.timebase = {{"T", 2}};
  project.tracks[0].lanes = {{"T.01", {}}, {"a \"b\"", {}}};
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "BEAT"), Lines{"2"});
  EXPECT_EQ(lines_of(text, "FREEMODE"), Lines{"2"});
  EXPECT_EQ(text.substr(text.find("    FIXEDLANES")), R"text(    FIXEDLANES 9 0 0 0 0
    LANESOLO 1 0 0 0 0 0 0 0
    ITEMLANES 3
    LANENAME "T" "T.01" 'a "b"'
    <VOLENV2
      ACT 1 -1
      VIS 1 1 1
      LANEHEIGHT 0 0
      ARM 0
      DEFSHAPE 0 -1 -1
      PT 0.0000000000 0.100000000 0
      PT 0.5000000000 0.501187234 0
    >
    <ITEM
      POSITION 0
      SNAPOFFS 0
      LENGTH 2
      LOOP 0
      ALLTAKES 0
      FADEIN 1 0 0 1 0 0 0
      FADEOUT 1 0 0 1 0 0 0
      MUTE 0 0
      IGUID )text" + make_guid(0x7C000001) +
                                                          R"text(
      NAME "Pro Tools comment"
      <NOTES
        |DI
        | >
      >
    >
  >
)text");
  EXPECT_EQ(project.counters.faders_at_unity, 1);
  EXPECT_EQ(project.counters.automated_tracks, 1);
  EXPECT_EQ(project.counters.automation_points, 1);
  EXPECT_EQ(project.counters.timebase_beats_position, 1);
  EXPECT_EQ(project.counters.other_mode_tracks, Lines{" T=Touch"});
  EXPECT_EQ(project.progress.texts, Lines{"3/6 writing 0/1"});
}

// ---- volume and pan ----

TEST(TrackBlock, VolumeAndPan) {
  StripRecord no_data = strip_of(-6, 30);
  no_data.has_mixer_data = false;
  StripRecord dual_at_rest = strip_of(0, -50, 50, true);
  dual_at_rest.dual_pan = 2;
  const struct {
    const char* what;
    StripRecord strip;
    const char* volpan;
  } cases[] = {
      {"mono", strip_of(-6, 30), "0.501187 0.3 -1 -1.000000 1.000000"},
      {"no mixer data", no_data, "1.000000 0 -1 -1.000000 1.000000"},
      {"pan beyond its range", strip_of(0, 250), "1.000000 1 -1 -1.000000 1.000000"},
      {"stereo, narrowed", strip_of(0, -20, 60, true), "1.000000 0.2 -1 -0.200000 0.600000"},
      {"volume points", with_lane(strip_of(-6, 30), &StripRecord::volume_lane), "1.000000 0.3 -1 -1.000000 1.000000"},
      {"pan points", with_lane(strip_of(-6, 30), &StripRecord::pan_lane), "0.501187 0 -1 -1.000000 1.000000"},
      {"mute points", with_lane(strip_of(-6, 30), &StripRecord::mute_lane), "0.501187 0.3 -1 -1.000000 1.000000"},
      {"dual pan moves left", with_lane(strip_of(0, -20, 60, true), &StripRecord::dual_left_lane, 1),
       "1.000000 0.2 -1 -1.000000 1.000000"},
      {"dual pan moves right", with_lane(strip_of(0, -20, 60, true), &StripRecord::right_pan_lane, 1),
       "1.000000 0.2 -1 -1.000000 1.000000"},
      {"dual pan at rest", dual_at_rest, "1.000000 0 -1 -0.500000 0.500000"},
  };
  for (const auto& c : cases) EXPECT_EQ(Project(c.strip).lines("VOLPAN"), Lines{c.volpan}) << c.what;

  Project legs(strip_of(-6, 30));  // a leg written alone keeps its side
  legs.tracks[0].name = "T [L]";
  legs.tracks[0].forced_pan = -1;
  legs.track("T [R]", "T").forced_pan = 1;
  EXPECT_EQ(legs.lines("VOLPAN"), (Lines{"0.501187 -1 -1 -1.000000 1.000000", "0.501187 1 -1 -1.000000 1.000000"}));
}

// Inactive envelopes carry nothing, so the resting pans must; the second track of the row has active ones.
TEST(TrackBlock, ModeOffKeepsTheRestingPansOnTheFirstTrackOfTheRow) {
  Project project(with_lane(strip_of(0, -20, 60, true), &StripRecord::dual_left_lane, 1));
  project.rows["T"].automation_mode = 0;
  project.track("T");
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "VOLPAN"),
            (Lines{"1.000000 0.2 -1 -0.200000 0.600000", "1.000000 0.2 -1 -1.000000 1.000000"}));
  EXPECT_EQ(lines_of(text, "ACT"), (Lines{"0 -1", "0 -1", "1 -1", "1 -1"}));
  EXPECT_EQ(project.counters.automation_off_tracks, Lines{"T"});
  EXPECT_EQ(project.counters.tracks_not_in_read, 1);
}

TEST(TrackBlock, TablesOfRoutesAndGroupsOverrideTheStrip) {
  Project project(strip_of(-6, 30));
  project.groups.vca_master_db = {{"T", -20.0}};
  project.routes.one_sided = {{"T", 1}};
  project.routes.no_main_send = {"T"};
  project.routes.inverted = {"T"};
  project.folders.bus_texts = {"1 1"};
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "VOLPAN"), Lines{"0.100000 0 -1 1.000000 1.000000"});
  EXPECT_EQ(lines_of(text, "PANMODE"), Lines{"6"});
  EXPECT_EQ(lines_of(text, "MAINSEND"), Lines{"0 0"});
  EXPECT_EQ(lines_of(text, "IPHASE"), Lines{"1"});
  EXPECT_EQ(lines_of(text, "ISBUS"), Lines{"1 1"});
}

TEST(TrackBlock, PanModeByStripAndWidth) {
  const struct {
    const char* what;
    bool strip, stereo;
    int width;
    Lines pan_mode;
  } cases[] = {
      {"stereo strip", true, true, 2, {"6"}},
      {"mono strip, mono clips", true, false, 1, {"3"}},
      {"mono strip, two legs", true, false, 2, {}},
      {"mono strip, no clips", true, false, 0, {}},
      {"no strip", false, false, 1, {}},
  };
  for (const auto& c : cases) {
    Project project(strip_of(0, 0, 0, c.stereo));
    if (!c.strip) project.strips.clear();
    if (c.width > 0) project.maps.width = {{"T", c.width}};
    EXPECT_EQ(project.lines("PANMODE"), c.pan_mode) << c.what;
  }
}

TEST(TrackBlock, ChannelsGrowWithLegsKeysAndPanners) {
  Project project;
  project.maps.surround_legs = {{"Legs", 5}, {"Keyed", 3}};
  project.routes.extra_key_sources = {{"Keyed", 1}};
  project.routes.surround_aux_channels = {{"Aux", 5}};
  project.panners["Panned"].speakers = 7;
  project.routes.bus_leg_channels = {{"Leg", 3}};
  for (const char* name : {"Legs", "Keyed", "Aux", "Panned", "Leg", "Plain"}) project.track(name);
  EXPECT_EQ(project.lines("NCHAN"), (Lines{"5", "6", "6", "8", "3", "2"}));
}

TEST(TrackBlock, AutomationModeByLanesThenByTheRow) {
  const StripRecord plain = strip_of(0, 0);
  const struct {
    const char* what;
    StripRecord strip;
    int row_mode;
    const char* mode;
    int automated;
  } cases[] = {
      {"no lanes", plain, -1, "0", 0},
      {"stereo", strip_of(0, 0, 0, true), -1, "1", 1},
      {"volume", with_lane(plain, &StripRecord::volume_lane), -1, "1", 1},
      {"pan", with_lane(plain, &StripRecord::pan_lane), -1, "1", 1},
      {"mute", with_lane(plain, &StripRecord::mute_lane), -1, "1", 1},
      {"trim", with_lane(plain, &StripRecord::trim_lane), -1, "1", 1},
      {"off", with_lane(plain, &StripRecord::volume_lane), 0, "0", 1},
      {"read", plain, 1, "1", 0},
      {"touch", plain, 2, "2", 0},
      {"latch", plain, 3, "4", 0},
      {"write", plain, 4, "3", 0},
      {"touch/latch", plain, 5, "4", 0},
  };
  for (const auto& c : cases) {
    Project project(c.strip);
    if (c.row_mode >= 0) project.rows["T"].automation_mode = c.row_mode;
    EXPECT_EQ(project.lines("AUTOMODE"), Lines{c.mode}) << c.what;
    EXPECT_EQ(project.counters.automated_tracks, c.automated) << c.what;
  }
}

// ---- mute and solo ----

TEST(TrackBlock, ASoloedTrackThatIsMutedArrivesMutedAndTheKeeperSoloed) {
  Project project;
  project.strip("Vox").muted = true;
  project.rows["Vox"].solo = 1;
  project.rows["Bass"].solo = 0;
  project.rows["Bass"].solo_safe = 1;
  project.track("Vox");
  project.track("Bass");
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "MUTESOLO"), (Lines{"1 0 0", "0 0 1", "0 2 0"}));
  EXPECT_TRUE(text.ends_with("  <TRACK " + make_guid(69999) + R"text(
    NAME "Pro Tools solo (the soloed tracks were muted)"
    VOLPAN 1 0 -1 -1 1
    MUTESOLO 0 2 0
    IPHASE 0
    ISBUS 0 0
    NCHAN 2
    MAINSEND 1 0
  >
)text"));
  EXPECT_TRUE(project.counters.solo_keeper);
  EXPECT_EQ(project.counters.soloed_and_muted, 1);
  EXPECT_EQ(project.counters.soloed_tracks, Lines{"Vox"});
  EXPECT_EQ(project.counters.solo_safe_tracks, Lines{"Bass"});
  EXPECT_EQ(project.counters.tracks_written, 2);
}

TEST(TrackBlock, ASoloThatPlaysNeedsNoKeeper) {
  Project project;
  project.strip("Vox").muted = true;
  project.strip("Keys").muted = true;
  project.strips.back().mute_lane = lane({{0, 1}});
  for (const char* name : {"Vox", "Keys"}) {
    project.rows[name].solo = 1;
    project.track(name);
  }
  EXPECT_EQ(project.lines("MUTESOLO"), (Lines{"1 0 0", "1 2 0"}));  // the second's mute moves, so its solo must stay
  EXPECT_EQ(project.counters.soloed_and_muted, 1);
  EXPECT_EQ(project.counters.soloed_with_mute_points, 1);
  EXPECT_FALSE(project.counters.solo_keeper);
}

TEST(TrackBlock, WhatIsSilentInTheSessionIsMuted) {
  Project project;
  project.track("A").inactive = true;
  project.track("B").voice_off = true;
  project.track("Vox [alt takes]", "").alt_takes = true;  // muted by a second line, as the next
  project.track("Old [alt playlist]", "");
  EXPECT_EQ(project.lines("MUTESOLO"), (Lines{"1 0 0", "1 0 0", "0 0 0", "1 0 0", "0 0 0", "1 0 0"}));
  EXPECT_EQ(project.counters.orphan_playlists, 1);
}

TEST(TrackBlock, AMutedTrackKeepsItsPreFaderSendsPlaying) {
  Project project;
  for (const char* name : {"Plain", "Moving", "Off"}) {
    project.strip(name).muted = true;
    project.routes.prefader_sources.insert(name);
    project.track(name);
  }
  project.strips[1].mute_lane = lane({{0, 1}});
  project.tracks[2].inactive = true;
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "VOLPAN")[0], "0.000000 0 -1 -1.000000 1.000000");
  EXPECT_EQ(lines_of(text, "MUTESOLO"), (Lines{"0 0 0", "1 0 0", "1 0 0"}));
  EXPECT_EQ(project.counters.prefader_faders_down, Lines{"Plain"});
  EXPECT_EQ(project.counters.prefader_kept_muted, Lines{"Moving"});
}

// ---- what a row says ----

TEST(TrackBlock, ARowIsFoundByTheWrittenNameFirstAndHidesItsTracksOnce) {
  Project project;
  project.rows["Gtr"].row_visible = 0;
  project.rows["Gtr"].row_height = 30;
  project.rows["Written"].row_height = 11;
  project.track("Gtr [L]", "Gtr");
  project.track("Gtr [R]", "Gtr");
  project.track("Written", "Gtr");
  project.track("Nameless", "");
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "TRACKHEIGHT"),
            (Lines{"30 0 0 0 0 0 0", "30 0 0 0 0 0 0", "11 0 0 0 0 0 0", "0 0 0 0 0 0 0"}));
  EXPECT_EQ(lines_of(text, "SHOWINMIX").size(), 1u);
  EXPECT_EQ(project.counters.hidden_tracks, Lines{"Gtr"});
}

TEST(TrackBlock, GroupFlagsEndAtTheLastFieldInUse) {
  const std::pair<TrackGroups::Mask, const char*> cases[] = {
      {TrackGroups::kVolume, "3 3"},
      {TrackGroups::kMute, "0 0 0 0 3 3"},
      {TrackGroups::kSolo, "0 0 0 0 0 0 3 3"},
      {TrackGroups::kAutomationMode, "0 0 0 0 0 0 0 0 0 0 0 0 3 3"},
      {TrackGroups::kVcaMaster, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
      {TrackGroups::kVcaMember, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
  };
  for (const auto& [mask, line] : cases) {
    Project project;
    project.groups.masks[mask] = {{"T", 3}};
    project.track("T");
    EXPECT_EQ(project.lines("GROUP_FLAGS"), Lines{line});
  }
}

TEST(TrackBlock, ColorsByHandComeBeforeTheCoding) {
  Project project;
  project.colors.stored = {{"A", 25}};
  project.colors.coded = {{"A", 26}, {"B", 26}};
  for (const char* name : {"A", "B", "C"}) project.track(name);
  EXPECT_EQ(project.lines("PEAKCOL"), (Lines{std::to_string(0x1FC002C), std::to_string(0x1FC0056), "16576"}));
  EXPECT_EQ(project.counters.colored_tracks, 1);
  EXPECT_EQ(project.counters.coded_color_tracks, 1);
  EXPECT_EQ(project.counters.uncolored_tracks, 1);

  project.options.no_track_colors = true;
  EXPECT_EQ(project.lines("PEAKCOL"), (Lines{"16576", "16576", "16576"}));
  EXPECT_EQ(project.counters.uncolored_tracks, 1);
}

TEST(TrackBlock, MidiTracksInBeatsUnlessSampleBased) {
  Project project;
  project.track("Keys").is_midi = true;
  project.track("Pads").is_midi = true;
  project.sample_based_midi = {"Pads"};
  MidiTrackState& keys = project.midi_states["Keys"];
  keys.muted = keys.has_mute_lane = true;
  keys.mute_lane = lane({{1000, 1}});
  const std::string text = project.write();
  EXPECT_EQ(lines_of(text, "BEAT"), (Lines{"1", "0"}));
  EXPECT_EQ(lines_of(text, "MUTESOLO"), (Lines{"1 0 0", "0 0 0"}));
  EXPECT_EQ(lines_of(text, "PT"), (Lines{"0.0000000000 1.000000000 1", "1.0000000000 0.000000000 1"}));
  EXPECT_EQ(project.counters.timebase_beats, 1);
  EXPECT_EQ(project.counters.timebase_time, 1);
  EXPECT_EQ(project.counters.midi_tracks_muted, 1);
}

// ---- envelopes ----

TEST(Envelopes, AStripsLanesInOrderWithTrimNeverArmed) {
  StripRecord strip = strip_of(0, 0);
  strip.volume_lane = lane({{1000, 0}});
  strip.mute_lane = lane({{0, 0}, {2000, 1}}, 1);
  strip.pan_lane = lane({{1000, 100}, {2000, 0}}, -50);
  strip.trim_lane = lane({{1000, -60}});
  Project project(strip);
  project.rows["T"].automation_mode = 1;
  const std::string text = project.write();
  std::string blocks;
  for (std::size_t at = text.find("    <"); at != text.npos; at = text.find("    <", at + 1)) {
    blocks += text.substr(at + 5, text.find('\n', at) - at - 4);
  }
  EXPECT_EQ(blocks, "VOLENV2\nMUTEENV\nPANENV2\nVOLENV3\n");
  EXPECT_EQ(lines_of(text, "ARM"), (Lines{"1", "1", "1", "0"}));
  EXPECT_EQ(lines_of(text, "DEFSHAPE"), (Lines{"0 -1 -1", "1 -1 -1", "0 -1 -1", "0 -1 -1"}));
  Lines points = lines_of(text, "PT");
  points.resize(8);
  EXPECT_EQ(points, (Lines{"0.0000000000 1.000000000 0", "1.0000000000 1.000000000 0",   // volume
                           "0.0000000000 0.000000000 1", "0.0000000000 1.000000000 1",   // mute, which is no play
                           "2.0000000000 0.000000000 1",                                 //
                           "0.0000000000 0.500000000 0", "1.0000000000 -1.000000000 0",  // pan, left is positive
                           "2.0000000000 0.000000000 0"}));
  EXPECT_EQ(project.counters.automation_points, 6);
  EXPECT_EQ(project.counters.tracks_with_points, 1);
}

TEST(Envelopes, ADualPanStripWritesBothSidesThoughOneIsEmpty) {
  StripRecord strip = strip_of(0, 0, 0, true);
  strip.dual_pan = 1;
  strip.dual_left_lane = lane({{1000, -40}}, -100);
  strip.right_pan_lane = lane({}, 100);
  Project project(strip);
  const std::string text = project.write();
  EXPECT_LT(text.find("<DUALPANENVL\n"), text.find("<DUALPANENV\n"));
  EXPECT_EQ(lines_of(text, "PT"),
            (Lines{"0.0000000000 1.000000000 0", "1.0000000000 0.400000000 0", "0.0000000000 -1.000000000 0"}));
  EXPECT_EQ(project.counters.automation_points, 1);
}

TEST(Envelopes, AWideStripHasNoSinglePan) {
  StripRecord strip = strip_of(0, 0);
  strip.pan_lane = lane({{1000, 100}, {2000, 0}});
  Project project(strip);
  project.wide_strips = {"T"};
  EXPECT_EQ(project.lines("<PANENV2"), Lines{});
  EXPECT_EQ(project.counters.surround_pan_points, 2);
  EXPECT_EQ(project.counters.automation_points, 0);
  EXPECT_EQ(project.counters.tracks_with_points, 0);
}

TEST(Envelopes, LanesInTicksGoByTheTempoMap) {
  AutomationLane ticks = lane({{960000, 0}, {1920000, 0}});
  ticks.in_ticks = true;
  TempoMap tempo;
  tempo.session_tempo = 60.0;
  const auto write = [&](const AutomationLane& lane, int points) {
    return written_by([&](ProjectText& out) {
      EXPECT_EQ(write_envelope(out, "AUXVOLENV", lane, EnvelopeKind::kVolume, "    ", false, {}, {tempo, 1000.0}),
                points);
    });
  };
  EXPECT_EQ(lines_of(write(ticks, 2), "PT"),
            (Lines{"0.0000000000 1.000000000 0", "1.0000000000 1.000000000 0", "2.0000000000 1.000000000 0"}));
  EXPECT_EQ(write(lane({}), 0), "");
}

TEST(Envelopes, TheMastersStandTwoBlanksIn) {
  StripRecord master;
  master.mute_lane = lane({{1000, 1}});
  const TempoMap tempo;
  const std::string text = master_envelopes(master, {tempo, 1000.0});
  EXPECT_TRUE(text.starts_with("  <MASTERMUTEENV\n    ACT 1 -1\n")) << text;
  EXPECT_TRUE(text.ends_with("\n    PT 1.0000000000 0.000000000 1\n  >\n")) << text;
  EXPECT_EQ(master_envelopes(StripRecord{}, {tempo, 1000.0}), "");
}

// ---- comments ----

TEST(Comments, LinesCannotBreakTheProject) {
  using namespace std::string_view_literals;
  const std::pair<std::string_view, Lines> cases[] = {
      {"\r\n\n\r\n", {}},
      {"one\r\ntwo\n\nfour\n\n", {"one", "two", "", "four"}},
      {">\n>", {" >", " >"}},
      {">>\n >\n> ", {">>", " >", "> "}},
      {"a\0b\x1b\tc\x7f\xc3\xa9"sv, {"ab\tc\x7f\xc3\xa9"}},
      {"\r>\r\n", {" >"}},
  };
  for (const auto& [comment, lines] : cases) EXPECT_EQ(comment_lines(comment), lines) << comment;
}

TEST(Comments, ProjectNotesNameEachTrackOnce) {
  EXPECT_EQ(project_notes({{"Vox", "take 3\nnot 2"}, {"Empty", "\n\n"}, {"Bass", ">"}}),
            "  <NOTES 0 2\n    |Vox: take 3\n    |    not 2\n    |Bass:  >\n  >\n");
  EXPECT_EQ(project_notes({}), "");
}

TEST(Comments, OnlyItemModeWritesAnItemButEveryModeNamesTheTrack) {
  for (const int mode : {0, 1, 2}) {
    Project project(strip_of(0, 0));
    project.options.comments_mode = mode;
    project.rows["T"].comment = "hello";
    EXPECT_EQ(project.lines("<ITEM").size(), mode == 0 ? 1u : 0u);
    EXPECT_EQ(project.counters.comment_items, mode == 0 ? 1 : 0);
    EXPECT_EQ(project.counters.commented_tracks, Lines{"T"});
  }
}

}  // namespace
}  // namespace frt

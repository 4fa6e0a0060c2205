// Which value wins where several tables speak of a track, and what the writer makes of it.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "mix/track_page.h"
#include "support/project_text.h"
#include "writer/comments.h"
#include "writer/track_block.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;

AutomationLane moving(double to = 10) {
  AutomationLane lane;
  lane.points = {{0, to}};
  return lane;
}

// A session of tracks with a strip and a row each.
struct Scene {
  Session session;
  Routing routing;
  MixTables tables;
  TrackFacts facts;
  Trims trims;
  ConversionOptions options;
  std::vector<OutputTrack> tracks;
  TrackCounts counts;

  Scene() = default;
  explicit Scene(std::initializer_list<const char*> names) {
    for (const char* name : names) track(name, name);
  }
  OutputTrack& track(const char* name, const char* pt_name) {
    tracks.emplace_back().name = name;
    tracks.back().pt_name = pt_name;
    return tracks.back();
  }
  StripRecord& strip(std::string_view name = "T", bool stereo = false) {
    StripRecord& strip = session.mixer.strips.emplace_back();
    strip.name = name;
    strip.has_mixer_data = true;
    strip.is_stereo = stereo;
    return strip;
  }
  TrackRow& row(std::string_view name = "T") {
    session.mixer.rows.emplace_back().current_name = name;
    return session.mixer.track_rows.emplace_back();
  }
  std::vector<TrackPage> pages() {
    routing.sends.prefader_source.resize(tracks.size());
    TrimPolarity polarity(trims);
    TrackPages made =
        make_track_pages(session, bind_tracks(session, tracks, facts), tracks, routing, tables, polarity, options);
    counts = std::move(made.counts);
    return std::move(made.pages);
  }
  TrackPage page() { return pages().at(0); }
};

std::string level_of(const TrackPage& page) {
  return format_text("%.2f %g [%g %g]", page.volume, page.pan, page.left_pan, page.right_pan);
}

TEST(TrackPages, VolumeAndPan) {
  const struct {
    const char* what;
    void (*change)(StripRecord&);
    const char* level;
  } rows[] = {
      {"no mixer data", [](StripRecord& s) { s.has_mixer_data = false; }, "1.00 0 [-1 1]"},
      {"pan beyond its range", [](StripRecord& s) { s.pan = 250; }, "0.50 1 [-1 1]"},
      {"stereo, narrowed", [](StripRecord& s) { s.is_stereo = true; }, "0.50 0.2 [-0.2 0.6]"},
      {"volume moves", [](StripRecord& s) { s.volume_lane = moving(); }, "1.00 -0.2 [-1 1]"},
      {"pan moves", [](StripRecord& s) { s.pan_lane = moving(); }, "0.50 0 [-1 1]"},
      {"a side moves", [](StripRecord& s) { s.is_stereo = true, s.dual_pan = 1, s.right_pan_lane = moving(); },
       "0.50 0.2 [-1 1]"},
      {"apart at rest", [](StripRecord& s) { s.is_stereo = true, s.dual_pan = 2; }, "0.50 0.2 [-0.2 0.6]"},
  };
  for (const auto& row : rows) {
    Scene scene{"T"};
    StripRecord& strip = scene.strip();
    strip.fader_db = -6, strip.pan = -20, strip.second_pan = 60;
    row.change(strip);
    EXPECT_EQ(level_of(scene.page()), row.level) << row.what;
  }
}

TEST(TrackPages, TablesOfRoutesAndGroupsOverrideTheStrip) {
  Scene scene{"Written"};
  scene.tracks[0].pt_name = "T";
  scene.strip().fader_db = -6;
  scene.tables.groups.vca_master_db = {{"T", -20.0}};
  scene.session.mixer.one_sided = {{"Written", -1}, {"T", 1}};
  scene.routing.no_main_send = {"Written"};  // goes by the key alone
  scene.trims.strips["Written"].whole = 1;
  EXPECT_EQ(level_of(scene.page()), "0.10 0 [1 1]");
  EXPECT_EQ(scene.page().pan_mode, PanMode::kDual);
  EXPECT_TRUE(scene.page().main_send && scene.page().inverted);

  scene.tracks[0].pt_name.clear();
  EXPECT_EQ(level_of(scene.page()), "1.00 0 [-1 -1]");
  EXPECT_FALSE(scene.page().main_send);

  Scene legs;  // one written alone keeps its side, whatever the strip says
  legs.track("T [R]", "T").forced_pan = 1;
  legs.strip().pan = -50;
  EXPECT_EQ(level_of(legs.page()), "1.00 1 [-1 1]");
}

// Inactive envelopes carry nothing, so the resting pans must; the second track of the row has active ones.
TEST(TrackPages, ModeOffKeepsTheRestingPansOnTheFirstTrackOfTheRow) {
  Scene scene{"T", "T"};
  StripRecord& strip = scene.strip("T", true);
  strip.pan = -20, strip.second_pan = 60, strip.dual_pan = 1, strip.dual_left_lane = moving();
  scene.row().automation_mode = AutomationMode::kOff;
  const auto pages = scene.pages();
  EXPECT_EQ(level_of(pages[0]), "1.00 0.2 [-0.2 0.6]");
  EXPECT_EQ(level_of(pages[1]), "1.00 0.2 [-1 1]");
  EXPECT_FALSE(pages[0].envelopes.at(0).active);
  EXPECT_TRUE(pages[1].envelopes.at(0).active);
  EXPECT_EQ(scene.counts.other_mode_tracks.at(0), (std::pair<std::string, std::string_view>("T", "Off")));
}

TEST(TrackPages, PanModeByStripAndWidth) {
  const struct {
    const char* what;
    bool strip;
    int width;
    bool panner;
    PanMode mode;
  } rows[] = {
      {"stereo strip", true, 2, false, PanMode::kDual},
      {"mono strip, mono clips", false, 1, false, PanMode::kBalance},
      {"mono strip, two legs", false, 2, false, PanMode::kDefault},
      {"mono strip, no clips", false, 0, false, PanMode::kDefault},
      {"a panner places it", true, 1, true, PanMode::kDefault},
      {"also where it is mono", false, 1, true, PanMode::kDefault},
  };
  for (const auto& row : rows) {
    Scene scene{"T"};
    scene.strip("T", row.strip);
    if (row.width > 0) scene.facts.width = {{"T", row.width}};
    if (row.panner) scene.tables.surround_panners["T"].speakers = 6;
    EXPECT_EQ(scene.page().pan_mode, row.mode) << row.what;
  }
  Scene folder{"T"};
  folder.tables.folders.basic_folders = {"T"};
  EXPECT_EQ(folder.page().pan_mode, PanMode::kDual);
}

TEST(TrackPages, ChannelsGrowWithLegsKeysAndPanners) {
  Scene scene{"Legs", "Keyed", "Keys and legs", "Aux", "Panned", "Bus leg", "Plain"};
  scene.facts.surround_legs = {{"Legs", 5}, {"Keys and legs", 3}};
  scene.routing.keys.strips = {
      {"Keyed", {6, "Bus", {}}}, {"Keys and legs", {6, "Bus", {2}}}, {"Plain", {6, "Bus", {0}}}};
  scene.routing.aux_width = {{"Aux", 5}};
  scene.tables.surround_panners["Panned"].speakers = 7;
  scene.routing.leg_channels = {{"Bus leg", 4}};
  std::vector<int> channels;
  for (const TrackPage& page : scene.pages()) channels.push_back(page.channels);
  EXPECT_EQ(channels, (std::vector{5, 4, 6, 6, 8, 4, 2}));
}

TEST(TrackPages, ASurroundPannerTakesTheStripsPan) {
  for (const auto& [stereo, lanes, left] : {std::tuple{false, 7u, 0}, {false, 6u, 1}, {true, 7u, 1}}) {
    Scene scene{"T"};
    StripRecord& strip = scene.strip();
    strip.pan = -20, strip.pan_lane = moving();
    scene.tables.surround_panners["T"] = {6, stereo, lanes};
    const TrackPage page = scene.page();
    EXPECT_EQ(page.pan, 0);
    EXPECT_TRUE(page.envelopes.empty());
    EXPECT_EQ(scene.counts.envelopes.surround_panner_lanes_left, left);
  }
}

TEST(TrackPages, AutomationModeByLanesThenByTheRow) {
  const struct {
    const char* what;
    void (*change)(StripRecord&);
    AutomationMode row, mode;
    int automated;
  } rows[] = {
      {"stereo", [](StripRecord& s) { s.is_stereo = true; }, AutomationMode::kUntold, AutomationMode::kRead, 1},
      {"pan", [](StripRecord& s) { s.pan_lane = moving(); }, AutomationMode::kUntold, AutomationMode::kRead, 1},
      {"trim", [](StripRecord& s) { s.trim_lane = moving(); }, AutomationMode::kUntold, AutomationMode::kRead, 1},
      {"off", [](StripRecord& s) { s.mute_lane = moving(); }, AutomationMode::kOff, AutomationMode::kOff, 1},
      {"told", [](StripRecord&) {}, AutomationMode::kLatch, AutomationMode::kLatch, 0},
  };
  for (const auto& row : rows) {
    Scene scene{"T"};
    row.change(scene.strip());
    scene.row().automation_mode = row.row;
    EXPECT_EQ(scene.page().automation_mode, row.mode) << row.what;
    EXPECT_EQ(scene.counts.automated_tracks, row.automated) << row.what;
  }
}

TEST(TrackPages, MuteAndSolo) {
  const struct {
    const char* what;
    void (*change)(Scene&);
    const char* tracks;  // "m" muted, "s" soloed, "0" fader down
    bool keeper = false;
  } rows[] = {
      {"a muted solo is silent, and another plays",
       [](Scene& s) { s.strip("B").mute_lane = moving(), s.session.mixer.strips[1].muted = true; }, "m ms"},
      {"no solo plays", [](Scene& s) { s.strip("B").muted = true; }, "m m", true},
      {"one that isn't muted", [](Scene& s) { s.strip("B"); }, "m s"},
      {"voice off", [](Scene& s) { s.tracks[1].voice_off = true; }, "m m", true},
      {"pre-fader sends go on", [](Scene& s) { s.routing.sends.prefader_source = {true}; }, "s0 s"},
      {"but not of a muted track that moves",
       [](Scene& s) { s.routing.sends.prefader_source = {true}, s.session.mixer.strips[0].volume_lane = moving(); },
       "m s"},
      {"nor of one that is off",
       [](Scene& s) { s.routing.sends.prefader_source = {true}, s.tracks[0].inactive = true; }, "m s"},
  };
  for (const auto& row : rows) {
    Scene scene{"A", "B"};
    scene.strip("A").muted = true;
    for (const char* name : {"A", "B"}) scene.row(name).solo = Told01::kYes;
    row.change(scene);
    std::string text;
    for (const TrackPage& page : scene.pages()) {
      text += text.empty() ? "" : " ";
      text += std::string(page.mute ? "m" : "") + (page.solo ? "s" : "") + (page.volume == 0 ? "0" : "");
    }
    EXPECT_EQ(text, row.tracks) << row.what;
    EXPECT_EQ(scene.counts.solo_keeper, row.keeper) << row.what;
  }
}

TEST(TrackPages, ARowIsFoundByTheWrittenNameFirstAndHidesItsTracksOnce) {
  Scene scene;
  for (const auto& [name, pt_name] : {std::pair{"Gtr [L]", "Gtr"}, {"Gtr [R]", "Gtr"}, {"Own", "Gtr"}, {"None", ""}})
    scene.track(name, pt_name);
  TrackRow& guitar = scene.row("Gtr");
  guitar.visible = false, guitar.row_height = 30;
  scene.row("Own").row_height = 11;
  std::string text;
  for (const TrackPage& page : scene.pages()) text += format_text("%d%s ", page.height, page.hidden ? " hidden" : "");
  EXPECT_EQ(text, "30 hidden 30 11 0 ");
  EXPECT_EQ(scene.counts.hidden_tracks, Lines{"Gtr"});
}

TEST(TrackPages, ColorsByHandComeBeforeTheCoding) {
  for (const bool left_out : {false, true}) {
    Scene scene{"A", "B", "C"};
    scene.options.no_track_colors = left_out;
    scene.tables.colors.stored = {{"A", 25}};
    scene.tables.colors.coded = {{"A", 26}, {"B", 26}};
    std::vector<std::uint32_t> colors;
    for (const TrackPage& page : scene.pages()) colors.push_back(page.color);
    const std::uint32_t plain = kDefaultTrackColor;
    EXPECT_EQ(colors, left_out ? (std::vector{plain, plain, plain}) : (std::vector{0x1FC002Cu, 0x1FC0056u, plain}));
    EXPECT_EQ(scene.counts.uncolored_tracks, left_out ? 0 : 1);
  }
}

TEST(TrackPages, MidiTracksInBeatsUnlessSampleBasedAndAStripComesBeforeTheirState) {
  Scene scene{"Keys", "Pads"};
  for (OutputTrack& track : scene.tracks) {
    track.is_midi = true;
    scene.session.mixer.midi_states[track.name] = {true, true, false, moving(1)};
  }
  scene.tables.sample_based_midi = {"Pads"};
  scene.strip("Pads");
  const auto pages = scene.pages();
  EXPECT_EQ(pages[0].timebase, Timebase::kBeats);
  EXPECT_EQ(pages[1].timebase, Timebase::kTime);
  EXPECT_TRUE(pages[0].mute && pages[0].envelopes.at(0).target() == EnvelopeTarget::kMute);
  EXPECT_TRUE(!pages[1].mute && pages[1].envelopes.empty());
  EXPECT_EQ(scene.counts.midi_tracks_muted, 1);
}

// ---- the writer's own part ----

std::string written(const std::vector<TrackPage>& pages) {
  return test::written_by([&](ProjectText& out) { write_tracks(out, pages, nullptr); });
}

TEST(TrackBlock, GroupFlagsEndAtTheLastFieldInUse) {
  const std::pair<GroupLinks::Link, const char*> rows[] = {
      {GroupLinks::kVolume, "3 3"},
      {GroupLinks::kMute, "0 0 0 0 3 3"},
      {GroupLinks::kSolo, "0 0 0 0 0 0 3 3"},
      {GroupLinks::kAutomationMode, "0 0 0 0 0 0 0 0 0 0 0 0 3 3"},
      {GroupLinks::kVcaMaster, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
      {GroupLinks::kVcaMember, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
  };
  for (const auto& [link, line] : rows) {
    Scene scene{"T"};
    scene.tables.groups.masks[link] = {{"T", 3}};
    EXPECT_EQ(lines_of(written(scene.pages()), "GROUP_FLAGS"), Lines{line});
  }
}

TEST(TrackBlock, EnumsAsReapersNumbers) {
  const OutputTrack track;
  std::vector<TrackPage> pages(6);
  for (std::size_t i = 0; i < pages.size(); ++i) {
    pages[i].track = &track;
    pages[i].automation_mode = static_cast<AutomationMode>(i);
    pages[i].timebase = static_cast<Timebase>(i % 4);
  }
  pages[0].inverted = true, pages[0].folder = {1, 1}, pages[0].main_send = false, pages[0].silenced_take = true;
  const std::string text = written(pages);
  EXPECT_EQ(lines_of(text, "AUTOMODE"), (Lines{"0", "1", "2", "4", "3", "4"}));
  EXPECT_EQ(lines_of(text, "BEAT"), (Lines{"-1", "0", "1", "2", "-1", "0"}));
  EXPECT_EQ(lines_of(text, "IPHASE")[0] + lines_of(text, "ISBUS")[0] + lines_of(text, "MAINSEND")[0], "11 10 0");
  // The later line holds.
  EXPECT_EQ(lines_of(text, "MUTESOLO")[0] + "|" + lines_of(text, "MUTESOLO")[1], "0 0 0|1 0 0");
}

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

}  // namespace
}  // namespace frt

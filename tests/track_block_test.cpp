// The lines of a track, and which value wins where several speak.
#include "writer/track_block.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "writer/comments.h"
#include "writer/envelopes.h"

namespace frt {
namespace {

class StringTarget final : public TextTarget {
 public:
  bool write(const char* data, std::size_t n) override {
    text.append(data, n);
    return true;
  }
  std::string text;
};

class StageTexts final : public frtgui::Progress {
 public:
  bool report(int step, int total, const char* stage) override {
    texts.push_back(format_text("%d/%d %s", step, total, stage));
    return true;
  }
  std::vector<std::string> texts;
};

// One word of what a test looks at: the first line that begins with it, without its indent and the word itself;
// "-" if there is none.
std::string line_of(const std::string& text, std::string_view word, int nth = 0) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    std::string_view line(text.data() + at, end - at);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (line.starts_with(word) && (line.size() == word.size() || line[word.size()] == ' ') && nth-- == 0) {
      line.remove_prefix(std::min(word.size() + 1, line.size()));
      return std::string(line);
    }
    at = end + 1;
  }
  return "-";
}

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

  OutputTrack& track(const std::string& name) { return track(name, name); }
  OutputTrack& track(const std::string& name, const std::string& pt_name) {
    OutputTrack track;
    track.name = name;
    track.pt_name = pt_name;
    tracks.push_back(std::move(track));
    return tracks.back();
  }
  StripRecord& strip(std::string_view name) {
    StripRecord strip;
    strip.name = name;
    strip.has_mixer_data = true;
    strips.push_back(std::move(strip));
    return strips.back();
  }
  std::string write() {
    const AudioFileFolders files;
    MediaFolders media{"/media", "", files};
    AudioItems items{options, media, 1000.0};
    const StripIndex index = index_strips(strips);
    const WriterTables tables{.options = options,
                              .tempo = tempo,
                              .sample_rate = 1000.0,
                              .strips = index,
                              .track_rows = rows,
                              .maps = maps,
                              .colors = colors,
                              .groups = groups,
                              .routes = routes,
                              .folders = folders,
                              .wide_strips = wide_strips,
                              .surround_panners = panners,
                              .midi_states = midi_states,
                              .sample_based_midi = sample_based_midi};
    StringTarget target;
    {
      ProjectText out(target);
      write_tracks(out, tracks, tables, items, counters, &progress);
    }
    return target.text;
  }
};

AutomationLane lane(std::vector<std::pair<double, double>> points, double initial = 0) {
  AutomationLane lane;
  lane.points = std::move(points);
  lane.initial = initial;
  return lane;
}

TEST(TrackBlock, ATrackThatNothingIsKnownOf) {
  Project project;
  project.track("Vox");
  EXPECT_EQ(project.write(), "  <TRACK " + make_guid(1) +
                                 "\n"
                                 "    NAME \"Vox\"\n"
                                 "    PEAKCOL 16576\n"
                                 "    BEAT -1\n"
                                 "    AUTOMODE 0\n"
                                 "    VOLPAN 1.000000 0 -1 -1.000000 1.000000\n"
                                 "    MUTESOLO 0 0 0\n"
                                 "    IPHASE 0\n"
                                 "    ISBUS 0 0\n"
                                 "    FREEMODE 0\n"
                                 "    TRACKHEIGHT 0 0 0 0 0 0 0\n"
                                 "    INQ 0 0 0 0.5 100 0 0 100\n"
                                 "    NCHAN 2\n"
                                 "    FX 1\n"
                                 "    TRACKID " +
                                 make_guid(9001) +
                                 "\n"
                                 "    MAINSEND 1 0\n"
                                 "  >\n");
  EXPECT_EQ(project.counters.tracks_written, 1);
  EXPECT_EQ(project.counters.uncolored_tracks, 1);
}

TEST(TrackBlock, AStereoTrackWithAutomationLanesAndAComment) {
  Project project;
  project.options.comments_mode = 0;
  StripRecord& strip = project.strip("Gtr");
  strip.is_stereo = true;
  strip.fader_db = -6.0;
  strip.pan = -100;
  strip.second_pan = 50;
  strip.volume_lane = lane({{500, -60}}, -200);
  TrackRow row;
  row.row_visible = 0;
  row.row_height = 48;
  row.solo_safe = 1;
  row.automation_mode = 2;
  row.comment = "DI\r\n>";
  project.rows = {{"Gtr", row}};
  project.maps.timebase = {{"Gtr", 2}};
  project.maps.width = {{"Gtr", 2}};
  OutputTrack& track = project.track("Gtr");
  track.lanes = {{"Gtr.01", {}}, {"a \"b\"", {}}};
  EXPECT_EQ(project.write(), "  <TRACK " + make_guid(1) +
                                 "\n"
                                 "    NAME \"Gtr\"\n"
                                 "    PEAKCOL 16576\n"
                                 "    BEAT 2\n"
                                 "    AUTOMODE 2\n"
                                 "    VOLPAN 1.000000 -0.25 -1 -1.000000 0.500000\n"
                                 "    MUTESOLO 0 0 1\n"
                                 "    IPHASE 0\n"
                                 "    ISBUS 0 0\n"
                                 "    SHOWINMIX 0 0.6667 0.5 0 0.5 0 0 0 0\n"
                                 "    PANMODE 6\n"
                                 "    FREEMODE 2\n"
                                 "    TRACKHEIGHT 48 0 0 0 0 0 0\n"
                                 "    INQ 0 0 0 0.5 100 0 0 100\n"
                                 "    NCHAN 2\n"
                                 "    FX 1\n"
                                 "    TRACKID " +
                                 make_guid(9001) +
                                 "\n"
                                 "    MAINSEND 1 0\n"
                                 "    FIXEDLANES 9 0 0 0 0\n"
                                 "    LANESOLO 1 0 0 0 0 0 0 0\n"
                                 "    ITEMLANES 3\n"
                                 "    LANENAME \"Gtr\" \"Gtr.01\" 'a \"b\"'\n"
                                 "    <VOLENV2\n"
                                 "      ACT 1 -1\n"
                                 "      VIS 1 1 1\n"
                                 "      LANEHEIGHT 0 0\n"
                                 "      ARM 0\n"
                                 "      DEFSHAPE 0 -1 -1\n"
                                 "      PT 0.0000000000 0.100000000 0\n"
                                 "      PT 0.5000000000 0.501187234 0\n"
                                 "    >\n"
                                 "    <ITEM\n"
                                 "      POSITION 0\n"
                                 "      SNAPOFFS 0\n"
                                 "      LENGTH 2\n"
                                 "      LOOP 0\n"
                                 "      ALLTAKES 0\n"
                                 "      FADEIN 1 0 0 1 0 0 0\n"
                                 "      FADEOUT 1 0 0 1 0 0 0\n"
                                 "      MUTE 0 0\n"
                                 "      IGUID " +
                                 make_guid(0x7C000001) +
                                 "\n"
                                 "      NAME \"Pro Tools comment\"\n"
                                 "      <NOTES\n"
                                 "        |DI\n"
                                 "        | >\n"
                                 "      >\n"
                                 "    >\n"
                                 "  >\n");
  EXPECT_EQ(project.counters.faders_at_unity, 1);
  EXPECT_EQ(project.counters.automated_tracks, 1);
  EXPECT_EQ(project.counters.automation_points, 1);
  EXPECT_EQ(project.counters.tracks_with_points, 1);
  EXPECT_EQ(project.counters.timebase_beats_position, 1);
  EXPECT_EQ(project.counters.tracks_with_height, 1);
  EXPECT_EQ(project.counters.comment_items, 1);
  EXPECT_EQ(project.counters.hidden_tracks, std::vector<std::string>{"Gtr"});
  EXPECT_EQ(project.counters.solo_safe_tracks, std::vector<std::string>{"Gtr"});
  EXPECT_EQ(project.counters.commented_tracks, std::vector<std::string>{"Gtr"});
  EXPECT_EQ(project.counters.other_mode_tracks, std::vector<std::string>{" Gtr=Touch"});
}

// ---- volume and pan ----

struct VolpanCase {
  const char* what;
  StripRecord strip;
  const char* volpan;
};

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

TEST(TrackBlock, VolumeAndPan) {
  StripRecord no_data = strip_of(-6, 30);
  no_data.has_mixer_data = false;
  StripRecord dual_at_rest = strip_of(0, -50, 50, true);
  dual_at_rest.dual_pan = 2;
  const VolpanCase cases[] = {
      {"mono", strip_of(-6, 30), "0.501187 0.3 -1 -1.000000 1.000000"},
      {"no mixer data", no_data, "1.000000 0 -1 -1.000000 1.000000"},
      {"pan beyond its range", strip_of(0, 250), "1.000000 1 -1 -1.000000 1.000000"},
      {"stereo", strip_of(0, -100, 100, true), "1.000000 0 -1 -1.000000 1.000000"},
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
  for (const VolpanCase& c : cases) {
    Project project;
    project.strips = {c.strip};
    project.track("T");
    EXPECT_EQ(line_of(project.write(), "VOLPAN"), c.volpan) << c.what;
  }
}

TEST(TrackBlock, ALegWrittenAloneKeepsItsSide) {
  Project project;
  project.strips = {strip_of(-6, 30)};
  project.track("T [L]", "T").forced_pan = -1;
  project.track("T [R]", "T").forced_pan = 1;
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "VOLPAN"), "0.501187 -1 -1 -1.000000 1.000000");
  EXPECT_EQ(line_of(text, "VOLPAN", 1), "0.501187 1 -1 -1.000000 1.000000");
}

// Inactive envelopes carry nothing, so the resting pans must; the second track of the row has active ones.
TEST(TrackBlock, ModeOffKeepsTheRestingPansOnTheFirstTrackOfTheRow) {
  Project project;
  project.strips = {with_lane(strip_of(0, -20, 60, true), &StripRecord::dual_left_lane, 1)};
  project.rows["T"].automation_mode = 0;
  project.track("T");
  project.track("T");
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "VOLPAN"), "1.000000 0.2 -1 -0.200000 0.600000");
  EXPECT_EQ(line_of(text, "VOLPAN", 1), "1.000000 0.2 -1 -1.000000 1.000000");
  EXPECT_EQ(line_of(text, "ACT"), "0 -1");
  EXPECT_EQ(line_of(text, "ACT", 2), "1 -1");
  EXPECT_EQ(project.counters.automation_off_tracks, std::vector<std::string>{"T"});
  EXPECT_EQ(project.counters.tracks_not_in_read, 1);
}

TEST(TrackBlock, TablesOfRoutesAndGroupsOverrideTheStrip) {
  Project project;
  project.strips = {strip_of(-6, 30)};
  project.groups.vca_master_db = {{"T", -20.0}};
  project.routes.one_sided = {{"T", 1}};
  project.routes.no_main_send = {"T"};
  project.routes.inverted = {"T"};
  project.folders.bus_texts = {"1 1"};
  project.track("T");
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "VOLPAN"), "0.100000 0 -1 1.000000 1.000000");
  EXPECT_EQ(line_of(text, "PANMODE"), "6");
  EXPECT_EQ(line_of(text, "MAINSEND"), "0 0");
  EXPECT_EQ(line_of(text, "IPHASE"), "1");
  EXPECT_EQ(line_of(text, "ISBUS"), "1 1");
}

TEST(TrackBlock, PanModeByStripAndWidth) {
  struct Case {
    const char* what;
    bool strip, stereo;
    int width;
    const char* pan_mode;
  };
  const Case cases[] = {
      {"stereo strip", true, true, 2, "6"},
      {"mono strip, mono clips", true, false, 1, "3"},
      {"mono strip, two legs", true, false, 2, "-"},
      {"mono strip, no clips", true, false, 0, "-"},
      {"no strip", false, false, 1, "-"},
  };
  for (const Case& c : cases) {
    Project project;
    if (c.strip) project.strips = {strip_of(0, 0, 0, c.stereo)};
    if (c.width > 0) project.maps.width = {{"T", c.width}};
    project.track("T");
    EXPECT_EQ(line_of(project.write(), "PANMODE"), c.pan_mode) << c.what;
  }
}

TEST(TrackBlock, ChannelsGrowWithLegsKeysAndPanners) {
  Project project;
  project.maps.surround_legs = {{"Legs", 5}, {"Keyed", 3}};
  project.routes.extra_key_sources = {{"Keyed", 1}};
  project.routes.surround_aux_channels = {{"Aux", 5}};
  project.panners["Panned"].speakers = 7;
  project.routes.bus_leg_channels = {{"Leg", 3}};
  for (const char* name : {"Legs", "Keyed", "Aux", "Panned", "Leg"}) project.track(name);
  const std::string text = project.write();
  for (int k = 0; k < 5; ++k) {
    static constexpr const char* kChannels[] = {"5", "6", "6", "8", "3"};
    EXPECT_EQ(line_of(text, "NCHAN", k), kChannels[k]) << project.tracks[static_cast<std::size_t>(k)].name;
  }
}

// ---- automation mode ----

TEST(TrackBlock, AutomationModeByLanesThenByTheRow) {
  struct Case {
    const char* what;
    StripRecord strip;
    int row_mode;
    const char* mode;
    int automated;
  };
  const Case cases[] = {
      {"no lanes", strip_of(0, 0), -1, "0", 0},
      {"stereo", strip_of(0, 0, 0, true), -1, "1", 1},
      {"volume", with_lane(strip_of(0, 0), &StripRecord::volume_lane), -1, "1", 1},
      {"pan", with_lane(strip_of(0, 0), &StripRecord::pan_lane), -1, "1", 1},
      {"mute", with_lane(strip_of(0, 0), &StripRecord::mute_lane), -1, "1", 1},
      {"trim", with_lane(strip_of(0, 0), &StripRecord::trim_lane), -1, "1", 1},
      {"off", with_lane(strip_of(0, 0), &StripRecord::volume_lane), 0, "0", 1},
      {"read", strip_of(0, 0), 1, "1", 0},
      {"touch", strip_of(0, 0), 2, "2", 0},
      {"latch", strip_of(0, 0), 3, "4", 0},
      {"write", strip_of(0, 0), 4, "3", 0},
      {"touch/latch", strip_of(0, 0), 5, "4", 0},
  };
  for (const Case& c : cases) {
    Project project;
    project.strips = {c.strip};
    if (c.row_mode >= 0) project.rows["T"].automation_mode = c.row_mode;
    project.track("T");
    EXPECT_EQ(line_of(project.write(), "AUTOMODE"), c.mode) << c.what;
    EXPECT_EQ(project.counters.automated_tracks, c.automated) << c.what;
  }
}

// ---- mute and solo ----

TEST(TrackBlock, ASoloedTrackThatIsMutedArrivesMutedAndTheKeeperSoloed) {
  Project project;
  project.strip("Vox").muted = true;
  project.rows["Vox"].solo = 1;
  project.rows["Bass"].solo = 0;
  project.track("Vox");
  project.track("Bass");
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "MUTESOLO"), "1 0 0");
  EXPECT_EQ(line_of(text, "MUTESOLO", 1), "0 0 0");
  EXPECT_TRUE(text.ends_with("  <TRACK " + make_guid(69999) +
                             "\n"
                             "    NAME \"Pro Tools solo (the soloed tracks were muted)\"\n"
                             "    VOLPAN 1 0 -1 -1 1\n"
                             "    MUTESOLO 0 2 0\n"
                             "    IPHASE 0\n"
                             "    ISBUS 0 0\n"
                             "    NCHAN 2\n"
                             "    MAINSEND 1 0\n"
                             "  >\n"));
  EXPECT_TRUE(project.counters.solo_keeper);
  EXPECT_EQ(project.counters.soloed_and_muted, 1);
  EXPECT_EQ(project.counters.soloed_tracks, std::vector<std::string>{"Vox"});
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
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "MUTESOLO"), "1 0 0");
  EXPECT_EQ(line_of(text, "MUTESOLO", 1), "1 2 0");  // its mute moves, so the solo must stay
  EXPECT_EQ(line_of(text, "MUTESOLO", 2), "-");
  EXPECT_EQ(project.counters.soloed_and_muted, 1);
  EXPECT_EQ(project.counters.soloed_with_mute_points, 1);
  EXPECT_FALSE(project.counters.solo_keeper);
}

TEST(TrackBlock, InactiveAndVoiceOffAreMuted) {
  Project project;
  project.track("A").inactive = true;
  project.track("B").voice_off = true;
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "MUTESOLO"), "1 0 0");
  EXPECT_EQ(line_of(text, "MUTESOLO", 1), "1 0 0");
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
  EXPECT_EQ(line_of(text, "VOLPAN"), "0.000000 0 -1 -1.000000 1.000000");
  EXPECT_EQ(line_of(text, "MUTESOLO"), "0 0 0");
  EXPECT_EQ(line_of(text, "MUTESOLO", 1), "1 0 0");
  EXPECT_EQ(line_of(text, "MUTESOLO", 2), "1 0 0");
  EXPECT_EQ(project.counters.prefader_faders_down, std::vector<std::string>{"Plain"});
  EXPECT_EQ(project.counters.prefader_kept_muted, std::vector<std::string>{"Moving"});
}

TEST(TrackBlock, AlternatesArriveMutedByALaterLine) {
  Project project;
  project.track("Vox [alt takes]", "").alt_takes = true;
  project.track("Old [alt playlist]", "");
  const std::string text = project.write();
  for (int k = 0; k < 4; ++k) EXPECT_EQ(line_of(text, "MUTESOLO", k), k % 2 == 0 ? "0 0 0" : "1 0 0");
  EXPECT_EQ(project.counters.orphan_playlists, 1);
}

// ---- what a row says, once a name ----

TEST(TrackBlock, TwoTracksOfOneRowAreHiddenAndNamedOnce) {
  Project project;
  project.rows["Gtr"].row_visible = 0;
  project.rows["Gtr"].row_height = 30;
  project.track("Gtr [L]", "Gtr");
  project.track("Gtr [R]", "Gtr");
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "SHOWINMIX"), "0 0.6667 0.5 0 0.5 0 0 0 0");
  EXPECT_EQ(line_of(text, "SHOWINMIX", 1), "-");
  EXPECT_EQ(project.counters.hidden_tracks, std::vector<std::string>{"Gtr"});
  EXPECT_EQ(line_of(text, "TRACKHEIGHT", 1), "30 0 0 0 0 0 0");
}

TEST(TrackBlock, TheWrittenNameIsLookedUpBeforeThePtName) {
  Project project;
  project.rows["Written"].row_height = 11;
  project.rows["Session"].row_height = 22;
  project.track("Written", "Session");
  project.track("Other", "Session");
  project.track("Nameless", "");
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "TRACKHEIGHT"), "11 0 0 0 0 0 0");
  EXPECT_EQ(line_of(text, "TRACKHEIGHT", 1), "22 0 0 0 0 0 0");
  EXPECT_EQ(line_of(text, "TRACKHEIGHT", 2), "0 0 0 0 0 0 0");
}

TEST(TrackBlock, GroupFlagsEndAtTheLastFieldInUse) {
  struct Case {
    TrackGroups::Mask mask;
    const char* line;
  };
  const Case cases[] = {
      {TrackGroups::kVolume, "3 3"},
      {TrackGroups::kMute, "0 0 0 0 3 3"},
      {TrackGroups::kSolo, "0 0 0 0 0 0 3 3"},
      {TrackGroups::kAutomationMode, "0 0 0 0 0 0 0 0 0 0 0 0 3 3"},
      {TrackGroups::kVcaMaster, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
      {TrackGroups::kVcaMember, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 3"},
  };
  for (const Case& c : cases) {
    Project project;
    project.groups.masks[c.mask] = {{"T", 3}};
    project.track("T");
    EXPECT_EQ(line_of(project.write(), "GROUP_FLAGS"), c.line);
  }
}

TEST(TrackBlock, ColorsByHandComeBeforeTheCoding) {
  Project project;
  project.colors.stored = {{"A", 25}};
  project.colors.coded = {{"A", 26}, {"B", 26}};
  for (const char* name : {"A", "B", "C"}) project.track(name);
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "PEAKCOL"), std::to_string(0x1FC002C));
  EXPECT_EQ(line_of(text, "PEAKCOL", 1), std::to_string(0x1FC0056));
  EXPECT_EQ(line_of(text, "PEAKCOL", 2), "16576");
  EXPECT_EQ(project.counters.colored_tracks, 1);
  EXPECT_EQ(project.counters.coded_color_tracks, 1);
  EXPECT_EQ(project.counters.uncolored_tracks, 1);

  project.options.no_track_colors = true;
  EXPECT_EQ(line_of(project.write(), "PEAKCOL"), "16576");
  EXPECT_EQ(project.counters.uncolored_tracks, 1);
}

TEST(TrackBlock, MidiTracksInBeatsUnlessSampleBased) {
  Project project;
  project.track("Keys").is_midi = true;
  project.track("Pads").is_midi = true;
  project.sample_based_midi = {"Pads"};
  project.midi_states["Keys"].muted = true;
  project.midi_states["Keys"].has_mute_lane = true;
  project.midi_states["Keys"].mute_lane = lane({{1000, 1}});
  const std::string text = project.write();
  EXPECT_EQ(line_of(text, "BEAT"), "1");
  EXPECT_EQ(line_of(text, "BEAT", 1), "0");
  EXPECT_EQ(line_of(text, "MUTESOLO"), "1 0 0");
  EXPECT_EQ(line_of(text, "PT"), "0.0000000000 1.000000000 1");
  EXPECT_EQ(line_of(text, "PT", 1), "1.0000000000 0.000000000 1");
  EXPECT_EQ(project.counters.timebase_beats, 1);
  EXPECT_EQ(project.counters.timebase_time, 1);
  EXPECT_EQ(project.counters.midi_tracks_muted, 1);
}

TEST(TrackBlock, EachTrackIsReported) {
  Project project;
  project.track("A");
  project.track("B");
  project.write();
  EXPECT_EQ(project.progress.texts, (std::vector<std::string>{"3/6 writing 0/2", "3/6 writing 1/2"}));
}

// ---- envelopes ----

// The block names of a text, in order, with their ARM and DEFSHAPE.
std::string blocks_of(const std::string& text) {
  std::string found;
  for (int k = 0; line_of(text, "ARM", k) != "-"; ++k) {
    found += " arm" + line_of(text, "ARM", k) + " shape" + line_of(text, "DEFSHAPE", k).substr(0, 1);
  }
  return found;
}

TEST(Envelopes, AStripsLanesInOrderWithTrimNeverArmed) {
  Project project;
  StripRecord strip = strip_of(0, 0);
  strip.volume_lane = lane({{1000, 0}});
  strip.mute_lane = lane({{0, 0}, {2000, 1}}, 1);
  strip.pan_lane = lane({{1000, 100}, {2000, 0}}, -50);
  strip.trim_lane = lane({{1000, -60}});
  project.strips = {strip};
  project.rows["T"].automation_mode = 1;
  project.track("T");
  const std::string text = project.write();
  EXPECT_EQ(blocks_of(text), " arm1 shape0 arm1 shape1 arm1 shape0 arm0 shape0");
  EXPECT_LT(text.find("<VOLENV2"), text.find("<MUTEENV"));
  EXPECT_LT(text.find("<MUTEENV"), text.find("<PANENV2"));
  EXPECT_LT(text.find("<PANENV2"), text.find("<VOLENV3"));
  EXPECT_NE(text.find("    <MUTEENV\n"
                      "      ACT 1 -1\n"
                      "      VIS 1 1 1\n"
                      "      LANEHEIGHT 0 0\n"
                      "      ARM 1\n"
                      "      DEFSHAPE 1 -1 -1\n"
                      "      PT 0.0000000000 0.000000000 1\n"
                      "      PT 0.0000000000 1.000000000 1\n"
                      "      PT 2.0000000000 0.000000000 1\n"
                      "    >\n"),
            std::string::npos);
  EXPECT_NE(text.find("      PT 0.0000000000 0.500000000 0\n"
                      "      PT 1.0000000000 -1.000000000 0\n"
                      "      PT 2.0000000000 0.000000000 0\n"),
            std::string::npos);
  EXPECT_EQ(project.counters.automation_points, 6);
  EXPECT_EQ(project.counters.tracks_with_points, 1);
}

TEST(Envelopes, ADualPanStripWritesBothSidesThoughOneIsEmpty) {
  Project project;
  StripRecord strip = strip_of(0, 0, 0, true);
  strip.dual_pan = 1;
  strip.dual_left_lane = lane({{1000, -40}}, -100);
  strip.right_pan_lane = lane({}, 100);
  project.strips = {strip};
  project.track("T");
  const std::string text = project.write();
  EXPECT_NE(text.find("<DUALPANENVL\n"), std::string::npos);
  EXPECT_NE(text.find("    <DUALPANENV\n"
                      "      ACT 1 -1\n"
                      "      VIS 1 1 1\n"
                      "      LANEHEIGHT 0 0\n"
                      "      ARM 1\n"
                      "      DEFSHAPE 0 -1 -1\n"
                      "      PT 0.0000000000 -1.000000000 0\n"
                      "    >\n"),
            std::string::npos);
  EXPECT_EQ(project.counters.automation_points, 1);
}

TEST(Envelopes, AWideStripHasNoSinglePan) {
  Project project;
  StripRecord strip = strip_of(0, 0);
  strip.pan_lane = lane({{1000, 100}, {2000, 0}});
  project.strips = {strip};
  project.wide_strips = {"T"};
  project.track("T");
  EXPECT_EQ(project.write().find("PANENV2"), std::string::npos);
  EXPECT_EQ(project.counters.surround_pan_points, 2);
  EXPECT_EQ(project.counters.automation_points, 0);
  EXPECT_EQ(project.counters.tracks_with_points, 0);
}

TEST(Envelopes, LanesInTicksGoByTheTempoMap) {
  AutomationLane ticks = lane({{960000, 0}, {1920000, 0}});
  ticks.in_ticks = true;
  TempoMap tempo;
  tempo.session_tempo = 60.0;
  StringTarget target;
  {
    ProjectText out(target);
    EXPECT_EQ(
        write_envelope(out, "AUXVOLENV", ticks, EnvelopeKind::kVolume, "    ", false, {true, true}, {tempo, 1000.0}),
        2);
    EXPECT_EQ(write_envelope(out, "AUXVOLENV", lane({}), EnvelopeKind::kVolume, "    ", false, {}, {tempo, 1000.0}), 0);
  }
  EXPECT_EQ(blocks_of(target.text), " arm0 shape0");
  EXPECT_EQ(line_of(target.text, "PT", 1), "1.0000000000 1.000000000 0");
  EXPECT_EQ(line_of(target.text, "PT", 2), "2.0000000000 1.000000000 0");
}

TEST(Envelopes, TheMastersStandTwoBlanksIn) {
  StripRecord master;
  master.mute_lane = lane({{1000, 1}});
  const TempoMap tempo;
  EXPECT_EQ(master_envelopes(master, {tempo, 1000.0}),
            "  <MASTERMUTEENV\n"
            "    ACT 1 -1\n"
            "    VIS 1 1 1\n"
            "    LANEHEIGHT 0 0\n"
            "    ARM 0\n"
            "    DEFSHAPE 1 -1 -1\n"
            "    PT 0.0000000000 1.000000000 1\n"
            "    PT 1.0000000000 0.000000000 1\n"
            "  >\n");
  EXPECT_EQ(master_envelopes(StripRecord{}, {tempo, 1000.0}), "");
}

// ---- comments ----

TEST(Comments, LinesCannotBreakTheProject) {
  struct Case {
    std::string_view comment;
    std::vector<std::string> lines;
  };
  using namespace std::string_view_literals;
  const Case cases[] = {
      {"", {}},
      {"\r\n\n\r\n", {}},
      {"one", {"one"}},
      {"one\r\ntwo\n\nfour\n\n", {"one", "two", "", "four"}},
      {">\n>", {" >", " >"}},
      {">>\n >\n> ", {">>", " >", "> "}},
      {"a\0b\x1b\tc\x7f\xc3\xa9"sv, {"ab\tc\x7f\xc3\xa9"}},
      {"\r>\r\n", {" >"}},
  };
  for (const Case& c : cases) EXPECT_EQ(comment_lines(c.comment), c.lines) << c.comment;
}

TEST(Comments, ProjectNotesNameEachTrackOnce) {
  EXPECT_EQ(project_notes({{"Vox", "take 3\nnot 2"}, {"Empty", "\n\n"}, {"Bass", ">"}}),
            "  <NOTES 0 2\n"
            "    |Vox: take 3\n"
            "    |    not 2\n"
            "    |Bass:  >\n"
            "  >\n");
  EXPECT_EQ(project_notes({}), "");
}

TEST(Comments, OnlyItemModeWritesAnItemButEveryModeNamesTheTrack) {
  for (const int mode : {0, 1, 2}) {
    Project project;
    project.options.comments_mode = mode;
    project.rows["T"].comment = "hello";
    project.track("T");
    const std::string text = project.write();
    EXPECT_EQ(text.find("Pro Tools comment") != std::string::npos, mode == 0);
    EXPECT_EQ(project.counters.comment_items, mode == 0 ? 1 : 0);
    EXPECT_EQ(project.counters.commented_tracks, std::vector<std::string>{"T"});
  }
}

}  // namespace
}  // namespace frt

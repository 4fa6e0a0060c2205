// What is printed of a clip, and where its audio file is looked for.
#include "writer/audio_item.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/project_text.h"
#include "support/temp_folder.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;

struct Project {
  ConversionOptions options;
  AudioFileFolders file_folders;
  RunCounters counters;

  std::string items_of(const OutputTrack& track) {
    MediaFolders media{"/media", "", file_folders};
    AudioItems items{options, media, 1000.0};
    return test::written_by([&](ProjectText& out) { write_audio_items(out, track, items, counters); });
  }
  std::string item(const OutputItem& item) {
    OutputTrack track;
    track.items = {item};
    return items_of(track);
  }
};

OutputItem plain_item() {
  OutputItem item;
  item.position = 1.5;
  item.length = 2.0;
  item.clip_name = "Vox_01";
  item.file_name = "vox.wav";
  return item;
}

TEST(AudioItem, AClipWithEverything) {
  Project project;
  OutputItem item = plain_item();
  item.position = 1.0 / 3.0;
  item.sync_offset = 0.25;
  item.source_offset = 12.125;
  item.fade_in = 0.5;
  item.fade_in_shape = 5.1;
  item.fade_out = 0.0625;
  item.fade_out_shape = 1;
  item.muted = item.locked = item.polarity = item.has_gain = true;
  item.playrate = 1.25;
  item.pitch_semitones = -2.5;
  item.gain_db = -6.0;
  item.pan_side = 1.0;
  item.clip_color = 0x1000001;
  item.clip_name = "a \"quoted\" name";
  const std::vector<GainPoint> line = {{12125, 0.0}, {13125, -20.0}};
  item.gain_envelope = &line;
  EXPECT_EQ(project.item(item), R"text(    <ITEM
      POSITION 0.3333333333
      SNAPOFFS 0.25
      LENGTH 2.0000000000
      LOOP 0
      ALLTAKES 0
      FADEIN 5.1 0.5000000000 0 5.1 0 0 0
      FADEOUT 1 0.0625000000 0 1 0 0 0
      MUTE 1 0
      LOCK 1
      SOFFS 12.1250000000
      COLOR 16777217 R
      PLAYRATE 1.250000000 1 -2.500000 -1 0 0.0025
      CHANMODE 0
      NAME 'a "quoted" name'
      VOLPAN 0.501187234 1 -1 -1
      <VOLENV
        ACT 1 -1
        VIS 1 1 1
        LANEHEIGHT 0 0
        ARM 0
        DEFSHAPE 0 -1 -1
        VOLTYPE 1
        PT 0.0000000000 1.000000000 0
        PT 1.0000000000 0.100000000 0
      >
      <SOURCE WAVE
        FILE "/media/vox.wav"
      >
    >
)text");
  EXPECT_EQ(project.counters.sync_point_clips, 1);
  EXPECT_EQ(project.counters.locked_clips, 1);
  EXPECT_EQ(project.counters.gain_envelopes, 1);

  project.options.no_clip_colors = true;
  EXPECT_EQ(lines_of(project.item(item), "COLOR"), Lines{});
  EXPECT_EQ(project.counters.uncolored_by_option, 1);
}

TEST(AudioItem, ASyncPointAtOrBehindTheEndCountsButIsNotWritten) {
  for (const double offset : {2.0, 3.0}) {
    Project project;
    OutputItem item = plain_item();
    item.sync_offset = offset;
    EXPECT_EQ(lines_of(project.item(item), "SNAPOFFS"), Lines{"0"});
    EXPECT_EQ(project.counters.sync_point_clips, 1);
  }
}

TEST(AudioItem, ALineForGainPanOrPolarityAlone) {
  const struct {
    bool has_gain;
    double gain_db, pan;
    bool polarity;
    Lines line;
  } cases[] = {
      {false, 3, 0, false, {}},  // a gain that is not said to be one
      {true, 0, 0, false, {"1.000000000 0 1 -1"}},
      {true, 6, 0, false, {"1.995262315 0 1 -1"}},
      {false, 0, -1, false, {"1.000000000 -1 1 -1"}},
      {false, 0, 0, true, {"1.000000000 0 -1 -1"}},
  };
  for (const auto& c : cases) {
    OutputItem item = plain_item();
    item.has_gain = c.has_gain;
    item.gain_db = c.gain_db;
    item.pan_side = c.pan;
    item.polarity = c.polarity;
    EXPECT_EQ(lines_of(Project().item(item), "VOLPAN"), c.line);
  }
}

TEST(AudioItem, ThreeStretchMarkersReplaceTheRateAndTheTwentyNinthBeginsALine) {
  OutputItem item = plain_item();
  item.playrate = 2.0;
  const auto expect_lines = [&](const char* rate, const Lines& markers) {
    const std::string text = Project().item(item);
    EXPECT_EQ(lines_of(text, "PLAYRATE"), Lines{std::string(rate) + " 1 0.000000 -1 0 0.0025"});
    EXPECT_EQ(lines_of(text, "SM"), markers);
  };
  item.warp = {{0, 0}, {1, 2}};
  expect_lines("2.000000000", {});
  item.warp.emplace_back(1.5, 2.5);
  std::string line = "0.0000000000 0.0000000000 + 1.0000000000 2.0000000000 + 1.5000000000 2.5000000000";
  expect_lines("1.000000000", {line});

  for (int k = 3; k < 28; ++k) {
    item.warp.emplace_back(k, k);
    line += format_text(" + %d.0000000000 %d.0000000000", k, k);
  }
  expect_lines("1.000000000", {line});
  item.warp.emplace_back(28, 28);
  expect_lines("1.000000000", {line, "28.0000000000 28.0000000000"});
}

TEST(AudioItem, AGainLineIsCutToTheItem) {
  const struct {
    const char* what;
    std::vector<GainPoint> line;  // 1000 samples a second; the item starts 1 s into its source and lasts 2 s
    Lines points;
  } cases[] = {
      {"inside", {{1500, 0}, {2000, -20}}, {"0.5000000000 1.000000000 0", "1.0000000000 0.100000000 0"}},
      {"one point is no line", {{1500, -20}}, {}},
      {"spans it", {{0, 0}, {4000, -80}}, {"0.0000000000 0.100000000 0", "2.0000000000 0.001000000 0"}},
      {"on both edges", {{1000, 0}, {3000, -20}}, {"0.0000000000 1.000000000 0", "2.0000000000 0.100000000 0"}},
      {"only the last before it counts",
       {{0, 60}, {500, 0}, {1500, -20}, {2000, 0}},
       {"0.0000000000 0.316227766 0", "0.5000000000 0.100000000 0", "1.0000000000 1.000000000 0"}},
      {"only the first behind it counts",
       {{2500, 0}, {3500, -20}, {4000, 60}},
       {"1.5000000000 1.000000000 0", "2.0000000000 0.316227766 0"}},
      {"one point left", {{0, 0}, {1000, -20}}, {}},
      {"all before", {{0, 0}, {500, 0}, {999, 0}}, {}},
      {"all behind", {{3500, 0}, {4000, 0}}, {}},
  };
  for (const auto& c : cases) {
    Project project;
    OutputItem item = plain_item();
    item.source_offset = 1.0;
    item.gain_envelope = &c.line;
    EXPECT_EQ(lines_of(project.item(item), "PT"), c.points) << c.what;
    EXPECT_EQ(project.counters.gain_envelopes, c.points.empty() ? 0 : 1) << c.what;
  }
}

TEST(AudioItem, LanesShareTheHeightInListOrder) {
  Project project;
  OutputTrack track;
  track.items = {plain_item()};
  track.lanes = {{"Vox.01", {plain_item(), plain_item()}}, {"Vox.02", {plain_item()}}};
  EXPECT_EQ(lines_of(project.items_of(track), "YPOS"),
            (Lines{"0.000000 0.333333 2", "0.333333 0.333333 2", "0.333333 0.333333 2", "0.666667 0.333333 2"}));
  EXPECT_EQ(project.counters.clips_written, 4);
}

// ---- where the files are ----

struct MediaPath : testing::Test {
  test::TempFolder folder;
  AudioFileFolders listed;
  RunCounters counters;
  MediaFolders media{folder.at("Audio Files"), folder.path().string(), listed};

  void put(const std::string& name, const std::vector<std::string>& folders) {
    for (const std::string& in : folders) {
      std::filesystem::create_directories(folder.path() / in);
      folder.put(in + "/" + name, "audio");
    }
  }
  // Where a file is expected, from the session's folder on.
  std::string path_of(const char* name, std::uint16_t number = 0) {
    return resolve_media_path(media, name, number, counters).path.substr(folder.path().string().size() + 1);
  }
};

TEST_F(MediaPath, TheMediaFolderThenTheListedFolderThenTheSessionsOwn) {
  put("media.wav", {"Audio Files", "Listed", "Rendered Files"});
  put("listed.wav", {"Listed", "Rendered Files", "Bounced Files"});
  put("gone.wav", {"Rendered Files", "Bounced Files"});
  put("bounced.wav", {"Bounced Files"});
  listed.by_name = {{"media.wav", "Listed"}, {"listed.wav", "Listed"}, {"gone.wav", "Gone"}};
  EXPECT_EQ(path_of("media.wav"), "Audio Files/media.wav");
  EXPECT_EQ(counters.sibling_hits, 0);
  EXPECT_EQ(path_of("listed.wav"), "Listed/listed.wav");
  EXPECT_EQ(path_of("gone.wav"), "Rendered Files/gone.wav");
  EXPECT_EQ(path_of("bounced.wav"), "Bounced Files/bounced.wav");
  EXPECT_EQ(counters.sibling_hits, 3);
  EXPECT_EQ(counters.sibling_folders,
            (std::map<std::string, int>{{"Bounced Files", 1}, {"Listed", 1}, {"Rendered Files", 1}}));

  std::filesystem::remove_all(folder.path() / "Bounced Files");
  EXPECT_EQ(path_of("bounced.wav"), "Bounced Files/bounced.wav") << "a file is looked for once";
  EXPECT_EQ(counters.sibling_hits, 3);
}

TEST_F(MediaPath, AMissingFileIsExpectedInTheMediaFolder) {
  put("a.wav", {"Audio Files"});
  EXPECT_EQ(path_of("b.wav", 1), "Audio Files/b.wav");
  check_audio_files(media, {{"b.wav", 1}, {"a.wav", 0}, {"c.wav", 2}}, counters);
  EXPECT_EQ(counters.missing_files, (Lines{"b.wav", "c.wav"}));
}

TEST_F(MediaPath, EveryClipOfAFileInASiblingFolderCounts) {
  put("vox.wav", {"Bounced Files"});
  const ConversionOptions options;
  AudioItems items{options, media};
  OutputTrack track;
  track.items = {plain_item(), plain_item()};
  test::written_by([&](ProjectText& out) { write_audio_items(out, track, items, counters); });
  EXPECT_EQ(counters.sibling_hits, 1);
  EXPECT_EQ(counters.clips_in_sibling_folders, 2);
}

TEST_F(MediaPath, OnlyFilesOfOneNameAreToldApartByNumber) {
  put("a.wav", {"Audio Files", "Stems", "Mixes"});
  put("own.wav", {"Audio Files", "Stems"});
  listed.by_number = {"Audio Files", "Stems", "Mixes", "Gone", ""};
  listed.name_counts = {{"a.wav", 5}, {"own.wav", 1}};
  EXPECT_EQ(path_of("a.wav", 0), "Audio Files/a.wav");  // the media folder's own file is no sibling
  EXPECT_EQ(counters.sibling_hits, 0);
  EXPECT_EQ(path_of("a.wav", 1), "Stems/a.wav");
  for (int again = 0; again < 2; ++again) EXPECT_EQ(path_of("a.wav", 2), "Mixes/a.wav");
  for (const auto number : std::vector<std::uint16_t>{3, 4, 99}) {  // not where it is listed: the usual order
    EXPECT_EQ(path_of("a.wav", number), "Audio Files/a.wav") << number;
  }
  EXPECT_EQ(path_of("own.wav", 1), "Audio Files/own.wav");
  EXPECT_EQ(counters.sibling_hits, 2);
}

}  // namespace
}  // namespace frt

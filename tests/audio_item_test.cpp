// What is printed of a clip, and where its audio file is looked for.
#include "writer/audio_item.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

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

struct Project {
  ConversionOptions options;
  AudioFileFolders file_folders;
  RunCounters counters;
  double sample_rate = 1000.0;

  std::string items_of(const OutputTrack& track) {
    MediaFolders media{"/media", "", file_folders};
    AudioItems items{options, media, sample_rate};
    StringTarget target;
    {
      ProjectText out(target);
      write_audio_items(out, track, items, counters);
    }
    return target.text;
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

// The lines of a text that begin with the word given, blanks aside.
std::string lines_of(const std::string& text, std::string_view word) {
  std::string found;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    const std::string line = text.substr(at, end - at);
    const std::size_t first = line.find_first_not_of(' ');
    if (first != std::string::npos && std::string_view(line).substr(first).starts_with(word)) found += line + "\n";
    at = end + 1;
  }
  return found;
}

TEST(AudioItem, APlainClip) {
  Project project;
  EXPECT_EQ(project.item(plain_item()),
            "    <ITEM\n"
            "      POSITION 1.5000000000\n"
            "      SNAPOFFS 0\n"
            "      LENGTH 2.0000000000\n"
            "      LOOP 0\n"
            "      ALLTAKES 0\n"
            "      FADEIN 0 0.0000000000 0 0 0 0 0\n"
            "      FADEOUT 0 0.0000000000 0 0 0 0 0\n"
            "      MUTE 0 0\n"
            "      SOFFS 0.0000000000\n"
            "      PLAYRATE 1.000000000 1 0.000000 -1 0 0.0025\n"
            "      CHANMODE 0\n"
            "      NAME \"Vox_01\"\n"
            "      <SOURCE WAVE\n"
            "        FILE \"/media/vox.wav\"\n"
            "      >\n"
            "    >\n");
  EXPECT_EQ(project.counters.clips_written, 1);
  EXPECT_EQ(project.counters.sync_point_clips + project.counters.locked_clips + project.counters.gain_envelopes, 0);
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
  EXPECT_EQ(project.item(item),
            "    <ITEM\n"
            "      POSITION 0.3333333333\n"
            "      SNAPOFFS 0.25\n"
            "      LENGTH 2.0000000000\n"
            "      LOOP 0\n"
            "      ALLTAKES 0\n"
            "      FADEIN 5.1 0.5000000000 0 5.1 0 0 0\n"
            "      FADEOUT 1 0.0625000000 0 1 0 0 0\n"
            "      MUTE 1 0\n"
            "      LOCK 1\n"
            "      SOFFS 12.1250000000\n"
            "      COLOR 16777217 R\n"
            "      PLAYRATE 1.250000000 1 -2.500000 -1 0 0.0025\n"
            "      CHANMODE 0\n"
            "      NAME 'a \"quoted\" name'\n"
            "      VOLPAN 0.501187234 1 -1 -1\n"
            "      <VOLENV\n"
            "        ACT 1 -1\n"
            "        VIS 1 1 1\n"
            "        LANEHEIGHT 0 0\n"
            "        ARM 0\n"
            "        DEFSHAPE 0 -1 -1\n"
            "        VOLTYPE 1\n"
            "        PT 0.0000000000 1.000000000 0\n"
            "        PT 1.0000000000 0.100000000 0\n"
            "      >\n"
            "      <SOURCE WAVE\n"
            "        FILE \"/media/vox.wav\"\n"
            "      >\n"
            "    >\n");
  EXPECT_EQ(project.counters.sync_point_clips, 1);
  EXPECT_EQ(project.counters.locked_clips, 1);
  EXPECT_EQ(project.counters.gain_envelopes, 1);
}

TEST(AudioItem, ASyncPointAtOrBehindTheEndCountsButIsNotWritten) {
  for (const double offset : {2.0, 3.0}) {
    Project project;
    OutputItem item = plain_item();
    item.sync_offset = offset;
    EXPECT_EQ(lines_of(project.item(item), "SNAPOFFS"), "      SNAPOFFS 0\n");
    EXPECT_EQ(project.counters.sync_point_clips, 1);
  }
}

TEST(AudioItem, ALineForGainPanOrPolarityAlone) {
  struct Case {
    bool has_gain;
    double gain_db, pan;
    bool polarity;
    const char* line;
  };
  const Case cases[] = {
      {false, 0, 0, false, ""},
      {false, 3, 0, false, ""},  // a gain that is not said to be one
      {true, 0, 0, false, "      VOLPAN 1.000000000 0 1 -1\n"},
      {true, 6, 0, false, "      VOLPAN 1.995262315 0 1 -1\n"},
      {false, 0, -1, false, "      VOLPAN 1.000000000 -1 1 -1\n"},
      {false, 0, 0, true, "      VOLPAN 1.000000000 0 -1 -1\n"},
  };
  for (const Case& c : cases) {
    Project project;
    OutputItem item = plain_item();
    item.has_gain = c.has_gain;
    item.gain_db = c.gain_db;
    item.pan_side = c.pan;
    item.polarity = c.polarity;
    EXPECT_EQ(lines_of(project.item(item), "VOLPAN"), c.line);
  }
}

TEST(AudioItem, WithoutClipColorsAColorIsCountedInstead) {
  Project project;
  project.options.no_clip_colors = true;
  OutputItem item = plain_item();
  item.clip_color = 0x1000001;
  EXPECT_EQ(lines_of(project.item(item), "COLOR"), "");
  EXPECT_EQ(project.counters.uncolored_by_option, 1);
}

TEST(AudioItem, StretchMarkersReplaceTheRateFromThreeOn) {
  Project project;
  OutputItem item = plain_item();
  item.playrate = 2.0;
  item.warp = {{0, 0}, {1, 2}};
  std::string text = project.item(item);
  EXPECT_EQ(lines_of(text, "SM"), "");
  EXPECT_EQ(lines_of(text, "PLAYRATE"), "      PLAYRATE 2.000000000 1 0.000000 -1 0 0.0025\n");

  item.warp.emplace_back(1.5, 2.5);
  text = project.item(item);
  EXPECT_EQ(lines_of(text, "SM"),
            "      SM 0.0000000000 0.0000000000 + 1.0000000000 2.0000000000 + 1.5000000000 2.5000000000\n");
  EXPECT_EQ(lines_of(text, "PLAYRATE"), "      PLAYRATE 1.000000000 1 0.000000 -1 0 0.0025\n");
}

TEST(AudioItem, EveryTwentyEighthStretchMarkerBeginsALine) {
  Project project;
  OutputItem item = plain_item();
  for (int k = 0; k < 29; ++k) item.warp.emplace_back(k, k);
  std::string expected = "      SM 0.0000000000 0.0000000000";
  for (int k = 1; k < 28; ++k) expected += format_text(" + %d.0000000000 %d.0000000000", k, k);
  expected += "\n      SM 28.0000000000 28.0000000000\n";
  EXPECT_EQ(lines_of(project.item(item), "SM"), expected);
}

struct GainCase {
  const char* what;
  std::vector<GainPoint> line;  // 1000 samples a second; the item starts 1 s into its source and lasts 2 s
  const char* points;
};

TEST(AudioItem, AGainLineIsCutToTheItem) {
  const GainCase cases[] = {
      {"inside", {{1500, 0}, {2000, -20}}, "0.5000000000 1.000000000 1.0000000000 0.100000000 "},
      {"one point is no line", {{1500, -20}}, ""},
      {"starts before", {{0, 0}, {2000, -40}}, "0.0000000000 0.100000000 1.0000000000 0.010000000 "},
      {"goes on behind", {{2000, 0}, {4000, -40}}, "1.0000000000 1.000000000 2.0000000000 0.100000000 "},
      {"spans it", {{0, 0}, {4000, -80}}, "0.0000000000 0.100000000 2.0000000000 0.001000000 "},
      {"on both edges", {{1000, 0}, {3000, -20}}, "0.0000000000 1.000000000 2.0000000000 0.100000000 "},
      {"only the last before it counts",
       {{0, 60}, {500, 0}, {1500, -20}, {2000, 0}},
       "0.0000000000 0.316227766 0.5000000000 0.100000000 1.0000000000 1.000000000 "},
      {"only the first behind it counts",
       {{2500, 0}, {3500, -20}, {4000, 60}},
       "1.5000000000 1.000000000 2.0000000000 0.316227766 "},
      {"one point left", {{0, 0}, {1000, -20}}, ""},
      {"all before", {{0, 0}, {500, 0}, {999, 0}}, ""},
      {"all behind", {{3500, 0}, {4000, 0}}, ""},
  };
  for (const GainCase& c : cases) {
    Project project;
    OutputItem item = plain_item();
    item.source_offset = 1.0;
    item.gain_envelope = &c.line;
    std::string points;
    const std::string lines = lines_of(project.item(item), "PT ");
    for (std::size_t at = 0; at < lines.size();) {  // "        PT <time> <gain> 0"
      const std::size_t end = lines.find('\n', at);
      points += lines.substr(at + 11, end - at - 11 - 1);
      at = end + 1;
    }
    EXPECT_EQ(points, c.points) << c.what;
    EXPECT_EQ(project.counters.gain_envelopes, *c.points ? 1 : 0) << c.what;
  }
}

TEST(AudioItem, LanesShareTheHeightInListOrder) {
  Project project;
  OutputTrack track;
  track.items = {plain_item()};
  track.lanes = {{"Vox.01", {plain_item(), plain_item()}}, {"Vox.02", {plain_item()}}};
  EXPECT_EQ(lines_of(project.items_of(track), "YPOS"),
            "      YPOS 0.000000 0.333333 2\n"
            "      YPOS 0.333333 0.333333 2\n"
            "      YPOS 0.333333 0.333333 2\n"
            "      YPOS 0.666667 0.333333 2\n");
  EXPECT_EQ(project.counters.clips_written, 4);
}

// ---- where the files are ----

struct SessionFolder {
  test::TempFolder folder;
  AudioFileFolders listed;
  RunCounters counters;

  void put(const std::string& in, const std::string& name) {
    std::filesystem::create_directories(folder.path() / in);
    folder.put(in + "/" + name, "audio");
  }
  MediaFolders media() const { return {folder.at("Audio Files"), folder.path().string(), listed}; }
  // The path from the session's folder on.
  std::string relative(const MediaPath& found) const { return found.path.substr(folder.path().string().size() + 1); }
};

TEST(MediaPath, TheMediaFolderComesBeforeAllOthers) {
  SessionFolder session;
  for (const char* in : {"Audio Files", "Rendered Files", "Listed"}) session.put(in, "a.wav");
  session.listed.by_name = {{"a.wav", "Listed"}};
  MediaFolders media = session.media();
  const MediaPath& found = resolve_media_path(media, "a.wav", 0, session.counters);
  EXPECT_EQ(session.relative(found), "Audio Files/a.wav");
  EXPECT_TRUE(found.found && found.in_media_folder);
  EXPECT_EQ(session.counters.sibling_hits, 0);
}

TEST(MediaPath, ThenTheListedFolderThenTheSessionsOwn) {
  SessionFolder session;
  for (const char* in : {"Listed", "Rendered Files", "Bounced Files"}) session.put(in, "a.wav");
  for (const char* in : {"Rendered Files", "Bounced Files"}) session.put(in, "b.wav");
  session.put("Bounced Files", "c.wav");
  session.listed.by_name = {{"a.wav", "Listed"}, {"b.wav", "Gone"}};
  MediaFolders media = session.media();
  EXPECT_EQ(session.relative(resolve_media_path(media, "a.wav", 0, session.counters)), "Listed/a.wav");
  EXPECT_EQ(session.relative(resolve_media_path(media, "b.wav", 0, session.counters)), "Rendered Files/b.wav");
  EXPECT_EQ(session.relative(resolve_media_path(media, "c.wav", 0, session.counters)), "Bounced Files/c.wav");
  EXPECT_EQ(session.counters.sibling_hits, 3);
  EXPECT_EQ(session.counters.sibling_folders,
            (std::map<std::string, int>{{"Bounced Files", 1}, {"Listed", 1}, {"Rendered Files", 1}}));
}

TEST(MediaPath, AFileIsLookedForOnce) {
  SessionFolder session;
  session.put("Bounced Files", "a.wav");
  MediaFolders media = session.media();
  resolve_media_path(media, "a.wav", 0, session.counters);
  std::filesystem::remove_all(session.folder.path() / "Bounced Files");
  EXPECT_EQ(session.relative(resolve_media_path(media, "a.wav", 0, session.counters)), "Bounced Files/a.wav");
  EXPECT_EQ(session.counters.sibling_hits, 1);
}

TEST(MediaPath, AMissingFileIsExpectedInTheMediaFolder) {
  SessionFolder session;
  session.put("Audio Files", "a.wav");
  MediaFolders media = session.media();
  const MediaPath& missing = resolve_media_path(media, "b.wav", 1, session.counters);
  EXPECT_EQ(session.relative(missing), "Audio Files/b.wav");
  EXPECT_FALSE(missing.found);
  check_audio_files(media, {{"b.wav", 1}, {"a.wav", 0}, {"c.wav", 2}}, session.counters);
  EXPECT_EQ(session.counters.missing_files, (std::vector<std::string>{"b.wav", "c.wav"}));
}

TEST(MediaPath, EveryClipOfAFileInASiblingFolderCounts) {
  SessionFolder session;
  session.put("Bounced Files", "vox.wav");
  MediaFolders media = session.media();
  const ConversionOptions options;
  AudioItems items{options, media};
  OutputTrack track;
  track.items = {plain_item(), plain_item()};
  StringTarget target;
  ProjectText out(target);
  write_audio_items(out, track, items, session.counters);
  EXPECT_EQ(session.counters.sibling_hits, 1);
  EXPECT_EQ(session.counters.clips_in_sibling_folders, 2);
}

TEST(MediaPath, TwoFilesOfOneNameAreToldApartByNumber) {
  SessionFolder session;
  for (const char* in : {"Audio Files", "Stems", "Mixes"}) session.put(in, "a.wav");
  session.listed.by_number = {"Audio Files", "Stems", "Mixes", "Gone", ""};
  session.listed.name_counts = {{"a.wav", 5}};
  MediaFolders media = session.media();
  const auto path_of = [&](std::uint16_t number) {
    return session.relative(resolve_media_path(media, "a.wav", number, session.counters));
  };
  EXPECT_EQ(path_of(0), "Audio Files/a.wav");  // the media folder's own file is no sibling
  EXPECT_EQ(session.counters.sibling_hits, 0);
  EXPECT_EQ(path_of(1), "Stems/a.wav");
  EXPECT_EQ(path_of(2), "Mixes/a.wav");
  EXPECT_EQ(path_of(2), "Mixes/a.wav");
  EXPECT_EQ(path_of(3), "Audio Files/a.wav");  // not where it is listed: the usual order
  EXPECT_EQ(path_of(4), "Audio Files/a.wav");
  EXPECT_EQ(path_of(99), "Audio Files/a.wav");
  EXPECT_EQ(session.counters.sibling_hits, 2);
}

TEST(MediaPath, AFileOfItsOwnNameIgnoresItsNumber) {
  SessionFolder session;
  for (const char* in : {"Audio Files", "Stems"}) session.put(in, "a.wav");
  session.listed.by_number = {"Stems"};
  session.listed.name_counts = {{"a.wav", 1}};
  MediaFolders media = session.media();
  EXPECT_EQ(session.relative(resolve_media_path(media, "a.wav", 0, session.counters)), "Audio Files/a.wav");
}

}  // namespace
}  // namespace frt

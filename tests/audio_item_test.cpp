// Items as the written list of tracks decides them, the limits of their printing.
#include "writer/audio_item.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mix/items.h"
#include "support/project_text.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;

// One second into its source and two seconds long; 1000 samples a second.
struct Scene {
  const Media listed;
  MediaFiles media{{"/media", "", "/", "/"}, listed};
  ConversionOptions options;
  std::vector<OutputTrack> tracks = std::vector<OutputTrack>(1);
  OutputItem& item = tracks[0].items.emplace_back();
  ItemCounts counts;

  Scene() {
    item.source_offset = 1.0;
    item.length = 2.0;
  }
  std::string written() {
    counts = mix_items(tracks, media, {{}, 1000.0}, options);
    return test::written_by([&](ProjectText& out) { write_audio_items(out, tracks[0]); });
  }
};

TEST(AudioItem, ASyncPointAtOrBehindTheEndCountsButIsNotWritten) {
  for (const auto& [offset, line] : {std::pair{1.75, "1.75"}, {2.0, "0"}, {3.0, "0"}}) {
    Scene scene;
    scene.item.sync_offset = offset;
    EXPECT_EQ(lines_of(scene.written(), "SNAPOFFS"), Lines{line});
    EXPECT_EQ(scene.counts.sync_point_clips, 1);
  }
}

TEST(AudioItem, AClipsColorIsLeftOutIfAskedFor) {
  for (const bool left_out : {false, true}) {
    Scene scene;
    scene.item.clip_color = 0x1000001;
    scene.options.no_clip_colors = left_out;
    EXPECT_EQ(lines_of(scene.written(), "COLOR"), left_out ? Lines{} : Lines{"16777217 R"});
    EXPECT_EQ(scene.counts.uncolored_by_option, left_out ? 1 : 0);
  }
}

TEST(AudioItem, ALineForGainPanOrPolarityAlone) {
  const struct {
    bool has_gain;
    double gain_db, pan;
    bool polarity;
    Lines line;
  } rows[] = {
      {false, 3, 0, false, {}},  // a gain that is not said to be one
      {true, 0, 0, false, {"1.000000000 0 1 -1"}},
      {false, 0, -1, false, {"1.000000000 -1 1 -1"}},
      {false, 0, 0, true, {"1.000000000 0 -1 -1"}},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.item.has_gain = row.has_gain;
    scene.item.gain_db = row.gain_db;
    scene.item.pan_side = row.pan;
    scene.item.polarity = row.polarity;
    EXPECT_EQ(lines_of(scene.written(), "VOLPAN"), row.line);
  }
}

TEST(AudioItem, ThreeStretchMarkersReplaceTheRateAndTheTwentyNinthBeginsALine) {
  for (const int count : {2, 3, 28, 29}) {
    Scene scene;
    scene.item.playrate = 2.0;
    scene.item.pitch_semitones = -2.5;
    Lines lines;
    for (int k = 0; k < count; ++k) {
      scene.item.warp.emplace_back(k, 2 * k);
      if (count < 3) continue;
      if (k % 28 == 0) lines.emplace_back();
      lines.back() += format_text("%s%d.0000000000 %d.0000000000", k % 28 == 0 ? "" : " + ", k, 2 * k);
    }
    const std::string text = scene.written();
    EXPECT_EQ(lines_of(text, "SM"), lines);
    const std::string rate = count < 3 ? "2" : "1";
    EXPECT_EQ(lines_of(text, "PLAYRATE"), Lines{rate + ".000000000 1 -2.500000 -1 0 0.0025"});
  }
}

TEST(AudioItem, AGainLineIsCutToTheItem) {
  const struct {
    const char* what;
    std::vector<GainPoint> line;  // samples in the source
    Lines points;
  } rows[] = {
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
  for (const auto& row : rows) {
    Scene scene;
    scene.item.gain_envelope = &row.line;
    EXPECT_EQ(lines_of(scene.written(), "PT"), row.points) << row.what;
    EXPECT_EQ(scene.counts.gain_envelopes, row.points.empty() ? 0 : 1) << row.what;
  }
}

TEST(AudioItem, LanesShareTheHeightInListOrder) {
  Scene scene;
  scene.tracks[0].lanes = {{"Vox.01", {{}, {}}}, {"Vox.02", std::vector<OutputItem>(1)}};
  EXPECT_EQ(lines_of(scene.written(), "YPOS"),
            (Lines{"0.000000 0.333333 2", "0.333333 0.333333 2", "0.333333 0.333333 2", "0.666667 0.333333 2"}));
  EXPECT_EQ(scene.counts.clips_written, 4);
}

}  // namespace
}  // namespace frt

// Avid's Trim: the gain its words mean, and the polarity that tracks take of it.
#include "standins/trim.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace frt {
namespace {

constexpr std::int32_t kUnity = 1093684240;

struct Channel {
  std::int32_t gain = kUnity;
  std::uint32_t polarity = 0x80000000;
};
constexpr Channel kUp{}, kFlipped{.polarity = 0x7fffffff};

// Trims on strips, each a block of its own in the image.
struct Scene {
  std::string bytes = "....";
  Inserts inserts;

  InsertRecord& trim(std::string_view strip, const std::vector<Channel>& channels) {
    inserts.strips[strip].push_back(static_cast<std::uint32_t>(inserts.records.size()));
    InsertRecord& insert = inserts.records.emplace_back();
    insert.signature = kTrimSignature;
    insert.start = bytes.size();
    for (const Channel& channel : channels) {
      bytes += kTrimSignature;
      bytes.append(40, '.');
      for (const std::uint32_t word : {static_cast<std::uint32_t>(channel.gain), channel.polarity}) {
        for (unsigned shift = 32; shift > 0; shift -= 8) bytes += static_cast<char>(word >> (shift - 8));
      }
    }
    insert.end = bytes.size();
    return insert;
  }
  Trims measure() {
    inserts.image = ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return measure_trims(inserts);
  }
};

// Points of the curve, the two sides of each, and both ends.
TEST(Trim, GainOfItsWord) {
  const struct {
    std::int32_t word;
    const char* db;
  } rows[] = {
      {-161638556, "-12.00"},       {463923640, "-6.00"},
      {778803940, "-3.00"},         {778803940 + 157440150, "-1.50"},
      {1093684240, "+0.00"},        {1635278355, "+3.00"},
      {1635278356, "+3.00"},        {1891381001, "+4.50"},
      {2147483646, "+6.00"},        {2147483647, "+6.00"},
      {-161638557, "-12.00 below"}, {-200000000, "-12.37 below"},
      {INT32_MIN, "-31.05 below"},
  };
  for (const auto& row : rows) {
    const TrimGain gain = trim_gain(row.word);
    EXPECT_EQ(format_text("%+.2f%s", gain.db, gain.below_range ? " below" : ""), row.db) << row.word;
  }
}

// Every cut of a block of two channels: what is left of its records counts, and nothing behind them is read.
TEST(Trim, RecordsEndWithTheirBlock) {
  std::string gains, sides;
  for (std::uint64_t cut = 0; cut <= 112; ++cut) {
    Scene scene;
    InsertRecord& insert = scene.trim("S", {{.gain = 463923640, .polarity = 0x7fffffff}, kFlipped});
    insert.end = insert.start + cut;
    const Trims trims = scene.measure();
    const auto strip = trims.strips.find("S");
    gains += trims.gain_db.empty() ? '0' : trims.counts.unlinked_gains == 0 ? '1' : '2';
    sides += strip == trims.strips.end() ? '0' : strip->second.whole == 1 ? 'W' : 'S';
  }
  EXPECT_EQ(gains, std::string(52, '0') + std::string(56, '1') + std::string(5, '2'));
  EXPECT_EQ(sides, std::string(56, '0') + std::string(56, 'W') + "S");
  // Marks side by side: a record covers what lies in it.
  Scene scene;
  InsertRecord& insert = scene.trim("S", {});
  for (int i = 0; i < 5000; ++i) scene.bytes += kTrimSignature;
  insert.end = scene.bytes.size();
  EXPECT_EQ(scene.measure().gain_db.size(), 1U);
}

// What a track of the strip "S" takes: upright or inverted, one side, and what is told.
TEST(Trim, PolarityOfATrack) {
  using List = std::vector<Channel>;
  const struct {
    const char* what;
    std::vector<List> trims;
    const char* polarity;
  } rows[] = {
      {"upright", {{kUp}}, "0"},
      {"inverted", {{kFlipped}}, "1"},
      {"twice", {{kFlipped}, {kFlipped}}, "0 even"},
      {"three times", {{kFlipped}, {kFlipped}, {kFlipped}}, "1"},
      {"left", {{kFlipped, kUp}}, "0 left"},
      {"right", {{kUp, kFlipped}}, "0 right"},
      {"left, then right", {{kFlipped, kUp}, {kUp, kFlipped}}, "1"},
      {"left twice", {{kFlipped, kUp}, {kFlipped, kUp}}, "0 even"},
      {"both, then left", {{kFlipped}, {kFlipped, kUp}}, "0 right"},
      {"another word than the one for inverted", {{{.polarity = 0x7ffffffe}}}, "0"},
      {"the channels behind the second agree", {{kFlipped, kFlipped, kFlipped}}, "1"},
      {"they don't", {{kFlipped, kFlipped, kUp}}, "1 mixed"},
  };
  for (const auto& row : rows) {
    Scene scene;
    for (const List& channels : row.trims) scene.trim("S", channels);
    const Trims trims = scene.measure();
    TrimPolarity polarity(trims);
    std::string told = polarity.inverted("S", "S") ? "1" : "0";
    const TrimPolarity::Side side = polarity.one_side("S");
    if (side != TrimPolarity::Side::kNone) told += side == TrimPolarity::Side::kLeft ? " left" : " right";
    if (polarity.counts().cancelling_strips > 0) told += " even";
    if (polarity.counts().mixed_surround > 0) told += " mixed";
    EXPECT_EQ(told, row.polarity) << row.what;
    EXPECT_EQ(polarity.counts().strips_without_phase, 0) << row.what;
  }
}

TEST(Trim, SwitchedOffItInvertsNothing) {
  Scene scene;
  scene.trim("S", {kFlipped}).bypassed = true;
  scene.trim("S", {kUp, kFlipped}).inactive = true;
  scene.trim("S", {kUp}).inactive = true;
  scene.trim("S", {{.gain = -161638557}, kUp});
  const Trims trims = scene.measure();
  TrimPolarity polarity(trims);
  EXPECT_FALSE(polarity.inverted("S", "S"));
  const TrimCounts counts = polarity.counts();
  EXPECT_EQ(format_text("%d off, %d play, %d below, %d unlinked", counts.off_and_inverting, counts.playing,
                        counts.gains_below_range, counts.unlinked_gains),
            "2 off, 1 play, 1 below, 1 unlinked");
  EXPECT_EQ(trims.gain_db.size(), 4U);  // a gain is known all the same
}

// A track asks for its strip, its name, and the track that its playlist lies on; a Trim of one record comes first.
TEST(Trim, NamesThatATrackAsksFor) {
  Scene scene;
  scene.trim("Strip", {kFlipped, kUp});
  scene.trim("Name", {kFlipped});
  scene.trim("Name", {kFlipped, kUp});
  scene.trim("Master", {kFlipped});
  scene.trim("Sided", {kUp, kFlipped});
  const Trims trims = scene.measure();
  TrimPolarity polarity(trims);
  EXPECT_FALSE(polarity.inverted("Strip", "Name"));
  EXPECT_EQ(polarity.one_side("Name"), TrimPolarity::Side::kRight);
  EXPECT_EQ(polarity.one_side("Strip"), TrimPolarity::Side::kNone);
  EXPECT_TRUE(polarity.inverted("Master [lane:2]", "Master [lane:2]"));
  EXPECT_FALSE(polarity.inverted("Sided [lane:2]", "Sided [lane:2]"));
  EXPECT_EQ(polarity.one_side("Sided"), TrimPolarity::Side::kNone);  // one side alone is not asked so
  EXPECT_EQ(polarity.counts().strips_without_phase, 2);              // "Strip" and "Sided"
}

}  // namespace
}  // namespace frt

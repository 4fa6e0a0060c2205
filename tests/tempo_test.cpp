// The session's tempo: the fixed tempo, the tempo map, the song start, and the conversion from ticks to seconds.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "session/clock.h"
#include "session/headers/tempo_map.h"
#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;

constexpr double kQuarter = 960000;
constexpr double kRate = 48000;

void signed_tempo(BlockWriter& w, double bpm) {
  w.bytes({0x14, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}).u8(0);
  w.bytes({0x10, 0xa5, 0xd4, 0xe8, 0, 0, 0, 0, 1}).f64(bpm);
}

struct Stored {
  double tick;
  double bpm;
  std::int64_t samples = 0;
};

// One record: 8 bytes of samples, then the values, padded to 61.
void record(BlockWriter& w, const Stored& stored) {
  w.u64(static_cast<std::uint64_t>(stored.samples));
  w.u40(static_cast<std::uint64_t>(static_cast<std::int64_t>(test::kTickOrigin) +
                                   static_cast<std::int64_t>(stored.tick)));
  w.zeros(5).f64(stored.bpm);
}

void tempo_block(BlockWriter& w, const std::vector<Stored>& records, std::string_view tag = "Tempo",
                 std::size_t behind_last = 13) {
  w.open(0x2028, 3).raw(tag).zeros(50 - 9 - tag.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (i > 0) w.zeros(61 - 26);
    record(w, records[i]);
  }
  w.zeros(behind_last).close();
}

TempoMap map_of(const std::vector<std::vector<Stored>>& blocks, double override_bpm = 0) {
  BlockWriter w;
  for (const auto& records : blocks) tempo_block(w, records);
  const Image image(w.take());
  return read_tempo(image.session, kRate, override_bpm);
}

std::string dump(const TempoMap& map) {
  std::string out;
  char line[64];
  for (const TempoEvent& event : map.events) {
    std::snprintf(line, sizeof line, "%g@%g ", event.bpm, event.tick);
    out += line;
  }
  return out;
}

// The conversion told as a walk over the events, for comparison to the last bit.
double walk(const TempoMap& map, double t) {
  if (map.events.empty()) return t * 60 / (map.session_tempo * kQuarter);
  if (t < map.events[0].tick) return t * 60 / (map.events[0].bpm * kQuarter);
  double seconds = 0;
  for (std::size_t i = 0; i < map.events.size(); ++i) {
    if (!(t > map.events[i].tick)) break;
    const double next = i + 1 < map.events.size() ? map.events[i + 1].tick : 1e18;
    const double end = t < next ? t : next;
    seconds += (end - map.events[i].tick) * 60 / (map.events[i].bpm * kQuarter);
  }
  return seconds;
}

TEST(FixedTempo, TheFirstSignedTempoInRangeIsTaken) {
  const struct {
    std::vector<double> tempos;
    double expected;
  } cases[] = {
      {{98.5, 130}, 98.5},
      {{20, 130}, 130},       // 20 itself is out
      {{400, 399.5}, 399.5},  // and 400
      {{std::numeric_limits<double>::quiet_NaN(), 60}, 60},
      {{-90, 1e300}, 77},
  };
  for (const auto& one : cases) {
    BlockWriter w;
    w.zeros(7);
    for (const double tempo : one.tempos) signed_tempo(w, tempo);
    const auto bytes = w.take();
    EXPECT_EQ(find_tempo(ByteView(bytes.data(), bytes.size()), 77), one.expected) << one.tempos[0];
  }
}

TEST(TempoMapBlocks, TheLongestRunOfTempoRecordsIsTheMap) {
  const std::vector<Stored> three = {{0, 100}, {10, 101}, {20, 102}}, other_three = {{0, 200}, {10, 201}, {20, 202}};
  const std::vector<Stored> five = {{0, 50}, {1, 51}, {2, 52}, {2, 53}, {9, 54}};
  const auto ended_by = [](const Stored& bad) {
    return std::vector<std::vector<Stored>>{{{0, 100}, {10, 110}, bad, {30, 130}}};
  };
  const struct {
    const char* what;
    std::vector<std::vector<Stored>> blocks;
    const char* map;
  } cases[] = {
      {"the longest, last", {three, five}, "50@0 51@1 52@2 53@2 54@9 "},
      {"the longest, first", {five, three}, "50@0 51@1 52@2 53@2 54@9 "},
      {"the first of equal ones", {three, other_three}, "100@0 101@10 102@20 "},
      {"5 BPM is too slow", ended_by({20, 5}), "100@0 110@10 "},
      {"500 BPM is too fast", ended_by({20, 500}), "100@0 110@10 "},
      {"not a number", ended_by({20, std::numeric_limits<double>::quiet_NaN()}), "100@0 110@10 "},
      {"a tick before the one before", ended_by({9, 120}), "100@0 110@10 "},
      {"a position below the bias", ended_by({-1, 120}), "100@0 110@10 "},
      {"one tempo is no map", {{{0, 141.3}}}, ""},
  };
  for (const auto& one : cases) EXPECT_EQ(dump(map_of(one.blocks)), one.map) << one.what;
}

TEST(TempoMapBlocks, TheSessionTempo) {
  const std::vector<Stored> two = {{0, 100}, {kQuarter, 200}};
  const auto tempo_row = [](BlockWriter& w) { return test::tables_of(w).rows("session"); };
  BlockWriter w;
  tempo_block(w, {{0, 141.3}});
  EXPECT_TRUE(tempo_row(w).ends_with("tempo 141.3 BPM")) << "from a block's only record";
  tempo_block(w, two);
  EXPECT_TRUE(tempo_row(w).ends_with("tempo 100 BPM")) << "from the map";
  signed_tempo(w, 90);
  tempo_block(w, two);
  EXPECT_TRUE(tempo_row(w).ends_with("tempo 90 BPM")) << "from the signature first";
  tempo_block(w, two, "Tempi");
  EXPECT_TRUE(tempo_row(w).ends_with("tempo 120 BPM")) << "another tag is no tempo";

  const TempoMap map = map_of({two}, 60);
  EXPECT_EQ(map.session_tempo, 60) << "an override replaces it";
  EXPECT_EQ(map.seconds_of_ticks(kQuarter), 0.6) << "and leaves the map";
  for (const double odd : {-1.0, 0.0, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(map_of({two}, odd).session_tempo, 100) << odd << " is no tempo";
  for (const double odd : {1e-320, 1e308, std::numeric_limits<double>::infinity()})
    EXPECT_EQ(map_of({two}, odd).session_tempo, odd) << "whatever is above 0 was asked for";
}

TEST(TempoMapBlocks, ARecordMustEndInsideItsBlock) {
  BlockWriter w;
  // The block ends with the second record's BPM; what stands behind it would go on.
  w.open(0x2028, 3).raw("Tempo").zeros(36);
  record(w, {0, 100});
  w.zeros(35);
  record(w, {1, 101});
  w.close().zeros(35);
  record(w, {2, 102});
  auto blocks = w.take();
  EXPECT_EQ(dump(read_tempo(Image(blocks).session, kRate, 0)), "100@0 101@1 ");
  // One byte less, and the second is cut.
  const std::uint32_t size = static_cast<std::uint32_t>(blocks[3] | blocks[4] << 8) - 1;
  blocks[3] = static_cast<std::uint8_t>(size);
  blocks[4] = static_cast<std::uint8_t>(size >> 8);
  EXPECT_EQ(dump(read_tempo(Image(blocks).session, kRate, 0)), "");
}

// Blocks whose headers stand inside the records of the block before: read one by one they would cost the square
// of their number.
TEST(TempoMapBlocks, NestedBlocksCostNoMoreThanTheirBytes) {
  constexpr std::size_t kBlocks = 200000;
  std::vector<std::uint8_t> bytes(200 + kBlocks * 61);
  const std::uint64_t position = test::kTickOrigin + (std::uint64_t{0x5A} << 24);  // its high bytes are free
  for (std::size_t i = 0; i < kBlocks; ++i) {
    std::uint8_t* at = bytes.data() + 58 + i * 61;
    // The BPM's bytes are a block's content type and the tag's text: about 249.
    std::memcpy(at, "\0\0\0\x5A\xE9\0\0\0\0\0\x28\x20Tempo\x40", 18);
    at[0] = static_cast<std::uint8_t>(position);
    const auto left = static_cast<std::uint32_t>(bytes.size() - (58 + i * 61 + 3) - 7);
    std::memcpy(at + 6, &left, 4);
  }
  // The block that holds them all.
  bytes[0] = 'Z';
  const auto size = static_cast<std::uint32_t>(bytes.size() - 7);
  std::memcpy(bytes.data() + 3, &size, 4);
  std::memcpy(bytes.data() + 7, "\x28\x20Tempo", 7);
  const SessionImage image(ByteView(bytes.data(), bytes.size()));
  ASSERT_GT(image.of_type(0x2028).size(), kBlocks / 2);
  EXPECT_EQ(read_tempo(image, kRate, 0).events.size(), kBlocks);
}

TEST(TicksToSeconds, WalksTheMap) {
  TempoMap none, steps, late;
  none.session_tempo = 60;
  steps.events = {{0, 60}, {kQuarter, 120}, {kQuarter, 30}, {3 * kQuarter, 240}};  // one of no length
  late.events = {{4 * kQuarter, 60}, {8 * kQuarter, 120}};
  const struct {
    const char* what;
    const TempoMap& map;
    double quarters, seconds;
  } cases[] = {
      {"the session tempo, without a map", none, 3, 3},
      {"inside the first step", steps, 0.5, 0.5},
      {"on a step's start nothing of it counts", steps, 1, 1},
      {"the last of two steps at one place", steps, 2, 3},
      {"behind the last start", steps, 4, 5.25},
      {"before the first entry time counts from zero", late, 2, 2},
      {"and jumps back at it", late, 4, 0},
      {"to count on from there", late, 8, 4},
  };
  for (const auto& one : cases) EXPECT_EQ(one.map.seconds_of_ticks(one.quarters * kQuarter), one.seconds) << one.what;
}

TEST(TicksToSeconds, TheIndexGivesTheSameBitsAsTheWalk) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 200; ++round) {
    TempoMap map;
    double tick = static_cast<double>(random() % 3 * 1000);
    for (std::uint64_t n = random() % 40 + 2; n > 0; --n) {
      map.events.push_back({tick, 5.5 + static_cast<double>(random() % 4940000) / 10000});
      tick += random() % 4 == 0 ? 0 : static_cast<double>(random() % 5000000);
    }
    TempoMap indexed = map;
    indexed.index_events();
    for (int i = 0; i < 50; ++i) {
      const double t =
          i < 20 ? map.events[random() % map.events.size()].tick : static_cast<double>(random() % 200000000);
      const double expected = walk(map, t);
      EXPECT_EQ(map.seconds_of_ticks(t), expected);
      EXPECT_EQ(indexed.seconds_of_ticks(t), expected);
    }
  }
}

TEST(SongStart, EveryConversionCountsFromIt) {
  const TempoMap map = map_of({{{kQuarter, 60, 2 * 48000}, {3 * kQuarter, 120}}});
  ASSERT_TRUE(map.has_song_start());
  EXPECT_EQ(map.seconds_of_ticks(kQuarter), 2);
  EXPECT_EQ(map.seconds_of_ticks(2 * kQuarter), 3);
  EXPECT_EQ(map.seconds_of_ticks(4 * kQuarter), 4.5);
  EXPECT_EQ(map.seconds_of_ticks(0), 1);  // back at the first tempo, not forth from zero
  EXPECT_EQ(map.seconds_of_ticks(-2 * kQuarter), -1);
  EXPECT_EQ(map.timeline_seconds(-2 * kQuarter), 0);
}

TEST(SongStart, OnlyAPlausibleMomentOfTheFirstRecordCounts) {
  for (const std::int64_t samples : {std::int64_t{0}, std::int64_t{-5}, std::int64_t{1} << 40, INT64_MAX, INT64_MIN}) {
    const TempoMap map = map_of({{{0, 60, samples}, {kQuarter, 120, 48000}}});
    EXPECT_FALSE(map.has_song_start()) << samples;
    EXPECT_EQ(map.seconds_of_ticks(kQuarter), 1);
  }
  EXPECT_TRUE(map_of({{{0, 60, (std::int64_t{1} << 40) - 1}}}).has_song_start());
  EXPECT_EQ(map_of({{{kQuarter, 60, 48000}}}).seconds_of_ticks(3 * kQuarter), 3) << "a record that makes no map";
}

TEST(BiasedPositions, TheBiasComesOffTheLow32Bits) {
  EXPECT_EQ(biased_to_ticks(3567587328u), 0);
  EXPECT_EQ(biased_to_ticks(0xFFFFFFFFu), 727379967);
  EXPECT_EQ(biased_to_ticks(0), 727379968);
  EXPECT_EQ(biased_to_ticks(3567587327u), 4294967295.0);
}

}  // namespace
}  // namespace frt

// The readers of the mixer's strips, on images made by hand: rows and names, levels and sends, track data, MIDI setup,
// playlist owners, automation lanes.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/min_tree.h"
#include "base/text_index.h"
#include "image/bus_finder.h"
#include "image/counted_texts.h"
#include "image/first_fit.h"
#include "session/mixer/lanes.h"
#include "session/mixer/midi_strips.h"
#include "session/mixer/name_table.h"
#include "session/mixer/playlist_owners.h"
#include "session/mixer/strip_records.h"
#include "session/mixer/strip_rows.h"
#include "session/mixer/track_rows.h"
#include "support/hand_image.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;
using Names = std::vector<std::string_view>;

void table_entry(BlockWriter& w, std::string_view name, std::size_t size_less_name = 72, unsigned type = 0,
                 unsigned has_track = 0, std::uint64_t id = 0) {
  BlockWriter c;
  c.u16(type).text(name).u8(2).zeros(5).u32(id != 0 ? 42 : 0).u64(id).zeros(80);
  std::vector<std::uint8_t> content = c.take();
  content[59 + name.size()] = static_cast<std::uint8_t>(has_track);
  content.resize(size_less_name + name.size() - 2);
  w.leaf(0x251a, content);
}

struct Lane {
  int initial = 0;
  std::vector<std::pair<std::uint32_t, int>> points = {};
};

void lane(BlockWriter& w, const Lane& lane, bool ticks = false) {
  w.open(0x260a).zeros(16).u16(static_cast<unsigned>(lane.points.size())).u8(ticks ? 1 : 0).zeros(7);
  w.i16(lane.initial);
  for (const auto& [position, value] : lane.points) w.u32(position).i16(value);
  w.zeros(2).close();
}

struct Level {
  int fader = 0;
  bool muted = false;
  int pan = 0, second_pan = 0;
  unsigned flag = 0;
  std::size_t size = 157;
};

void level(BlockWriter& w, const Level& l) {
  BlockWriter c;
  c.u8(l.flag).i32(l.fader).u32(l.muted ? 1 : 0).u32(0).i32(l.pan).zeros(24).i32(l.second_pan).zeros(160);
  std::vector<std::uint8_t> content = c.take();
  content.resize(l.size - 2);
  w.leaf(0x1029, content);
}

void name_block(BlockWriter& w, std::string_view name) { w.open(0x2619).text(name).close(); }

// A strip row with its name, a mix group with level and slot, and lanes in the group.
void row(BlockWriter& w, unsigned type, std::string_view name, const Level& l, const std::vector<Lane>& lanes = {}) {
  w.open(static_cast<std::uint16_t>(type));
  name_block(w, name);
  w.open(0x260d);
  level(w, l);
  for (const Lane& each : lanes) lane(w, each);
  w.open(0x260e).u16(65535).close();
  w.close().close();
}

std::vector<std::string> strings(const Names& names) { return {names.begin(), names.end()}; }

// ---- what the readers stand on ----

TEST(ByteSearch, FindsWhatATryAtEveryPositionFinds) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::vector<std::uint8_t> bytes(random() % 300);
    for (auto& b : bytes)
      b = static_cast<std::uint8_t>(random() % 3 ? 0 : random() % 5 ? 32 + random() % 100 : random() % 6);
    const ByteView view(bytes.data(), bytes.size());
    const std::uint64_t from = random() % 20, to = random() % 320;
    std::vector<std::uint64_t> found, expected;
    each_counted_text<1, 80>(view, from, to, [&](std::uint64_t p, std::string_view) {
      found.push_back(p);
      return true;
    });
    for (std::uint64_t p = from; p < to; ++p) {
      if (read_name(view, p, 1, 80).data()) expected.push_back(p);
    }
    ASSERT_EQ(found, expected) << round;
  }
}

TEST(FirstFit, AnswersLikeAWalkHoweverBlocksOverlap) {
  std::mt19937 random(3);
  BlockWriter w;
  for (int i = 0; i < 400; ++i) {
    // Sizes are claims: they reach over the blocks behind.
    w.u8('Z').u16(1).u32(static_cast<std::uint32_t>(2 + random() % 500)).u16(random() % 2 ? 0x260d : 0x2036);
  }
  const Image image(w, 600);
  FirstFit any(image.session), mix(image.session, 0x260d);
  for (int i = 0; i < 2000; ++i) {
    const std::uint64_t from = random() % 4000, to = from + random() % 4000, limit = random() % 4600;
    const FlatBlock *first = nullptr, *first_mix = nullptr;
    for (const FlatBlock& block : image.session.blocks_in(from, to)) {
      if (block.end() > limit) continue;
      if (!first) first = &block;
      if (!first_mix && block.content_type == 0x260d) first_mix = &block;
    }
    ASSERT_EQ(any.find(from, to, limit), first);
    ASSERT_EQ(mix.find(from, to, limit), first_mix);
  }
}

// ---- rows ----

void named_row(BlockWriter& w, unsigned type, std::string_view name) {
  w.open(static_cast<std::uint16_t>(type));
  name_block(w, name);
  w.close();
}

TEST(StripRows, EachRowTypeIsARowNamedByItsFirstNameBlockEvenIfItsTextFails) {
  BlockWriter w;
  for (const unsigned type : {0x2620u, 0x2621u, 0x261fu, 0x2623u}) named_row(w, type, std::to_string(type));
  w.open(0x261d);
  named_row(w, 0x261b, "Master");  // an audio row inside a master is none
  w.close().open(0x261b);
  name_block(w, "a\x01z");
  name_block(w, "Second");
  w.close();
  named_row(w, 0x261b, "");
  w.open(0x261b).u32(0).close();
  named_row(w, 0x261b, std::string(80, 'n'));
  named_row(w, 0x261b, std::string(81, 'n'));
  const Image image(w);
  const auto rows = read_strip_rows(image.session);
  std::string names;
  for (const StripRow& r : rows) names += std::string(r.original_name) + (r.name_block_empty ? "(empty) " : " ");
  EXPECT_EQ(names, "9760 9761 9759 9763 Master  (empty)  " + std::string(80, 'n') + "  ");
  ASSERT_EQ(rows.size(), 10u);
  EXPECT_EQ(rows[4].content_type, 0x261du);
  EXPECT_TRUE(rows[5].has_name_block);
  EXPECT_FALSE(rows[7].has_name_block);
}

TEST(StripRows, AZeroBeforeTheVisibilityBlockMakesARowInactive) {
  struct Case {
    const char* what;
    unsigned before;
    std::uint32_t size;
    bool active;
  };
  for (const Case& c : {Case{"zero", 0, 4, false}, Case{"one", 1, 4, true}, Case{"whatever its size says", 0, 0, false},
                        Case{"even past the image", 0, 0x7fffffff, false}}) {
    BlockWriter w;
    w.open(0x261b);
    name_block(w, "A");
    w.u8(c.before).u8('Z').u16(1).u32(c.size).u16(0x2627);
    w.u8(0).u8('Z').u16(1).u32(4).u16(0x2627).u16(0);  // only the first one counts
    w.close();
    const Image image(w);
    const auto rows = read_strip_rows(image.session);
    EXPECT_EQ(rows.at(0).row_active, c.active) << c.what;
  }
}

TEST(StripRows, NamesOfTheTrackTableComeInWhereTheirNumberFits) {
  struct Case {
    const char* what;
    Names entries;
    bool aligned;
    Names current;
  };
  const std::vector<Case> cases = {
      {"one each", {"x", "y"}, true, {"x", "y"}},
      {"twice over", {"x", "y", "x", "y"}, true, {"x", "y"}},
      {"one too few", {"x"}, false, {"r0", "r1"}},
      {"one too many", {"x", "y", "z"}, false, {"r0", "r1"}},
      {"texts that fail don't count", {"x", "\x01", "y"}, true, {"x", "y"}},
      {"entries without a name fit", {"x", ""}, true, {"x", ""}},
      {"the same twice over", {"x", "y", "x", ""}, true, {"x", "y"}},
      {"neither texts nor entries fit", {"x", "", "y", "", "z"}, false, {"r0", "r1"}},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    for (const char* name : {"r0", "r1"}) named_row(w, 0x261b, name);
    for (const auto entry : c.entries) table_entry(w, entry);
    const Image image(w);
    bool aligned = !c.aligned;
    const auto rows = read_strip_rows(image.session, &aligned);
    EXPECT_EQ(aligned, c.aligned) << c.what;
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ((Names{rows[0].current_name, rows[1].current_name}), c.current) << c.what;
    EXPECT_EQ(rows[0].original_name, "r0");
  }
}

// ---- the table of names ----

TEST(NameTable, RunsFromTheFirstKnownNameUntilAGap) {
  struct Part {
    std::string_view text;
    std::size_t gap_behind;
  };
  struct Case {
    const char* what;
    std::vector<Part> parts;
    Names known, expected;
  };
  const std::vector<Case> cases = {
      {"starts at a known name", {{"stray", 0}, {"Kick", 0}, {"Snare", 0}}, {"Kick", "Snare"}, {"Kick", "Snare"}},
      {"no known name", {{"Kick", 0}}, {"Bass"}, {}},
      {"40 bytes between", {{"Kick", 40}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
      {"41 bytes between", {{"Kick", 41}, {"Snare", 0}}, {"Kick"}, {"Kick"}},
      {"each name once", {{"Kick", 30}, {"Kick", 30}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
      {"a path bridges no gap", {{"Kick", 30}, {"a/b", 8}, {"Snare", 0}}, {"Kick"}, {"Kick"}},
      {"one letter is no name", {{"Kick", 4}, {"x", 4}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    for (const Part& part : c.parts) w.text(part.text).fill(part.gap_behind, 1);
    const Image image(w);
    EXPECT_EQ(strings(read_name_table(image.session, c.known)), strings(c.expected)) << c.what;
  }
}

TEST(StripTable, RowLabelsReplaceTheScanIfEveryRowHasItsOwn) {
  struct Case {
    const char* what;
    Names labels, expected;
    int scan_count;
  };
  const std::vector<Case> cases = {
      {"other names", {"A1", "B1"}, {"A1", "B1"}, 2},
      {"the same names", {"Kick", "Snare"}, {"Kick", "Snare"}, -1},
      {"a row without a label", {"A1", ""}, {"Kick", "Snare"}, -1},
      {"a label twice", {"A1", "A1"}, {"Kick", "Snare"}, -1},
      {"no row at all", {}, {"Kick", "Snare"}, -1},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    w.text("Kick").text("Snare");
    const Image image(w);
    std::vector<StripRow> rows;
    for (const auto label : c.labels) {
      StripRow r;
      (rows.empty() ? r.original_name : r.current_name) = label;
      rows.push_back(r);
    }
    const StripTable table = choose_strip_table(image.session, {"Kick"}, rows);
    EXPECT_EQ(strings(table.names), strings(c.expected)) << c.what;
    EXPECT_EQ(table.name_scan_count, c.scan_count) << c.what;
  }
}

TEST(BusNames, AreNamesWithBothSidesAndPairsOfNumberedBusses) {
  struct Case {
    const char* what;
    Names texts;
    std::string_view plain;
    Names expected;
  };
  const std::string longest(40, 'n'), too_long(41, 'n');
  const std::string longest_sides = longest + ".L " + longest + ".R",
                    too_long_sides = too_long + ".L " + too_long + ".R";
  const std::vector<Case> cases = {
      {"both sides", {"Verb"}, "Verb.L Verb.R", {"Verb"}},
      {"one side", {"Verb"}, "Verb.L Verb.L", {}},
      {"sides inside longer words", {"Verb"}, "BigVerb.L xVerb.R", {"Verb"}},
      {"every ending that is a name", {"Verb", "Big Verb"}, "Big Verb.L Big Verb.R", {"Big Verb", "Verb"}},
      {"the sides as counted texts", {"Verb", "Verb.L", "Verb.R"}, "", {"Verb"}},
      {"too short", {"ab"}, "ab.L ab.R", {}},
      {"as short as can be", {"abc"}, "abc.L abc.R", {"abc"}},
      {"as long as can be", {longest}, longest_sides, {longest}},
      {"too long", {too_long}, too_long_sides, {}},
      {"a path", {"Music"}, "Music.L Music.R", {}},
      {"numbered pair", {"Bus 1-2", "Bus 1", "Bus 2"}, "", {"Bus 1-2"}},
      {"half a pair", {"Bus 1-2", "Bus 1"}, "", {}},
      {"no pair, whatever its sides", {"Bus 1", "Bus Verb"}, "Bus 1.L Bus 1.R Bus Verb.L Bus Verb.R", {}},
      {"sorted by bytes", {"b bus", "B bus"}, "b bus.L b bus.R B bus.L B bus.R", {"B bus", "b bus"}},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    for (const auto text : c.texts) w.text(text).u8(0);
    w.raw(c.plain);
    const Image image(w);
    EXPECT_EQ(strings(read_bus_names(image.session)), strings(c.expected)) << c.what;
  }
}

// ---- levels and sends ----

std::vector<StripRecord> records(const Image& image, const Names& table, const Names& buses = {},
                                 const std::vector<StripRow>& rows = {}) {
  return read_strip_records(image.session, table, buses, rows);
}

TEST(StripRecords, ALevelRecordKeepsItsLimits) {
  struct Case {
    const char* what;
    Level level;
    bool read;
  };
  const std::vector<Case> cases = {
      {"lowest fader", {-1450, true, -100, 100}, true},
      {"below it", {-1451}, false},
      {"highest fader", {125}, true},
      {"above it", {126}, false},
      {"flag 1", {0, false, 0, 0, 1}, true},
      {"flag 2", {0, false, 0, 0, 2}, false},
      {"too small", {0, false, 0, 0, 0, 156}, false},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    w.text("Kick");
    level(w, c.level);
    const Image image(w, 300);
    const auto strip = records(image, {"Kick"}).at(0);
    EXPECT_EQ(strip.has_mixer_data, c.read) << c.what;
    if (!c.read) continue;
    EXPECT_DOUBLE_EQ(strip.fader_db, c.level.fader / 10.0) << c.what;
    EXPECT_EQ(strip.muted, c.level.muted) << c.what;
    EXPECT_EQ(strip.pan, c.level.pan) << c.what;
    EXPECT_EQ(strip.second_pan, c.level.second_pan) << c.what;
    EXPECT_EQ(strip.record_position, 20 + 8 + 10u) << c.what;
  }
}

TEST(StripRecords, WithoutAlignedRowsTheLastNameBeforeARecordHasIt) {
  BlockWriter w;
  level(w, {-10});  // no name before it
  w.text("Kick").text("Snare");
  level(w, {-20});
  w.text("Kick");
  level(w, {-30});
  const Image image(w);
  const auto strips = records(image, {"Kick", "Snare", "Bass"});
  EXPECT_DOUBLE_EQ(strips[0].fader_db, -3);
  EXPECT_DOUBLE_EQ(strips[1].fader_db, -2);
  EXPECT_FALSE(strips[2].has_mixer_data);

  for (const std::size_t gap : {2700u, 2701u}) {  // beyond that a record opens a group of its own, for the next strip
    w.text("Kick");
    level(w, {-10});
    w.zeros(gap - 164);  // a record is 164 bytes long
    level(w, {-20});
    EXPECT_EQ(records(Image(w), {"Kick", "Kick"})[1].fader_db, gap == 2701u ? -2 : 0) << gap;
  }
}

TEST(StripRecords, AlignedRowsHoldTheirRecordsAndATakenStripTakesNoMore) {
  BlockWriter w;
  row(w, 0x261b, "Kick", {-10});
  w.zeros(3000);
  row(w, 0x261b, "Snare", {-20});
  w.zeros(3000).text("Kick");
  level(w, {-30});
  const Image image(w);
  const auto rows = read_strip_rows(image.session);
  const auto strips = records(image, {"Kick", "Snare"}, {}, rows);
  EXPECT_DOUBLE_EQ(strips[0].fader_db, -1);
  EXPECT_DOUBLE_EQ(strips[1].fader_db, -2);
}

TEST(StripRecords, APlainRecordOfAKnownStripIsPassedOver) {
  for (const bool with_slot : {false, true}) {
    BlockWriter w;
    w.text("Kick");
    level(w, {-10});
    w.raw("Verb").open(0x260d);
    level(w, {-20});
    if (with_slot) w.open(0x260e).u16(0).close();
    w.close();
    const Image image(w);
    EXPECT_EQ(records(image, {"Kick"}, {"Verb"})[0].sends.size(), with_slot ? 1u : 0u);
  }
}

TEST(StripRecords, FurtherRecordsOfAGroupAreSendsToTheNearestBus) {
  BlockWriter w;
  w.text("Kick");
  level(w, {0});
  level(w, {-60});
  w.raw("Verb");
  level(w, {-120});
  w.raw("Delay");
  const Image image(w, 3000);
  const auto strip = records(image, {"Kick"}, {"Delay", "Verb"}).at(0);
  ASSERT_EQ(strip.sends.size(), 2u);
  EXPECT_EQ(strip.sends[0].bus, "Verb");
  EXPECT_DOUBLE_EQ(strip.sends[0].level_db, -6);
  EXPECT_EQ(strip.sends[1].bus, "Verb");  // right before the record
  EXPECT_DOUBLE_EQ(strip.sends[1].level_db, -12);
  EXPECT_TRUE(records(image, {"Kick"}, {"Chorus"}).at(0).sends.empty());
}

TEST(NearestBus, AnswersLikeASearchForEachName) {
  std::mt19937 random(11);
  const Names names = {"aab", "aabb", "abab", "bab", "bbbbb"};
  std::vector<std::uint8_t> bytes(12000);
  for (auto& b : bytes) b = static_cast<std::uint8_t>(random() % 40 ? '-' : 'a');
  for (std::size_t i = 0; i + 8 < bytes.size(); i += 1 + random() % 900) {
    for (std::size_t k = 0; k < 8; ++k) bytes[i + k] = static_cast<std::uint8_t>('a' + random() % 2);
  }
  const ByteView view(bytes.data(), bytes.size());
  NearestBus buses(view, names);
  for (std::uint64_t v = 0; v < bytes.size(); v += random() % 700) {
    const std::uint64_t from = v < 1500 ? 0 : v - 1500, end = std::min<std::uint64_t>(v + 1500, bytes.size());
    std::string_view best;
    std::uint64_t best_distance = UINT64_MAX;
    for (const auto name : names) {
      for (std::uint64_t p = from; p + name.size() <= end; ++p) {
        if (!view.equals(p, name)) continue;
        const std::uint64_t distance = p < v ? v - p : p - v;
        if (distance < best_distance || (distance == best_distance && name.size() > best.size())) {
          best = name;
          best_distance = distance;
        }
      }
    }
    ASSERT_EQ(buses.near(v).value_or(""), best) << v;
  }
}

// ---- the track list ----

TEST(DisplayRows, EntriesOfEachKnownSizeAreRead) {
  for (const std::size_t size : {31u, 61u, 62u, 63u, 65u, 72u}) {
    BlockWriter w;
    w.open(0x2519).u32(3);
    table_entry(w, "Audio", size, 0, 1, 0x1122334455667788);
    table_entry(w, "Folder", size, 11);
    w.close();
    const Image image(w);
    const auto rows = read_display_rows(image.session);
    ASSERT_EQ(rows.size(), 2u) << size;
    EXPECT_EQ(rows[0].name, "Audio");
    EXPECT_EQ(rows[0].width, 2);
    EXPECT_EQ(rows[0].has_track, size >= 62) << size;
    EXPECT_EQ(rows[0].display_id, 0x1122334455667788u) << size;
    EXPECT_EQ(rows[1].row_type, 11);
    EXPECT_TRUE(rows[1].has_track);
    EXPECT_EQ(rows[1].display_id, 0u);
  }
}

TEST(DisplayRows, StopWhereTheTableComesRoundAndVanishWithAnUnknownEntry) {
  struct Case {
    const char* what;
    std::vector<std::pair<std::string_view, std::size_t>> entries;
    std::size_t expected;
  };
  const std::string long_name(200, 'x'), too_long(201, 'x');
  const std::vector<Case> cases = {
      {"comes round", {{"A", 72}, {"B", 72}, {"A", 72}, {"C", 72}}, 2},
      {"a later name again is no end", {{"A", 72}, {"B", 72}, {"B", 72}}, 3},
      {"unknown size", {{"A", 72}, {"B", 73}}, 0},
      {"no name", {{"A", 72}, {"", 72}}, 0},
      {"longest name", {{"A", 72}, {long_name, 72}}, 2},
      {"longer name", {{"A", 72}, {too_long, 72}}, 0},
  };
  for (const Case& c : cases) {
    BlockWriter w;
    w.open(0x2519);
    for (const auto& [name, size] : c.entries) table_entry(w, name, size);
    w.close();
    const Image image(w);
    EXPECT_EQ(read_display_rows(image.session).size(), c.expected) << c.what;
  }
}

void track_data(BlockWriter& w, int height, std::string_view comment, unsigned behind, int position = -1) {
  w.open(0x2015).open(0x2104).close().u8(9).u8(0).zeros(4).u16(static_cast<unsigned>(height)).text(comment);
  if (position >= 0) w.open(0x2434).close().u32(static_cast<std::uint32_t>(position)).u8(0);
  w.u32(77).close().u8(behind);
}

void audio_row(BlockWriter& w, std::string_view name, unsigned solo, unsigned mode, std::size_t left = 1) {
  w.open(0x261b).open(0x102d);
  name_block(w, name);
  w.u8(solo).u8(mode).zeros(left).close().close();
}

TEST(TrackRows, GoWithTheStripRowsOfTheSameNumber) {
  BlockWriter w;
  audio_row(w, "A", 1, 5);
  audio_row(w, "B", 2, 6);     // no values of these
  audio_row(w, "C", 1, 3, 0);  // no byte to spare behind the mode
  track_data(w, 36, "say", 1);
  track_data(w, 92, "", 0, 5);
  track_data(w, 300, "", 2);
  const Image image(w);
  const auto rows = read_strip_rows(image.session);
  const auto data = read_track_rows(image.session, rows);
  ASSERT_EQ(data.size(), 3u);
  EXPECT_EQ(data[0].row_visible, 0);
  EXPECT_EQ(data[0].row_height, 36);
  EXPECT_EQ(data[0].comment, "say");
  const int expected[3][4] = {{77, 1, 1, 5}, {5, 0, -1, -1}, {77, -1, 1, -1}};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(data[i].display_position, expected[i][0]) << i;
    EXPECT_EQ(data[i].solo_safe, expected[i][1]) << i;
    EXPECT_EQ(data[i].solo, expected[i][2]) << i;
    EXPECT_EQ(data[i].automation_mode, expected[i][3]) << i;
  }
  const auto comments = track_comments(rows, data);
  ASSERT_EQ(comments.size(), 1u);
  EXPECT_EQ(comments[0], std::pair(std::string_view("A"), std::string_view("say")));
}

TEST(TrackRows, AreFoundByNameInATrackListOfTheirNumber) {
  for (const bool list_fits : {true, false}) {
    BlockWriter w;
    audio_row(w, "B", 0, 1);
    audio_row(w, "D", 0, 1);
    track_data(w, 1, "", 0);
    track_data(w, 2, "", 0);
    track_data(w, 3, "", 0);
    w.open(0x2519);
    for (const auto* name : {"A", "B", "B"}) table_entry(w, name);
    if (!list_fits) table_entry(w, "E");
    w.close();
    const Image image(w);
    const auto data = read_track_rows(image.session, read_strip_rows(image.session));
    EXPECT_EQ(data.at(0).row_height, list_fits ? 2 : 0);
    EXPECT_EQ(data.at(1).row_height, 0);
    EXPECT_EQ(data.at(1).solo, -1);
  }
}

// ---- wrappers ----

TEST(InactiveNames, AreThoseOfTheRowWhoseWrapperSaysSo) {
  BlockWriter w;
  for (const unsigned word : {0u, 1u}) {
    w.open(0x261c);
    named_row(w, 0x261b, word == 0 ? "off" : "on");
    w.u16(word).open(0x200b).close().close();
  }
  const Image image(w);
  auto rows = read_strip_rows(image.session);
  rows[0].current_name = "silent";
  EXPECT_EQ(strings(read_inactive_names(image.session, rows)), (std::vector<std::string>{"silent", "off"}));
}

void track_entry(BlockWriter& w, std::string_view name, std::uint64_t id, bool second_mark = false) {
  w.open(0x1014).text(name).zeros(3);
  if (second_mark) w.u32(42).u64(0xdeadbeefdeadbeef).u8(1);
  w.u32(42).u64(id).close();
}

struct Owners {
  explicit Owners(BlockWriter& w) : image(w), rows(read_strip_rows(image.session)) {
    Names names;
    for (const StripRow& r : rows) names.push_back(r.current_name);
    strips = read_strip_records(image.session, names, {}, rows);
  }
  ByName<std::size_t> read() const { return read_playlist_owners(image.session, strips, rows); }
  Image image;
  std::vector<StripRow> rows;
  std::vector<StripRecord> strips;
};

TEST(PlaylistOwners, AWrapperListsItsPlaylistsByNumber) {
  for (const bool in_range : {true, false}) {
    BlockWriter w;
    w.open(0x1015).u32(3);
    track_entry(w, "Kick", 1001);
    track_entry(w, "Snare", 1002);
    track_entry(w, "Kick.01", 1003);
    w.close();
    w.open(0x261c);
    row(w, 0x261b, "Kick", {});
    w.u32(0).u16(2).u32(0).u32(in_range ? 2 : 3).u16(65535).open(0x200b).close();
    w.u64(1002).close();
    const Owners o(w);
    // A list that reads speaks for itself; only where it doesn't ids are sought.
    EXPECT_EQ(o.read(), (in_range ? ByName<std::size_t>{{"Kick.01", 0}} : ByName<std::size_t>{{"Snare", 0}}));
  }
}

TEST(PlaylistOwners, AWrapperWithALevelRecordHoldsTheIdsOfItsPlaylistsAnywhere) {
  BlockWriter w;
  track_entry(w, "Kick", 0x1111111111);
  track_entry(w, "Kick.01", 0x2222222222, true);
  track_entry(w, "Lost", 0x3333333333);
  track_entry(w, "Both", 0x4444444444);
  track_entry(w, "Of no level", 0x5555555555);
  w.open(0x261c).raw("x").u64(0x2222222222).u64(0x1111111111).u64(0x4444444444);
  row(w, 0x261b, "Kick", {});
  w.close().u64(0x3333333333);
  w.zeros(3000).open(0x261c);
  row(w, 0x261b, "Snare", {});
  w.u64(0x4444444444).close();
  w.zeros(3000).open(0x261c).u64(0x5555555555);
  named_row(w, 0x261b, "Hat");
  w.close();
  const Owners o(w);
  EXPECT_EQ(o.read(), (ByName<std::size_t>{{"Both", 1}, {"Kick.01", 0}}));
}

// ---- MIDI ----

TEST(MidiSetups, ComeFromTheFirstSetupBlockOfAMidiRow) {
  struct Case {
    const char* what;
    unsigned row_type;
    std::size_t size;
    int fader, pan, program, expect_fader, expect_pan, expect_program;
  };
  for (const Case& c :
       {Case{"all", 0x2620, 19, 100, 64, 5, 100, 64, 5}, Case{"instrument", 0x2621, 19, 100, 64, 5, 100, 64, 5},
        Case{"audio", 0x261b, 19, 100, 64, 5, -1, -1, -1}, Case{"unset pan", 0x2620, 19, 100, -1, 5, -1, -1, 5},
        Case{"no program", 0x2620, 17, 100, 64, 5, 100, 64, -1},
        Case{"too small", 0x2620, 15, 100, 64, 5, -1, -1, -1}}) {
    BlockWriter content;
    content.i16(c.fader & 255).zeros(6).u8(static_cast<unsigned>(c.pan)).zeros(7).u8(static_cast<unsigned>(c.program));
    std::vector<std::uint8_t> bytes = content.take();
    bytes.resize(c.size - 2);
    BlockWriter w;
    w.open(static_cast<std::uint16_t>(c.row_type)).leaf(0x2036, bytes);
    w.leaf(0x2036, std::vector<std::uint8_t>(20, 1)).close();
    const Image image(w);
    const auto setup = read_midi_setups(image.session, read_strip_rows(image.session)).at(0);
    EXPECT_EQ(setup.cc7, c.expect_fader) << c.what;
    EXPECT_EQ(setup.cc10, c.expect_pan) << c.what;
    EXPECT_EQ(setup.program, c.expect_program) << c.what;
  }
}

void properties(BlockWriter& w, std::size_t child_size) {
  w.open(0x2502).zeros(2).u8(1).u8(0);                                // quantize on
  w.open(0x103d).zeros(child_size - 2).close().zeros(10);             // up to p + 89
  w.u8(1).zeros(43).u8(1).u8(1).u8(0).u32(2500999).zeros(8);          // duration, delay
  w.u8(1).u8(80).u8(0).u8(0xf6).zeros(4).u8(1).u8(0).u8(0xff).u8(7);  // velocity, transpose
  w.close();
}

TEST(RealTimeProperties, AreTakenInTurnByMidiRowsAndLieBehindALargerChild) {
  BlockWriter w;
  for (const unsigned type : {0x261bu, 0x2620u, 0x2621u, 0x2620u}) {
    named_row(w, type, type == 0x261b ? "Audio" : "Midi");
  }
  properties(w, 59);
  properties(w, 90);
  w.leaf(0x2502, std::vector<std::uint8_t>(150));  // too small
  properties(w, 59);                               // the last one is no strip's
  const Image image(w);
  const auto rows = read_strip_rows(image.session);
  const auto found = read_realtime_properties(image.session, rows);
  ASSERT_EQ(found.size(), 4u);
  EXPECT_FALSE(found[0].quantize_on);
  for (const std::size_t k : {1u, 2u}) {
    const RealTimeProperties& p = found[k];
    EXPECT_TRUE(p.quantize_on && p.duration_on && p.delay_on && p.velocity_on && p.transpose_on) << k;
    EXPECT_EQ(p.delay_ticks, -2500) << k;
    EXPECT_EQ(p.velocity_percent, 80) << k;
    EXPECT_EQ(p.velocity_offset, -10) << k;
    EXPECT_EQ(p.octaves, -1) << k;
    EXPECT_EQ(p.semitones, 7) << k;
  }
  EXPECT_FALSE(found[3].quantize_on);
  EXPECT_EQ(realtime_properties_by_name(rows, found).size(), 1u);
}

TEST(KeyBuses, EachSlotNamesItsKeyByTheFirstTextItHolds) {
  BlockWriter w;
  w.open(0x260e).u16(4).u8(9).text("Bus 1").text("Bus 2").close();
  w.open(0x260e).u16(65535).text("none").close();
  w.open(0x260e).u16(5).text("caf\xc3\xa9").text("plain").close();
  w.open(0x260e).u16(6).close().text("outside");
  w.open(0x260e).u16(7).u16(0);
  w.open(0x260e).u16(8).text("shared").close().close();
  w.open(0x260e).u16(4).text("again").close();
  const Image image(w);
  const std::map<std::uint16_t, std::string_view> expected = {{4, "again"}, {5, "plain"}, {7, "shared"}, {8, "shared"}};
  EXPECT_EQ(read_key_buses(image.session), expected);
}

// ---- lanes ----

TEST(Lanes, ABlockGivesItsPointsIfTheyFit) {
  BlockWriter w;
  lane(w, {-120, {{0, -10}, {48000, 20}}}, true);
  const Image image(w);
  const AutomationLane read = read_lane(image.session.bytes(), 20);
  EXPECT_EQ(read.initial, -120);
  EXPECT_TRUE(read.in_ticks);
  EXPECT_EQ(read.points, (std::vector<std::pair<double, double>>{{0, -10}, {48000, 20}}));

  for (const unsigned count : {3u, 65535u}) {
    std::vector<std::uint8_t> bytes = image.bytes;
    bytes[20 + 25] = static_cast<std::uint8_t>(count);
    bytes[20 + 26] = static_cast<std::uint8_t>(count >> 8);
    const AutomationLane cut = read_lane(ByteView(bytes.data(), bytes.size()), 20);
    EXPECT_TRUE(cut.points.empty());
    EXPECT_EQ(cut.initial, -120);
  }
  BlockWriter small;
  small.leaf(0x260a, std::vector<std::uint8_t>(29, 1));
  EXPECT_EQ(read_lane(Image(small).session.bytes(), 20).initial, 0);
}

StripRecord lanes_of(BlockWriter& w, double fader_db = 0) {
  const Image image(w);
  std::vector<StripRecord> strips(1);
  strips[0].has_mixer_data = true;
  strips[0].fader_db = fader_db;
  strips[0].record_position = image.session.first_of_type(0x1029)->start + 10;
  read_strip_lanes(image.session, strips);
  return strips[0];
}

StripRecord lanes_of(const std::vector<Lane>& lanes, double fader_db = 0) {
  BlockWriter w;
  row(w, 0x261b, "A", {}, lanes);
  return lanes_of(w, fader_db);
}

TEST(Lanes, TheirNumberTellsWhatTheyDrive) {
  const std::vector<Lane> lanes = {{1}, {2}, {3}, {4}, {5}, {6}};
  struct Case {
    std::size_t count;
    std::vector<double> driven;  // volume, mute, pan, trim, right pan
    bool stereo = false;
  };
  for (const Case& c :
       {Case{0, {0, 0, 0, 0, 0}}, Case{1, {1, 0, 0, 0, 0}}, Case{2, {1, 2, 0, 0, 0}}, Case{3, {1, 2, 3, 0, 0}},
        Case{4, {1, 2, 3, 4, 0}}, Case{5, {1, 2, 3, 5, 4}, true}, Case{6, {1, 2, 3, 0, 0}}}) {
    const StripRecord s = lanes_of({lanes.begin(), lanes.begin() + static_cast<long>(c.count)}, -7);
    EXPECT_EQ((std::vector<double>{s.volume_lane.initial, s.mute_lane.initial, s.pan_lane.initial, s.trim_lane.initial,
                                   s.right_pan_lane.initial}),
              c.driven)
        << c.count;
    EXPECT_EQ(s.lane_count, c.count);
    EXPECT_EQ(s.is_stereo, c.stereo) << c.count;
    EXPECT_DOUBLE_EQ(s.fader_db, c.count == 0 ? -7 : 0.1) << c.count;
  }
}

TEST(Lanes, TheVolumeLaneTellsTheRestingFaderUnlessItMovesOrPassesTheLimit) {
  struct Case {
    const char* what;
    Lane volume;
    double level, fader;
  };
  for (const Case& c :
       {Case{"rests", {-120, {}}, -6, -12}, Case{"moves", {-120, {{0, 5}}}, -6, -6}, Case{"limited", {61, {}}, 6, 6},
        Case{"at the limit", {60, {}}, 6, 6}, Case{"above, but the record isn't at it", {61, {}}, 5.9, 6.1}}) {
    EXPECT_DOUBLE_EQ(lanes_of({c.volume}, c.level).fader_db, c.fader) << c.what;
  }
}

TEST(Lanes, AStereoStripPansItsSidesApartUnlessTheyStayHardLeftAndRight) {
  struct Case {
    const char* what;
    Lane left, right;
    int dual;
    std::size_t left_points, right_points;
  };
  const std::vector<Case> cases = {
      {"rest at the sides", {-100, {}}, {100, {}}, 0, 0, 0},
      {"rest elsewhere", {-50, {}}, {50, {}}, 2, 0, 0},
      {"points that stay", {-100, {{0, -100}}}, {100, {{0, 100}, {9, 100}}}, 0, 0, 0},
      {"left moves", {-100, {{0, -100}, {5, -99}}}, {100, {}}, 2, 2, 0},
      {"right moves", {-100, {{0, -100}}}, {100, {{0, 99}, {1, 98}}}, 3, 1, 2},
  };
  for (const Case& c : cases) {
    const StripRecord strip = lanes_of({{0, {}}, {0, {}}, c.left, c.right, {0, {}}});
    EXPECT_EQ(strip.dual_pan, c.dual) << c.what;
    EXPECT_TRUE(strip.pan_lane.points.empty()) << c.what;
    EXPECT_EQ(strip.dual_left_lane.points.size(), c.left_points) << c.what;
    EXPECT_EQ(strip.right_pan_lane.points.size(), c.right_points) << c.what;
  }
}

// Grouped lanes: free ones for volume, mute, panner level and trim, and a group of lanes for each side.
StripRecord grouped(unsigned row_type, unsigned width, std::size_t in_first, std::size_t in_second, std::size_t free,
                    int second_initial = 0) {
  BlockWriter w;
  w.open(static_cast<std::uint16_t>(row_type)).open(0x102d).u16(0).close().u8(width);
  w.open(0x260d);
  level(w, {});
  for (std::size_t i = 0; i < free; ++i) lane(w, {static_cast<int>(i) + 1, {}});
  for (const std::size_t count : {in_first, in_second}) {
    w.open(0x260c);
    for (std::size_t i = 0; i < count; ++i) {
      lane(w, {count == in_second && i == 0 ? second_initial : static_cast<int>(10 + i), {}});
    }
    w.close();
  }
  w.close().close();
  return lanes_of(w);
}

TEST(Lanes, GroupedLanesAreChosenByTheStripsWidth) {
  struct Case {
    const char* what;
    unsigned row_type, width;
    std::size_t in_first, in_second, free;
    int second_initial;
    std::uint32_t lane_count;
    bool stereo, panner_level;
    std::size_t panner;
  };
  const std::vector<Case> cases = {
      {"two channels", 0x261b, 1, 7, 6, 4, 0, 5, true, true, 7},
      {"wider", 0x261b, 2, 2, 3, 3, 0, 3, false, true, 0},
      {"one channel", 0x261b, 0, 2, 3, 3, 0, 4, false, true, 0},
      {"two by the second group's lane", 0x261b, 0, 2, 3, 3, 5, 5, true, true, 0},
      {"a master has volume and mute", 0x261d, 1, 2, 3, 3, 0, 2, false, true, 0},
      {"no trim with two free lanes", 0x261b, 1, 2, 3, 2, 0, 4, false, false, 0},
      {"one free lane: all by place", 0x261b, 1, 2, 3, 1, 0, 6, false, false, 0},
      {"groups of one lane: all by place", 0x261b, 1, 1, 0, 4, 0, 5, true, false, 0},
  };
  for (const Case& c : cases) {
    const StripRecord strip = grouped(c.row_type, c.width, c.in_first, c.in_second, c.free, c.second_initial);
    EXPECT_EQ(strip.lane_count, c.lane_count) << c.what;
    EXPECT_EQ(strip.is_stereo, c.stereo) << c.what;
    EXPECT_EQ(strip.has_panner_level, c.panner_level) << c.what;
    EXPECT_EQ(strip.panner_level_lane.initial, c.panner_level ? 3 : 0) << c.what;
    EXPECT_EQ(strip.panner_lanes[0].size(), c.panner) << c.what;
    EXPECT_TRUE(strip.panner_lanes[1].empty()) << c.what;
  }
  EXPECT_EQ(grouped(0x261b, 1, 7, 6, 4).trim_lane.initial, 4);
}

// A strip of free lanes, valued from 1 on, and a group for each entry of `groups`, its lanes valued from 10 on.
StripRecord grouped_by(unsigned row_type, unsigned width, std::size_t free, const std::vector<std::size_t>& groups) {
  BlockWriter w;
  w.open(static_cast<std::uint16_t>(row_type)).open(0x102d).u16(0).close().u8(width);
  w.open(0x260d);
  level(w, {});
  for (std::size_t i = 0; i < free; ++i) lane(w, {static_cast<int>(i) + 1, {}});
  int value = 10;
  for (const std::size_t count : groups) {
    w.open(0x260c);
    for (std::size_t i = 0; i < count; ++i) lane(w, {value++, {}});
    w.close();
  }
  w.close().close();
  return lanes_of(w);
}

TEST(Lanes, PanLanesAloneInTwoGroupsTellAStripWithoutTrim) {
  struct Case {
    const char* what;
    unsigned row_type, width;
    std::size_t free;
    std::vector<std::size_t> groups;
    std::uint32_t lane_count;
    bool stereo, known_width;
    double right_pan, trim;
  };
  const std::vector<Case> cases = {
      {"two channels", 0x261b, 1, 2, {1, 1}, 4, true, true, 11, 0},
      {"two by the second group's lane", 0x261b, 0, 2, {1, 1}, 4, true, true, 11, 0},
      {"wider", 0x261b, 2, 2, {1, 1}, 4, false, true, 0, 11},
      {"a master", 0x261d, 1, 2, {1, 1}, 4, false, true, 0, 11},
      {"one channel", 0x261b, 0, 2, {1, 0}, 3, false, true, 0, 0},
      {"a master's volume", 0x261b, 1, 1, {0, 0}, 1, false, true, 0, 0},
      {"two channels with trim", 0x261b, 1, 3, {1, 1}, 5, true, true, 10, 11},
      {"one channel with trim", 0x261b, 0, 3, {1, 0}, 4, false, true, 0, 10},
      {"a third group", 0x261b, 1, 2, {1, 1, 0}, 4, false, true, 0, 11},
      {"one group", 0x261b, 1, 2, {1}, 3, false, false, 0, 0},
      {"no group", 0x261b, 1, 3, {}, 3, false, false, 0, 0},
      {"no lane", 0x261b, 1, 0, {0, 0}, 0, false, false, 0, 0},
  };
  for (const Case& c : cases) {
    const StripRecord strip = grouped_by(c.row_type, c.width, c.free, c.groups);
    EXPECT_EQ(strip.lane_count, c.lane_count) << c.what;
    EXPECT_EQ(strip.is_stereo, c.stereo) << c.what;
    EXPECT_EQ(strip.known_width, c.known_width) << c.what;
    EXPECT_EQ(strip.right_pan_lane.initial, c.right_pan) << c.what;
    EXPECT_EQ(strip.trim_lane.initial, c.trim) << c.what;
  }
}

TEST(Lanes, ATooSmallLaneInTheSecondGroupMakesNoSecondChannel) {
  for (const std::size_t size : {31u, 32u}) {
    BlockWriter w;
    w.open(0x261b).open(0x102d).u16(0).close().u8(0);
    w.open(0x260d).open(0x260c);
    lane(w, {});
    w.close().open(0x260c).leaf(0x260a, std::vector<std::uint8_t>(size - 2, 1)).close().close().close();
    const Image image(w);
    const FlatBlock& row = *image.session.first_of_type(0x261b);
    EXPECT_EQ(strip_width_code(image.session, row.start, row.end()), size == 32 ? 1 : 0);
  }
}

TEST(Lanes, StripsOfUnknownWidthAreNamedWithTheirNumberOfLanes) {
  std::vector<StripRecord> strips(3);
  strips[0].name = "Mono", strips[0].has_mixer_data = true, strips[0].lane_count = 4, strips[0].known_width = true;
  strips[1].name = "Bare", strips[1].has_mixer_data = true;
  strips[2].name = "No level";
  EXPECT_TRUE(strips_of_unknown_width(strips).empty());  // a strip without lanes tells nothing of its width
}

// ---- damage ----

void read_everything(const SessionImage& image) {
  bool aligned = false;
  const auto rows = read_strip_rows(image, &aligned);
  const StripTable table = choose_strip_table(image, {"Kick", "Snare"}, rows);
  for (const auto& chosen : {rows, std::vector<StripRow>{}}) {
    auto strips = read_strip_records(image, table.names, read_bus_names(image), chosen);
    read_strip_lanes(image, strips);
    read_playlist_owners(image, strips, rows);
  }
  read_inactive_names(image, rows);
  read_display_rows(image);
  track_comments(rows, read_track_rows(image, rows));
  midi_setups_by_name(rows, read_midi_setups(image, rows));
  realtime_properties_by_name(rows, read_realtime_properties(image, rows));
  read_key_buses(image);
}

TEST(StripReaders, SurviveEveryCutAndEveryChangedByte) {
  BlockWriter w;
  w.text("Kick").text("Snare").text("Verb").raw("Verb.L Verb.R");
  w.open(0x1015).u32(1);
  track_entry(w, "Kick.01", 5);
  w.close().open(0x261c);
  row(w, 0x261b, "Kick", {}, {{0, {{1, 2}}}, {0, {}}});
  w.u32(0).u16(1).u32(0).u16(0).open(0x200b).close().close();
  w.open(0x2620).leaf(0x2036, std::vector<std::uint8_t>(20)).close();
  properties(w, 59);
  properties(w, 59);
  track_data(w, 36, "say", 1, 3);
  w.open(0x2519);
  table_entry(w, "Kick");
  w.close();
  std::vector<std::uint8_t> bytes = test::image_of(w.take());
  test::each_cut(bytes, [](ByteView cut) { read_everything(SessionImage(cut)); });
  for (std::size_t n = 0; n < bytes.size(); ++n) {
    const std::uint8_t kept = bytes[n];
    for (const int value : {0, 1, 0x5a, 0xff}) {
      bytes[n] = static_cast<std::uint8_t>(value);
      read_everything(SessionImage(ByteView(bytes.data(), bytes.size())));
    }
    bytes[n] = kept;
  }
}

}  // namespace
}  // namespace frt

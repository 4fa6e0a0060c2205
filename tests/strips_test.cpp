// The readers of the mixer's strips: rows and names, levels and sends, track data, MIDI setup, playlist owners,
// automation lanes.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "image/bus_finder.h"
#include "image/counted_texts.h"
#include "image/first_fit.h"
#include "session/mixer/lanes.h"
#include "session/mixer/name_table.h"
#include "session/mixer/strip_records.h"
#include "session/mixer/strip_rows.h"
#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;
using test::tables_of;
using Names = std::vector<std::string_view>;

constexpr std::uint16_t kAudio = 0x261b, kMaster = 0x261d, kMidi = 0x2620, kInstrument = 0x2621;

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
using Lanes = std::vector<Lane>;

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

BlockWriter& open_row(BlockWriter& w, std::uint16_t type, std::string_view name) {
  return w.open(type).open(0x2619).text(name).close();
}

// A strip row with its name, a mix group with level and slot, and lanes in the group.
void row(BlockWriter& w, std::string_view name, const Level& l, const Lanes& lanes = {}, std::uint16_t type = kAudio) {
  open_row(w, type, name).open(0x260d);
  level(w, l);
  for (const Lane& each : lanes) lane(w, each);
  w.open(0x260e).u16(65535).close().close().close();
}

std::string join(const Names& names) {
  std::string out;
  for (const auto name : names) (out += name) += ',';
  return out;
}

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
        const std::uint64_t distance = p < v ? v - p : p - v;
        if (!view.equals(p, name) || distance > best_distance) continue;
        if (distance == best_distance && name.size() <= best.size()) continue;
        best = name;
        best_distance = distance;
      }
    }
    ASSERT_EQ(buses.near(v).value_or(""), best) << v;
  }
}

// ---- rows and names ----

TEST(StripRows, EachRowTypeIsARowNamedByItsFirstNameBlockEvenIfItsTextFails) {
  BlockWriter w;
  for (const unsigned type : {0x2620u, 0x2621u, 0x261fu, 0x2623u})
    open_row(w, static_cast<std::uint16_t>(type), std::to_string(type)).close();
  open_row(w.open(kMaster), kAudio, "Master").close().close();  // an audio row inside a master is none
  open_row(w, kAudio, "a\x01z").open(0x2619).text("Second").close().close();
  open_row(w, kAudio, "").close().open(kAudio).u32(0).close();
  for (const std::size_t length : {80u, 81u}) open_row(w, kAudio, std::string(length, 'n')).close();
  const std::string at_rest = " | height=0 display=0\n";
  EXPECT_EQ(tables_of(w).rows("strip rows") + "\n",
            "0: midi \"9760\"" + at_rest + "1: instrument \"9761\"" + at_rest + "2: vca \"9759\"" + at_rest +
                "3: video \"9763\"" + at_rest + "4: master \"Master\"" + at_rest + "5: audio \"\"" + at_rest +
                "6: audio \"\" empty-name" + at_rest + "7: audio \"\" no-name-block" + at_rest + "8: audio \"" +
                std::string(80, 'n') + "\"" + at_rest + "9: audio \"\"" + at_rest);
}

TEST(StripRows, AZeroBeforeTheVisibilityBlockMakesARowInactive) {
  const struct {
    std::string what;
    unsigned before;
    std::uint32_t size;
    bool active;
  } cases[] = {{"zero", 0, 4, false},
               {"one", 1, 4, true},
               {"whatever its size says", 0, 0, false},
               {"even past the image", 0, 0x7fffffff, false}};
  for (const auto& c : cases) {
    BlockWriter w;
    open_row(w, kAudio, c.what).u8(c.before).u8('Z').u16(1).u32(c.size).u16(0x2627);
    w.u8(0).u8('Z').u16(1).u32(4).u16(0x2627).u16(0).close();  // only the first one counts
    EXPECT_EQ(tables_of(w).count("strip rows", "inactive"), c.active ? 0u : 1u) << c.what;
  }
}

TEST(StripRows, NamesOfTheTrackTableComeInWhereTheirNumberFits) {
  const struct {
    const char* what;
    Names entries;
    bool aligned;
    Names current;
  } cases[] = {
      {"one each", {"x", "y"}, true, {"x", "y"}},
      {"twice over", {"x", "y", "x", "y"}, true, {"x", "y"}},
      {"one too few", {"x"}, false, {"r0", "r1"}},
      {"one too many", {"x", "y", "z"}, false, {"r0", "r1"}},
      {"texts that fail don't count", {"x", "\x01", "y"}, true, {"x", "y"}},
      {"entries without a name fit", {"x", ""}, true, {"x", ""}},
      {"the same twice over", {"x", "y", "x", ""}, true, {"x", "y"}},
      {"neither texts nor entries fit", {"x", "", "y", "", "z"}, false, {"r0", "r1"}},
  };
  for (const auto& c : cases) {
    BlockWriter w;
    for (const char* name : {"r0", "r1"}) open_row(w, kAudio, name).close();
    for (const auto entry : c.entries) table_entry(w, entry);
    const Image image(w);
    const auto [rows, aligned] = read_strip_rows(image.session);
    EXPECT_EQ(aligned, c.aligned) << c.what;
    EXPECT_EQ((Names{rows.at(0).current_name, rows.at(1).current_name}), c.current) << c.what;
    EXPECT_EQ(rows[0].original_name, "r0");
  }
}

TEST(NameTable, RunsFromTheFirstKnownNameUntilAGap) {
  const struct {
    const char* what;
    std::vector<std::pair<std::string_view, std::size_t>> texts;  // and the gap behind each
    Names known, expected;
  } cases[] = {
      {"starts at a known name", {{"stray", 0}, {"Kick", 0}, {"Snare", 0}}, {"Kick", "Snare"}, {"Kick", "Snare"}},
      {"no known name", {{"Kick", 0}}, {"Bass"}, {}},
      {"40 bytes between", {{"Kick", 40}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
      {"41 bytes between", {{"Kick", 41}, {"Snare", 0}}, {"Kick"}, {"Kick"}},
      {"each name once", {{"Kick", 30}, {"Kick", 30}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
      {"a path bridges no gap", {{"Kick", 30}, {"a/b", 8}, {"Snare", 0}}, {"Kick"}, {"Kick"}},
      {"one letter is no name", {{"Kick", 4}, {"x", 4}, {"Snare", 0}}, {"Kick"}, {"Kick", "Snare"}},
  };
  for (const auto& c : cases) {
    BlockWriter w;
    for (const auto& [text, gap] : c.texts) w.text(text).fill(gap, 1);
    const Image image(w);
    EXPECT_EQ(join(read_name_table(image.session, c.known)), join(c.expected)) << c.what;
  }
}

TEST(StripTable, RowLabelsReplaceTheScanIfEveryRowHasItsOwn) {
  const struct {
    const char* what;
    Names labels, expected;
    int scan_count;
  } cases[] = {
      {"other names", {"A1", "B1"}, {"A1", "B1"}, 2},
      {"the same names", {"Kick", "Snare"}, {"Kick", "Snare"}, -1},
      {"a row without a label", {"A1", ""}, {"Kick", "Snare"}, -1},
      {"a label twice", {"A1", "A1"}, {"Kick", "Snare"}, -1},
      {"no row at all", {}, {"Kick", "Snare"}, -1},
  };
  for (const auto& c : cases) {
    BlockWriter w;
    w.text("Kick").text("Snare");
    const Image image(w);
    std::vector<StripRow> rows(c.labels.size());
    for (std::size_t i = 0; i < rows.size(); ++i) (i == 0 ? rows[i].original_name : rows[i].current_name) = c.labels[i];
    const StripTable table = choose_strip_table(image.session, {"Kick"}, rows);
    EXPECT_EQ(join(table.names), join(c.expected)) << c.what;
    EXPECT_EQ(table.name_scan_count, c.scan_count) << c.what;
  }
}

TEST(BusNames, AreNamesWithBothSidesAndPairsOfNumberedBusses) {
  const std::string longest(40, 'n'), too_long(41, 'n');
  const struct {
    const char* what;
    Names texts;
    std::string plain;
    Names expected;
  } cases[] = {
      {"both sides", {"Verb"}, "Verb.L Verb.R", {"Verb"}},
      {"one side", {"Verb"}, "Verb.L Verb.L", {}},
      {"sides inside longer words", {"Verb"}, "BigVerb.L xVerb.R", {"Verb"}},
      {"every ending that is a name", {"Verb", "Big Verb"}, "Big Verb.L Big Verb.R", {"Big Verb", "Verb"}},
      {"the sides as counted texts", {"Verb", "Verb.L", "Verb.R"}, "", {"Verb"}},
      {"too short", {"ab"}, "ab.L ab.R", {}},
      {"as short as can be", {"abc"}, "abc.L abc.R", {"abc"}},
      {"as long as can be", {longest}, longest + ".L " + longest + ".R", {longest}},
      {"too long", {too_long}, too_long + ".L " + too_long + ".R", {}},
      {"a path", {"Music"}, "Music.L Music.R", {}},
      {"numbered pair", {"Bus 1-2", "Bus 1", "Bus 2"}, "", {"Bus 1-2"}},
      {"half a pair", {"Bus 1-2", "Bus 1"}, "", {}},
      {"no pair, whatever its sides", {"Bus 1", "Bus Verb"}, "Bus 1.L Bus 1.R Bus Verb.L Bus Verb.R", {}},
      {"sorted by bytes", {"b bus", "B bus"}, "b bus.L b bus.R B bus.L B bus.R", {"B bus", "b bus"}},
  };
  for (const auto& c : cases) {
    BlockWriter w;
    for (const auto text : c.texts) w.text(text).u8(0);
    w.raw(c.plain);
    const Image image(w);
    EXPECT_EQ(join(read_bus_names(image.session)), join(c.expected)) << c.what;
  }
}

// ---- levels and sends ----

TEST(StripRecords, ALevelRecordKeepsItsLimits) {
  BlockWriter w;
  row(w, "lowest fader", {-1450, true, -100, 100});
  row(w, "below it", {-1451});
  row(w, "highest fader", {125});
  row(w, "above it", {126});
  row(w, "flag 1", {0, false, 0, 0, 1});
  row(w, "flag 2", {0, false, 0, 0, 2});
  row(w, "too small", {0, false, 0, 0, 0, 156});
  EXPECT_EQ(tables_of(w).rows("strips"),
            "0: \"lowest fader\" -145 dB pan=-100 pan2=100 muted\n1: \"below it\" no mixer data\n"
            "2: \"highest fader\" 12.5 dB pan=0\n3: \"above it\" no mixer data\n4: \"flag 1\" 0 dB pan=0\n"
            "5: \"flag 2\" no mixer data\n6: \"too small\" no mixer data");
}

std::vector<StripRecord> records(const Image& image, const Names& table, const Names& buses = {}) {
  return read_strip_records(image.session, table, buses, {});
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

TEST(StripRecords, AlignedRowsHoldTheirRecordsAndAStrayOneIsNobodys) {
  BlockWriter w;
  row(w, "Kick", {-10});
  row(w.zeros(3000), "Snare", {-20});
  open_row(w, kAudio, "Of no level").close().zeros(3000).text("Kick");
  level(w, {-30});
  EXPECT_EQ(tables_of(w).rows("strips"),
            "0: \"Kick\" -1 dB pan=0\n1: \"Snare\" -2 dB pan=0\n2: \"Of no level\" no mixer data");
}

TEST(StripRecords, FurtherRecordsOfAGroupAreSendsToTheNearestBusUnlessTheyArePlain) {
  BlockWriter w;
  w.text("Kick");
  level(w, {0});
  level(w, {-60});
  w.raw("Verb");
  level(w, {-120});  // right behind a bus
  w.raw("Delay");
  const Image image(w, 3000);
  const auto sends = records(image, {"Kick"}, {"Delay", "Verb"}).at(0).sends;
  ASSERT_EQ(sends.size(), 2u);
  EXPECT_EQ(sends[0].bus, "Verb");
  EXPECT_DOUBLE_EQ(sends[0].level_db, -6);
  EXPECT_EQ(sends[1].bus, "Verb");
  EXPECT_DOUBLE_EQ(sends[1].level_db, -12);
  EXPECT_TRUE(records(image, {"Kick"}, {"Chorus"}).at(0).sends.empty());

  for (const bool with_slot : {false, true}) {
    w.text("Kick");
    level(w, {-10});
    w.raw("Verb").open(0x260d);
    level(w, {-20});
    if (with_slot) w.open(0x260e).u16(0).close();
    w.close();
    EXPECT_EQ(records(Image(w), {"Kick"}, {"Verb"})[0].sends.size(), with_slot ? 1u : 0u);
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
    EXPECT_EQ(tables_of(w).rows("display rows"), "0: \"Audio\" type=0 width=2" +
                                                     std::string(size >= 62 ? " track" : "") +
                                                     " id=1122334455667788\n1: \"Folder\" type=11 width=2 track")
        << size;
  }
}

TEST(DisplayRows, StopWhereTheTableComesRoundAndVanishWithAnUnknownEntry) {
  const std::string long_name(200, 'x'), too_long(201, 'x');
  const struct {
    const char* what;
    std::vector<std::pair<std::string_view, std::size_t>> entries;
    std::size_t expected, refused;
  } cases[] = {
      {"comes round", {{"A", 72}, {"B", 72}, {"A", 72}, {"C", 72}}, 2, 0},
      {"a later name again is no end", {{"A", 72}, {"B", 72}, {"B", 72}}, 3, 0},
      {"unknown size", {{"A", 72}, {"B", 73}}, 0, 1},
      {"no name", {{"A", 72}, {"", 72}}, 0, 1},
      {"longest name", {{"A", 72}, {long_name, 72}}, 2, 0},
      {"longer name", {{"A", 72}, {too_long, 72}}, 0, 1},
  };
  for (const auto& c : cases) {
    BlockWriter w;
    w.open(0x2519);
    for (const auto& [name, size] : c.entries) table_entry(w, name, size);
    const auto tables = tables_of(w.close());
    EXPECT_EQ(tables.count("display rows", "type="), c.expected) << c.what;
    EXPECT_EQ(tables.count("refused", "TrackTableEntry"), c.refused) << c.what;
  }
}

TEST(TrackTable, OnlyEntriesThatEndInAMarkTellInactiveTracks) {
  for (const auto& [end, inactive] :
       {std::pair{0u, 1u}, {1u, 1u}, {24u, 1u}, {25u, 0u}, {48u, 1u}, {95u, 0u}, {96u, 1u}, {255u, 1u}, {256u, 0u}}) {
    test::SessionBuilder s;
    s.layout.row_entry_end = end;
    s.track("A");
    EXPECT_EQ(tables_of(s).count("inactive by table", "A"), 0u) << "entries of 62";
    s.layout.row_entry = 72;
    EXPECT_EQ(tables_of(s).count("inactive by table", "A"), 2 * inactive) << end;
  }
}

TEST(VoiceOff, NamesTheRowWhoseWrapperSaysSoByBothItsNames) {
  test::SessionBuilder s;
  s.track("silent").renamed_from("off").turn_voice_off();
  s.track("on");
  EXPECT_EQ(tables_of(s).rows("voice off"), "0: \"silent\"\n1: \"off\"");
}

void track_data(BlockWriter& w, int height, std::string_view comment, unsigned behind, int position = -1) {
  w.open(0x2015).open(0x2104).close().u8(9).u8(0).zeros(4).u16(static_cast<unsigned>(height)).text(comment);
  if (position >= 0) w.open(0x2434).close().u32(static_cast<std::uint32_t>(position)).u8(0);
  w.u32(77).close().u8(behind);
}

void audio_row(BlockWriter& w, std::string_view name, unsigned solo, unsigned mode, std::size_t left = 1) {
  w.open(kAudio).open(0x102d).open(0x2619).text(name).close();
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
  EXPECT_EQ(tables_of(w).rows("strip rows"),
            "0: audio \"A\" | height=36 display=77 hidden solo=1 solo_safe=1 mode=5 comment=\"say\"\n"
            "1: audio \"B\" | height=92 display=5 hidden solo_safe=0\n"
            "2: audio \"C\" | height=300 display=77 hidden solo=1");
}

TEST(TrackRows, AreFoundByNameInATrackListOfTheirNumber) {
  for (const bool list_fits : {true, false}) {
    BlockWriter w;
    for (const char* name : {"B", "D"}) audio_row(w, name, 0, 1);
    for (const int height : {1, 2, 3}) track_data(w, height, "", 0);
    w.open(0x2519);
    for (const auto* name : {"A", "B", "B"}) table_entry(w, name);
    for (const auto* name : {"E", "F"}) {
      if (!list_fits) table_entry(w, name);
    }
    EXPECT_EQ(tables_of(w.close()).rows("strip rows"),
              std::string("0: audio \"B\" | height=") +
                  (list_fits ? "2 display=77 hidden solo=0 solo_safe=0 mode=1" : "0 display=0") +
                  "\n1: audio \"D\" | height=0 display=0");
  }
}

// ---- playlist owners ----

void track_entry(BlockWriter& w, std::string_view name, std::uint64_t id, bool second_mark = false) {
  w.open(0x1014).text(name).zeros(3);
  if (second_mark) w.u32(42).u64(0xdeadbeefdeadbeef).u8(1);
  w.u32(42).u64(id).close();
}

TEST(PlaylistOwners, AWrapperListsItsPlaylistsByNumber) {
  for (const bool in_range : {true, false}) {
    BlockWriter w;
    w.open(0x1015).u32(3);
    track_entry(w, "Kick", 1001);
    track_entry(w, "Snare", 1002);
    track_entry(w, "Kick.01", 1003);
    w.close().open(0x261c);
    row(w, "Kick", {});
    w.u32(0).u16(2).u32(0).u32(in_range ? 2 : 3).u16(65535).open(0x200b).close();
    w.u64(1002).close();
    // A list that reads speaks for itself; only where it doesn't ids are sought.
    EXPECT_EQ(tables_of(w).rows("playlist owners"), in_range ? "\"Kick.01\" strip 0" : "\"Snare\" strip 0");
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
  row(w, "Kick", {});
  w.close().u64(0x3333333333).zeros(3000).open(0x261c);
  row(w, "Snare", {});
  w.u64(0x4444444444).close().zeros(3000).open(0x261c).u64(0x5555555555);
  open_row(w, kAudio, "Hat").close().close();
  EXPECT_EQ(tables_of(w).rows("playlist owners"), "\"Both\" strip 1\n\"Kick.01\" strip 0");
}

// ---- MIDI ----

TEST(MidiSetups, ComeFromTheFirstSetupBlockOfAMidiRow) {
  const struct {
    const char* what;
    std::uint16_t row_type;
    std::size_t size;
    unsigned pan;
    const char* read;
  } cases[] = {
      {"all", kMidi, 19, 64, " | setup cc7=100 cc10=64 program=5"},
      {"instrument", kInstrument, 19, 64, " | setup cc7=100 cc10=64 program=5"},
      {"audio", kAudio, 19, 64, ""},
      {"unset pan", kMidi, 19, 255, " | setup program=5"},
      {"no program", kMidi, 17, 64, " | setup cc7=100 cc10=64"},
      {"too small", kMidi, 15, 64, ""},
  };
  for (const auto& c : cases) {
    BlockWriter content;
    content.u8(100).zeros(7).u8(c.pan).zeros(7).u8(5);
    std::vector<std::uint8_t> bytes = content.take();
    bytes.resize(c.size - 2);
    BlockWriter w;
    w.open(c.row_type).leaf(0x2036, bytes).leaf(0x2036, std::vector<std::uint8_t>(20, 1)).close();
    const std::string read = tables_of(w).rows("strip rows");
    EXPECT_TRUE(read.ends_with(std::string("display=0") + c.read)) << c.what << ": " << read;
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
  for (const std::uint16_t type : {kAudio, kMidi, kInstrument, kMidi}) open_row(w, type, "").close();
  properties(w, 59);
  properties(w, 90);
  w.leaf(0x2502, std::vector<std::uint8_t>(150));  // too small
  properties(w, 59);                               // the last one is no strip's
  const std::string rest = " \"\" empty-name | height=0 display=0";
  const std::string read =
      " | properties quantize duration delay delay_ticks=-2500 velocity percent=80 offset=-10 transpose octaves=-1 "
      "semitones=7";
  EXPECT_EQ(tables_of(w).rows("strip rows"),
            "0: audio" + rest + "\n1: midi" + rest + read + "\n2: instrument" + rest + read + "\n3: midi" + rest);
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
  EXPECT_EQ(tables_of(w).rows("key buses"), "4 \"again\"\n5 \"plain\"\n7 \"shared\"\n8 \"shared\"");
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
  EXPECT_EQ(read_lane(Image(w.leaf(0x260a, std::vector<std::uint8_t>(29, 1))).session.bytes(), 20).initial, 0);
}

TEST(Lanes, TheirNumberTellsWhatTheyDrive) {
  const Lanes lanes = {{1}, {2}, {3}, {4}, {5}, {6}};
  BlockWriter w;
  for (const char* count : {"0", "1", "2", "3", "4", "5", "6"})
    row(w, count, {-70}, {lanes.begin(), lanes.begin() + (*count - '0')});
  EXPECT_EQ(tables_of(w).rows("strips"), R"(0: "0" -7 dB pan=0
1: "1" 0.1 dB pan=0 lanes=1 | volume 1
2: "2" 0.1 dB pan=0 lanes=2 | volume 1 | mute 2
3: "3" 0.1 dB pan=0 lanes=3 | volume 1 | mute 2 | pan 3
4: "4" 0.1 dB pan=0 lanes=4 | volume 1 | mute 2 | pan 3 | trim 4
5: "5" 0.1 dB pan=0 lanes=5 stereo dual_pan=2 | volume 1 | mute 2 | pan 3 | right pan 4 | trim 5
6: "6" 0.1 dB pan=0 lanes=6 | volume 1 | mute 2 | pan 3)");
}

TEST(Lanes, TheVolumeLaneTellsTheRestingFaderUnlessItMovesOrPassesTheLimit) {
  BlockWriter w;
  row(w, "rests", {-60}, {{-120}});
  row(w, "moves", {-60}, {{-120, {{0, 5}}}});
  row(w, "limited", {60}, {{61}});
  row(w, "at the limit", {60}, {{60}});
  row(w, "above, but the record isn't at it", {59}, {{61}});
  EXPECT_EQ(tables_of(w).rows("strips"), R"(0: "rests" -12 dB pan=0 lanes=1 | volume -120
1: "moves" -6 dB pan=0 lanes=1 | volume -120 0/5
2: "limited" 6 dB pan=0 lanes=1 | volume 61
3: "at the limit" 6 dB pan=0 lanes=1 | volume 60
4: "above, but the record isn't at it" 6.1 dB pan=0 lanes=1 | volume 61)");
}

TEST(Lanes, AStereoStripPansItsSidesApartUnlessTheyStayHardLeftAndRight) {
  BlockWriter w;
  const auto stereo = [&](const char* name, const Lane& left, const Lane& right) {
    row(w, name, {}, {{}, {}, left, right, {}});
  };
  stereo("rest at the sides", {-100}, {100});
  stereo("rest elsewhere", {-50}, {50});
  stereo("points that stay", {-100, {{0, -100}}}, {100, {{0, 100}, {9, 100}}});
  stereo("left moves", {-100, {{0, -100}, {5, -99}}}, {100});
  stereo("right moves", {-100, {{0, -100}}}, {100, {{0, 99}, {1, 98}}});
  const std::string stereo_strip = " 0 dB pan=0 lanes=5 stereo", at_sides = " | pan -100 | right pan 100";
  EXPECT_EQ(tables_of(w).rows("strips"),
            "0: \"rest at the sides\"" + stereo_strip + at_sides + "\n1: \"rest elsewhere\"" + stereo_strip +
                " dual_pan=2 | pan -50 | right pan 50\n2: \"points that stay\"" + stereo_strip + at_sides +
                "\n3: \"left moves\"" + stereo_strip + " dual_pan=2" + at_sides +
                " | dual left -100 0/-100 5/-99\n4: \"right moves\"" + stereo_strip + " dual_pan=3" + at_sides +
                " 0/99 1/98 | dual left -100 0/-100");
}

// A strip of free lanes, valued from 1 on, and a group for each entry of `groups`, its lanes valued from 10 on.
void grouped(BlockWriter& w, std::string_view name, unsigned width, std::size_t free,
             const std::vector<std::size_t>& groups, std::uint16_t type = kAudio, int second_initial = -1) {
  w.open(type).open(0x102d).open(0x2619).text(name).close().close().u8(width).open(0x260d);
  level(w, {});
  for (std::size_t i = 0; i < free; ++i) lane(w, {static_cast<int>(i) + 1});
  int value = 10;
  for (std::size_t g = 0; g < groups.size(); ++g) {
    w.open(0x260c);
    for (std::size_t i = 0; i < groups[g]; ++i, ++value)
      lane(w, {g == 1 && i == 0 && second_initial >= 0 ? second_initial : value});
    w.close();
  }
  w.close().close();
}

TEST(Lanes, GroupsAndWidthTellWhatTheyDrive) {
  BlockWriter w;
  grouped(w, "two channels, a panner", 1, 4, {7, 6});
  grouped(w, "wider", 2, 3, {2, 3});
  grouped(w, "one channel", 0, 3, {2, 3}, kAudio, 0);
  grouped(w, "two by the second group's lane", 0, 3, {2, 3}, kAudio, 5);
  grouped(w, "a master has volume and mute", 1, 3, {2, 3}, kMaster);
  grouped(w, "no trim with two free lanes", 1, 2, {2, 3});
  grouped(w, "one free lane: all by place", 1, 1, {2, 3});
  // Pan lanes alone in their groups, whatever the row's width.
  grouped(w, "two pans", 0, 2, {1, 1});
  grouped(w, "two pans with trim", 2, 3, {1, 1});
  grouped(w, "one pan", 1, 2, {1, 0}, kMaster);
  grouped(w, "one pan with trim", 1, 4, {0, 1});
  grouped(w, "a master's volume", 1, 1, {0, 0}, kMaster);
  grouped(w, "three pans", 1, 3, {1, 0, 1, 1});
  grouped(w, "pans alone", 1, 0, {1, 1});
  grouped(w, "no group", 1, 3, {});
  grouped(w, "no lane", 1, 0, {0, 0});
  EXPECT_EQ(
      tables_of(w).rows("strips"),
      R"(0: "two channels, a panner" 0.1 dB pan=0 lanes=5 stereo dual_pan=2 | volume 1 | mute 2 | pan 10 | right pan 17 | trim 4 | panner level 3 | panner 10 | panner 11 | panner 12 | panner 13 | panner 14 | panner 15 | panner 16
1: "wider" 0.1 dB pan=0 lanes=3 | volume 1 | mute 2 | pan 3 | panner level 3
2: "one channel" 0.1 dB pan=0 lanes=4 | volume 1 | mute 2 | pan 10 | trim 3 | panner level 3
3: "two by the second group's lane" 0.1 dB pan=0 lanes=5 stereo dual_pan=2 | volume 1 | mute 2 | pan 10 | right pan 5 | trim 3 | panner level 3
4: "a master has volume and mute" 0.1 dB pan=0 lanes=2 | volume 1 | mute 2 | panner level 3
5: "no trim with two free lanes" 0.1 dB pan=0 lanes=4 | volume 1 | mute 2 | pan 10 | trim 12
6: "one free lane: all by place" 0.1 dB pan=0 lanes=6 | volume 1 | mute 10 | pan 11
7: "two pans" 0.1 dB pan=0 lanes=4 pan_groups=2 stereo dual_pan=2 | volume 1 | mute 2 | pan 10 | right pan 11
8: "two pans with trim" 0.1 dB pan=0 lanes=5 pan_groups=2 stereo dual_pan=2 | volume 1 | mute 2 | pan 10 | right pan 11 | trim 3
9: "one pan" 0.1 dB pan=0 lanes=3 pan_groups=1 | volume 1 | mute 2 | pan 10
10: "one pan with trim" 0.1 dB pan=0 lanes=5 pan_groups=1 | volume 1 | mute 2 | pan 10 | trim 3
11: "a master's volume" 0.1 dB pan=0 lanes=1 pan_groups=0 | volume 1
12: "three pans" 0.1 dB pan=0 lanes=6 pan_groups=3 | volume 1 | mute 2 | pan 10 | trim 3
13: "pans alone" 0 dB pan=0 lanes=2 pan_groups=2 stereo dual_pan=2 | pan 10 | right pan 11
14: "no group" 0.1 dB pan=0 lanes=3 | volume 1 | mute 2 | pan 3
15: "no lane" 0 dB pan=0 pan_groups=0)");
}

TEST(Lanes, AStripIsUnusualByItsLanesItsGroupsOrTheEditWindow) {
  BlockWriter w;
  w.open(0x2519);
  table_entry(w, "wide in the window");
  table_entry(w, "by place, wide in the window");
  w.close();
  grouped(w, "two pans", 2, 2, {1, 1});
  grouped(w, "three pans", 0, 2, {1, 1, 1});
  grouped(w, "wide in the window", 0, 2, {1, 1});
  grouped(w, "no lane", 2, 0, {0, 0, 0});
  grouped(w, "panners", 2, 3, {2, 2});
  row(w, "by place, wide in the window", {}, {{1}, {2}, {3}, {4}});
  row(w, "three", {}, {{1}, {2}, {3}});
  EXPECT_EQ(
      tables_of(w).rows("unusual strips"),
      "0: \"three pans\" lanes=5\n1: \"wide in the window\" lanes=4\n2: \"panners\" lanes=3\n3: \"three\" lanes=3");
}

TEST(Lanes, ATooSmallLaneInTheSecondGroupMakesNoSecondChannel) {
  for (const std::size_t size : {31u, 32u}) {
    BlockWriter w;
    w.open(kAudio).open(0x102d).u16(0).close().u8(0).open(0x260d).open(0x260c);
    lane(w, {});
    w.close().open(0x260c).leaf(0x260a, std::vector<std::uint8_t>(size - 2, 1)).close().close().close();
    const Image image(w);
    const FlatBlock& strip = *image.session.first_of_type(kAudio);
    FirstFit any_block(image.session);
    EXPECT_EQ(strip_width_code(image.session, strip.start, strip.end(), any_block), size == 32 ? 1 : 0);
  }
}

}  // namespace
}  // namespace frt

// What a session says of itself: timecode, recording format, pan depth, grid, meter map, memory locations.
#include "session/headers/session_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "session/headers/meter_map.h"
#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Fields;
using test::Image;
using test::SessionBuilder;
using test::tables_of;

SessionSettings settings_of(const std::vector<std::uint8_t>& blocks) {
  const Image image(blocks);
  return read_session_settings(image.session);
}

// The line of the settings that begins so.
std::string line_of(const test::Tables& tables, std::string_view begin) {
  const std::string rows = "\n" + tables.rows("settings") + "\n";
  const std::size_t at = rows.find("\n" + std::string(begin));
  return at == rows.npos ? "" : rows.substr(at + 1, rows.find('\n', at + 1) - at - 1);
}

// ---- timecode ----

TEST(Timecode, EachRateBaseAndExtended) {
  const struct {
    std::uint8_t code;
    std::uint32_t start;
    std::vector<std::uint32_t> extended;  // code and start
    const char* read;
  } cases[] = {
      {1, 24, {}, "24|24 fps||24 0|24|1.000000"},
      {2, 50, {}, "25|25 fps||25 0|50|2.000000"},
      {3, 30000, {}, "29.97|29.97 fps||30 2|30000|1001.000000"},
      {5, 0, {}, "29.97 drop|29.97 fps drop frame||30 1|0|0.000000|drop"},
      {7, 0, {}, "30|30 fps||30 0|0|0.000000|plain"},
      {8, 0, {}, "30 drop|30 fps drop frame|30|30 0|0|0.000000|drop|plain"},
      {9, 24000, {}, "23.976|23.976 fps||24 2|24000|1001.000000"},
      {4, 60, {}, "30|||30 0|60|2.000000"},
      {7, 0xFFFFFFFF, {}, "30|30 fps||30 0|4294967295|143165576.500000"},
      {7, 30, {7, 30}, "30|30 fps||30 0|30|1.000000"},
      {9, 24, {15, 48}, "47.952|47.952 fps||48 2|48|1.001000"},
      {1, 24, {16, 49}, "48|48 fps||48 0|49|1.020833"},  // 49 / 2 is 24
      {2, 0, {10, 0}, "50|50 fps||50 0|0|0.000000"},
      {3, 0, {11, 0}, "59.94|59.94 fps||60 2|0|0.000000"},
      {5, 0, {12, 0}, "59.94 drop|59.94 fps drop frame|59.94|60 2|0|0.000000|drop"},
      {7, 0, {13, 0}, "60|60 fps||60 0|0|0.000000"},
      {8, 0, {14, 0}, "60 drop|60 fps drop frame|60|60 0|0|0.000000|drop"},
      {2, 25, {17, 100}, "100|100 fps||100 0|100|1.000000"},
      {3, 0, {18, 0}, "119.88|119.88 fps||120 2|0|0.000000"},
      {5, 0, {19, 0}, "119.88 drop|119.88 fps drop frame|119.88|120 2|0|0.000000|drop"},
      {7, 0, {20, 0}, "120|120 fps||120 0|0|0.000000"},
      {8, 0, {21, 0}, "120 drop|120 fps drop frame|120|120 0|0|0.000000|drop"},
      {7, 30, {13, 90}, "30|||30 0|30|1.000000"},  // the starts disagree
      {7, 30, {99, 30}, "30|||30 0|30|1.000000"},  // an unknown rate
      {7, 30, {7, 31}, "30|||30 0|30|1.000000"},   // even for the base rate
      {2, 0, {13, 0}, "25|||25 0|0|0.000000"},     // another base's
  };
  for (const auto& one : cases) {
    SessionBuilder s;
    s.layout.extended_timecode = !one.extended.empty();
    s.timecode(one.code, one.start);
    if (!one.extended.empty()) s.extended_timecode(one.extended[0], one.extended[1]);
    const std::vector<std::uint8_t> bytes = s.image();
    const TimecodeSettings t = read_session_settings(SessionImage(ByteView(bytes.data(), bytes.size()))).timecode;
    EXPECT_EQ(
        format_text("%s|%s|%s|%d %d|%u|%.6f%s%s", std::string(t.rate_label).c_str(), std::string(t.long_label).c_str(),
                    std::string(t.ruler_label).c_str(), t.timemode_rate, t.timemode_mode, t.start_frames,
                    t.project_offset, t.drop_frame ? "|drop" : "", t.differs_from_default() ? "" : "|plain"),
        one.read)
        << int{one.code};
  }
}

TEST(Timecode, ASecondRecordMustFit) {
  const struct {
    std::uint32_t text_length;
    std::size_t size;
    const char* label;
  } cases[] = {{0, 39, "60"}, {0, 38, "30"}, {64, 103, "60"}, {64, 102, "30"}, {65, 200, "30"}};
  for (const auto& [length, size, label] : cases) {
    Fields fields(0x204d, size);
    fields.put(9, 7, 1).put(34, length, 4);
    if (size >= 38 - 7 + std::size_t{length} + 8) fields.put(38 + length, 13, 4);
    EXPECT_EQ(settings_of(fields.blocks()).timecode.rate_label, label) << size;
  }
  BlockWriter w;  // a block that is too short for the rate is passed over
  Fields(0x204d, 0x15).put(9, 1, 1).into(w);
  Fields(0x204d, 0x16).put(9, 2, 1).into(w);
  EXPECT_EQ(settings_of(w.take()).timecode.rate_label, "25");
}

// ---- recording format and pan depth ----

std::string recording_of(const std::vector<std::uint8_t>& blocks) {
  const SessionSettings settings = settings_of(blocks);
  const RecordingFormat& r = settings.recording;
  const PanDepth& pan = settings.pan_depth;
  return format_text("%s%d/%d%s type %d, pan %s%d %.1f", r.depth_read ? "" : "unread ", r.depth_byte, r.depth,
                     r.is_float ? " float" : "", r.file_type, pan.was_read ? "" : "unread ", pan.value, pan.db);
}

Fields fixed_settings(std::size_t size, unsigned type, unsigned pan, unsigned float_flag, unsigned depth) {
  Fields fields(0x1028, size);
  if (size > 3) fields.put(9, type, 1);
  if (size > 14) fields.put(21, 0xFFFF, 4);  // no list of path names
  if (size > 0x6F) fields.put(118, pan, 1);
  if (size > 0x70) fields.put(119, float_flag, 1);
  if (size > 0x72) fields.put(121, depth, 1);
  return fields;
}

TEST(RecordingFormat, AtFixedPlaces) {
  const struct {
    std::size_t size;
    unsigned type, pan, float_flag, depth;
    const char* read;
  } cases[] = {
      {115, 3, 2, 0, 16, "16/16 type 3, pan 2 -3.0"},
      {200, 4, 1, 0, 24, "24/24 type 4, pan 1 -2.5"},
      {115, 3, 3, 1, 32, "32/32 float type 3, pan 3 -4.5"},
      {115, 3, 4, 1, 24, "24/24 type 3, pan 4 -6.0"},  // float counts with 32 only
      {115, 3, 5, 0, 8, "8/0 type 3, pan 5 -3.0"},
      {114, 3, 1, 0, 0, "unread 0/0 type 3, pan 1 -2.5"},
      {111, 3, 0, 0, 0, "unread 0/0 type 3, pan unread 0 -3.0"},
      {4, 3, 0, 0, 0, "unread 0/0 type 3, pan unread 0 -3.0"},
      {3, 0, 0, 0, 0, "unread 0/0 type 0, pan unread 0 -3.0"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(recording_of(fixed_settings(one.size, one.type, one.pan, one.float_flag, one.depth).blocks()), one.read)
        << one.size;
  BlockWriter w;  // the pan depth comes from the first block that is long enough
  fixed_settings(50, 4, 0, 0, 0).into(w);
  fixed_settings(120, 3, 4, 0, 16).into(w);
  EXPECT_EQ(recording_of(w.take()), "unread 0/0 type 4, pan 4 -6.0");
}

TEST(RecordingFormat, BehindAPath) {
  const std::vector<std::string> path = {"Disk", "Users", std::string(255, 'x'), ""}, most(64, "a");
  const struct {
    std::vector<std::string> names;
    std::size_t left;  // bytes behind the names, the fields among them
    unsigned pan, float_flag, depth;
    const char* read;
  } cases[] = {
      {{}, 14, 3, 0, 16, "16/16 type 3, pan 3 -4.5"},
      {path, 15, 1, 1, 32, "32/32 float type 3, pan 1 -2.5"},
      {most, 14, 1, 0, 24, "24/24 type 3, pan 1 -2.5"},
      // Anything else is no such list, and the block is short.
      {{}, 13, 3, 0, 16, "unread 0/0 type 3, pan unread 0 -3.0"},
      {{}, 16, 3, 0, 16, "unread 0/0 type 3, pan unread 0 -3.0"},
      {{"Disk", std::string(256, 'x')}, 14, 3, 0, 16, "120/0 type 3, pan 120 -3.0"},  // letters, at the fixed places
  };
  for (const auto& one : cases) {
    BlockWriter w;
    w.open(0x1028).u8(3).u8(0x18).u32(48000).zeros(6).u32(static_cast<std::uint32_t>(one.names.size()));
    for (const std::string& name : one.names) w.text(name);
    w.zeros(6).u8(one.pan).u8(one.float_flag).u8(9).u8(one.depth).zeros(one.left - 10).close();
    EXPECT_EQ(recording_of(w.take()), one.read);
  }
}

// ---- grid ----

TEST(Grid, TheFirstStepIsTheNudgeTheSecondTheGrid) {
  const struct {
    std::string text;  // its bars stand for bytes of 0, its colons for bars
    const char *nudge, *grid;
    std::size_t size = 0;
  } cases[] = {
      {"|   0: 1: 000|||   2: 3: 240|", "0|1|0", "2|3|240"},
      {"|0:1:000|4:5:678|7:8:999|", "0|1|0", "4|5|678"},
      {"|12345678: 12345678: 000|", "12345678|12345678|0", ""},
      {"|123456789: 1: 000| 1: 2: 003", "1|2|3", ""},
      {"|1:  2: 003|4: 5:  006|", "", ""},  // one blank at most
      {"|1: 2: 03|", "", ""},
      {"|1: 2: 003 4: 5: 006|", "1|2|3", ""},  // begins behind another byte only
      {"|1: 2: 003, 4: 5: 006|", "1|2|3", "4|5|6"},
      {"x1: 1: 1: 001|", "1|1|1", ""},  // fails, and is tried again behind the bar
      {"x1:2:003", "", "", 23},         // only blocks of its size count
      {"x1:2:003", "1|2|3", "", 24},
      {"x1:2:003", "1|2|3", "", 4000},
      {"x1:2:003", "", "", 4001},
  };
  for (const auto& one : cases) {
    std::string text = one.text;
    std::replace(text.begin(), text.end(), '|', '\0');
    std::replace(text.begin(), text.end(), ':', '|');
    BlockWriter w;
    Fields(0x2066, one.size ? one.size : std::max<std::size_t>(text.size() + 6, 24)).text(13, text).into(w);
    const auto tables = tables_of(w);
    const auto expected = [](std::string name, std::string step) { return step.empty() ? "" : name + " " + step; };
    EXPECT_EQ(line_of(tables, "nudge"), expected("nudge", one.nudge)) << one.text;
    EXPECT_EQ(line_of(tables, "grid"), expected("grid", one.grid)) << one.text;
  }
}

TEST(Grid, InQuarterNotes) {
  EXPECT_EQ(quarters_of({1, 0, 0}, 6, 8), 3);
  EXPECT_EQ(quarters_of({0, 1, 240}, 6, 8), 0.75);
  EXPECT_EQ(quarters_of({1, 2, 480}, 3, 4), 5.5);
}

// ---- meter map ----

TEST(MeterMap, EventsOfTheFirstTaggedBlockUntilOneIsNoMeter) {
  for (const auto& [numerator, denominator] : {std::pair{0u, 4u}, {100u, 4u}, {4u, 0u}, {4u, 65u}}) {
    SessionBuilder s;
    // A position below the bias is the start.
    s.meter(0 - std::uint64_t{5}, 1, 99, 64)
        .meter(960000, 2, 1, 1)
        .meter(5, 3, numerator, denominator)
        .meter(6, 4, 4, 4);
    const auto tables = tables_of(s);
    EXPECT_EQ(tables.rows("meters"), "0: tick 0 bar 1 99/64\n1: tick 960000 bar 2 1/1");
    EXPECT_EQ(tables.count("refused", "numerator or denominator"), 1u);
  }
}

TEST(MeterMap, ACountThatTheBlockCannotHoldGivesNoEvents) {
  for (const std::uint32_t count : {1u, 2u, 4097u, 0xFFFFFFFFu}) {
    BlockWriter w;
    w.open(0x2029).raw("Muter").zeros(51).close();
    w.open(0x2029).raw("Meter").zeros(6).u32(count).u64(test::kTickOrigin).u32(1).u32(3).u32(4).zeros(16).close();
    EXPECT_EQ(tables_of(w).rows("meters"), count == 1 ? "0: tick 0 bar 1 3/4" : "") << count;
  }
}

TEST(MeterMap, ChangesAndRepeats) {
  const auto text = [](const std::vector<MeterEvent>& events) {
    std::string out;
    for (const MeterEvent& event : events)
      out += format_text("%u/%u at %u ", event.numerator, event.denominator, event.bar);
    return out;
  };
  const MeterChanges sorted =
      sort_meter_events({{0, 1, 4, 4}, {1, 2, 4, 4}, {2, 3, 3, 4}, {3, 4, 3, 4}, {4, 5, 3, 8}, {5, 6, 4, 4}});
  EXPECT_EQ(text(sorted.changes), "3/4 at 3 3/8 at 5 4/4 at 6 ");
  EXPECT_EQ(text(sorted.repeats), "4/4 at 2 3/4 at 4 ");
}

// ---- memory locations ----

constexpr std::uint64_t kTicks = test::kTickOrigin;

Fields location(const std::string& name, unsigned flags, unsigned kind, std::uint64_t start, std::uint64_t end,
                std::size_t behind_name = 20) {
  const std::size_t n = name.size();
  Fields fields(0x2077, n + 19 + behind_name);
  fields.put(11, flags, 1).put(12, kind, 1).put(15, n, 4).text(19, name);
  return fields.put(n + 19, start, 5).put(n + 27, end, 5);
}

std::string locations_of(const std::vector<Fields>& blocks) {
  BlockWriter w;
  for (const Fields& block : blocks) block.into(w);
  return tables_of(w).rows("locations");
}

TEST(MemoryLocations, PlacesAndKinds) {
  const struct {
    const char* what;
    Fields block;
    const char* read;
  } cases[] = {
      {"a marker in ticks", location("A", 0, 1, kTicks + 5, kTicks + 5), "0: \"A\" marker 5 to 5 ticks"},
      {"stored as 9", location("A", 0, 9, kTicks, kTicks), "0: \"A\" marker 0 to 0 ticks"},
      {"a selection", location("A", 0, 2, kTicks, kTicks + 7), "0: \"A\" selection 0 to 7 ticks"},
      {"no time property", location("", 0, 0, kTicks, kTicks), "0: \"\" no-time 0 to 0 ticks"},
      {"no such kind", location("A", 0, 3, kTicks, kTicks), ""},
      {"in samples", location("A", 2, 1, 480, 480), "0: \"A\" marker 480 to 480 samples"},
      {"in samples without the flag", location("A", 0xFD, 1, 48000, 48000), ""},
      {"in samples backwards", location("A", 2, 2, 48001, 48000), ""},
      {"one end in samples", location("A", 2, 2, 480, kTicks), "0: \"A\" selection 480 to 1e+12 samples"},
      {"backwards in ticks stays", location("A", 0, 2, kTicks + 9, kTicks + 7), "0: \"A\" selection 9 to 7 ticks"},
      {"a name of bytes", location("\xc3\xa9", 0, 1, kTicks, kTicks), "0: \"\xc3\xa9\" marker 0 to 0 ticks"},
      {"a name that is no text", location("a\x01", 0, 1, kTicks, kTicks), ""},
      {"too long a name", location(std::string(129, 'a'), 0, 1, kTicks, kTicks), ""},
  };
  for (const auto& one : cases) EXPECT_EQ(locations_of({one.block}), one.read) << one.what;
}

TEST(MemoryLocations, Colors) {
  const auto abc = [](std::size_t behind) { return location("abc", 0, 1, kTicks, kTicks, behind); };
  const std::string read = "0: \"abc\" marker 0 to 0 ticks";
  // The other form: a palette index, where the block reaches it.
  EXPECT_EQ(locations_of({abc(121).put(3 + 145, 0xFFFE, 2)}), read);
  EXPECT_EQ(locations_of({abc(121).put(3 + 145, 57, 2)}), read + " palette=57");
  EXPECT_EQ(locations_of({abc(120)}), read);
  EXPECT_EQ(locations_of({abc(263).put(3 + 145, 58, 2)}), read + " palette=58");
  // The long form: a marker colour, and perhaps one of its own.
  Fields long_form = abc(264).put(3 + 139, 12, 2).put(3 + 224, 0xAB, 1).put(3 + 226, 0xCD, 1).put(3 + 228, 0xEF, 1);
  EXPECT_EQ(locations_of({long_form}), read + " marker_color=12 rgb=11259375");
  EXPECT_EQ(locations_of({long_form.put(3 + 225, 1, 1)}), read + " marker_color=12");
}

TEST(MemoryLocations, OneThatRepeatsAnotherIsDropped) {
  const auto at = [](const char* name, unsigned flags, unsigned kind, std::uint64_t t, std::size_t behind = 20) {
    return location(name, flags, kind, t, t, behind);
  };
  EXPECT_EQ(locations_of({at("A", 0, 1, kTicks + 5), at("B", 0, 1, kTicks + 1), at("A", 1, 1, kTicks + 5, 30),
                          at("A", 0, 2, kTicks + 5), at("A", 2, 1, 5),  // the same numbers in another unit
                          at("B", 0, 1, kTicks + 1)}),
            "0: \"A\" marker 5 to 5 ticks\n1: \"B\" marker 1 to 1 ticks\n2: \"A\" selection 5 to 5 ticks");
}

}  // namespace
}  // namespace frt

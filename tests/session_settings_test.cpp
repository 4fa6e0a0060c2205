// What a session says of itself: timecode, recording format, pan depth, grid, meter map, memory locations.
#include "session/headers/session_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "session/headers/memory_locations.h"
#include "session/headers/meter_map.h"
#include "support/hand_image.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Fields;
using test::Image;
using namespace std::string_view_literals;

// ---- timecode ----

struct SecondRecord {
  std::uint32_t code, start;
};

Fields timecode(unsigned code, std::uint32_t start, const SecondRecord* second = nullptr) {
  if (!second) return Fields(0x204d, 0x16).put(9, code, 1).put(18, start, 4);
  return Fields(0x204d, 53)
      .put(9, code, 1)
      .put(18, start, 4)
      .put(34, 11, 4)
      .text(38, "01:00:00:00")
      .put(49, second->code, 4)
      .put(53, second->start, 4);
}

std::string dump(const TimecodeSettings& t) {
  char text[256];
  std::snprintf(text, sizeof text, "%s|%s|%s|%d %d|%u|%.6f%s%s", std::string(t.rate_label).c_str(),
                std::string(t.long_label).c_str(), std::string(t.ruler_label).c_str(), t.timemode_rate, t.timemode_mode,
                t.start_frames, t.project_offset, t.drop_frame ? "|drop" : "",
                t.differs_from_default() ? "" : "|plain");
  return text;
}

TEST(Timecode, EachRateBaseAndExtended) {
  const struct {
    unsigned code;
    std::uint32_t start;
    std::vector<SecondRecord> second;
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
      {7, 30, {{7, 30}}, "30|30 fps||30 0|30|1.000000"},
      {9, 24, {{15, 48}}, "47.952|47.952 fps||48 2|48|1.001000"},
      {1, 24, {{16, 49}}, "48|48 fps||48 0|49|1.020833"},  // 49 / 2 is 24
      {2, 0, {{10, 0}}, "50|50 fps||50 0|0|0.000000"},
      {3, 0, {{11, 0}}, "59.94|59.94 fps||60 2|0|0.000000"},
      {5, 0, {{12, 0}}, "59.94 drop|59.94 fps drop frame|59.94|60 2|0|0.000000|drop"},
      {7, 0, {{13, 0}}, "60|60 fps||60 0|0|0.000000"},
      {8, 0, {{14, 0}}, "60 drop|60 fps drop frame|60|60 0|0|0.000000|drop"},
      {2, 25, {{17, 100}}, "100|100 fps||100 0|100|1.000000"},
      {3, 0, {{18, 0}}, "119.88|119.88 fps||120 2|0|0.000000"},
      {5, 0, {{19, 0}}, "119.88 drop|119.88 fps drop frame|119.88|120 2|0|0.000000|drop"},
      {7, 0, {{20, 0}}, "120|120 fps||120 0|0|0.000000"},
      {8, 0, {{21, 0}}, "120 drop|120 fps drop frame|120|120 0|0|0.000000|drop"},
      {7, 30, {{13, 90}}, "30|||30 0|30|1.000000"},  // the starts disagree
      {7, 30, {{99, 30}}, "30|||30 0|30|1.000000"},  // an unknown rate
      {7, 30, {{7, 31}}, "30|||30 0|30|1.000000"},   // even for the base rate
      {2, 0, {{13, 0}}, "25|||25 0|0|0.000000"},     // another base's
  };
  for (const auto& one : cases) {
    const Image image(timecode(one.code, one.start, one.second.empty() ? nullptr : one.second.data()).blocks());
    EXPECT_EQ(dump(read_session_settings(image.session).timecode), one.read) << one.code;
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
    EXPECT_EQ(read_session_settings(Image(fields.blocks()).session).timecode.rate_label, label) << size;
  }
  // A block that is too short for the rate is passed over.
  BlockWriter w;
  Fields(0x204d, 0x15).put(9, 1, 1).into(w);
  timecode(2, 0).into(w);
  EXPECT_EQ(read_session_settings(Image(w).session).timecode.rate_label, "25");
}

// ---- recording format and pan depth ----

std::string recording_of(const std::vector<std::uint8_t>& blocks) {
  const Image image(blocks);
  const SessionSettings settings = read_session_settings(image.session);
  const RecordingFormat& r = settings.recording;
  const PanDepth& pan = settings.pan_depth;
  char text[128];
  std::snprintf(text, sizeof text, "%s%d/%d%s type %d, pan %s%d %.1f", r.depth_read ? "" : "unread ", r.depth_byte,
                r.depth, r.is_float ? " float" : "", r.file_type, pan.was_read ? "" : "unread ", pan.value, pan.db);
  return text;
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

// Path names, then `left` bytes, the fields among them.
std::vector<std::uint8_t> settings_behind_path(const std::vector<std::string>& names, std::size_t left, unsigned pan,
                                               unsigned float_flag, unsigned depth) {
  BlockWriter w;
  w.open(0x1028).u8(3).u8(0x18).u32(48000).zeros(6).u32(static_cast<std::uint32_t>(names.size()));
  for (const std::string& name : names) w.text(name);
  w.zeros(6).u8(pan).u8(float_flag).u8(9).u8(depth).zeros(left - 10).close();
  return w.take();
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
  EXPECT_EQ(recording_of(settings_behind_path({}, 14, 3, 0, 16)), "16/16 type 3, pan 3 -4.5");
  EXPECT_EQ(recording_of(settings_behind_path(path, 15, 1, 1, 32)), "32/32 float type 3, pan 1 -2.5");
  EXPECT_EQ(recording_of(settings_behind_path(most, 14, 1, 0, 24)), "24/24 type 3, pan 1 -2.5");
  // Anything else is no such list, and the block is short.
  for (const std::size_t left : {std::size_t{13}, std::size_t{16}})
    EXPECT_EQ(recording_of(settings_behind_path({}, left, 3, 0, 16)), "unread 0/0 type 3, pan unread 0 -3.0");
  EXPECT_EQ(recording_of(settings_behind_path({"Disk", std::string(256, 'x')}, 14, 3, 0, 16)),
            "120/0 type 3, pan 120 -3.0");  // letters, at the fixed places
}

// ---- grid ----

std::string grid_of(std::string_view text, std::size_t size = 0) {
  Fields fields(0x2066, size ? size : std::max<std::size_t>(text.size() + 6, 24));
  fields.text(13, text);
  const GridSettings grid = read_session_settings(Image(fields.blocks()).session).grid;
  char out[128];
  std::snprintf(out, sizeof out, "%s%ld|%ld|%ld %s%ld|%ld|%ld", grid.nudge_read ? "" : "none ", grid.nudge.bars,
                grid.nudge.beats, grid.nudge.ticks, grid.grid_read ? "" : "none ", grid.grid.bars, grid.grid.beats,
                grid.grid.ticks);
  return out;
}

TEST(Grid, TheFirstStepIsTheNudgeTheSecondTheGrid) {
  const struct {
    std::string text;  // its bars stand for bytes of 0, its colons for bars
    const char* read;
  } cases[] = {
      {"|   0: 1: 000|||   2: 3: 240|", "0|1|0 2|3|240"},
      {"|0:1:000|4:5:678|7:8:999|", "0|1|0 4|5|678"},
      {"|12345678: 12345678: 000|", "12345678|12345678|0 none 0|0|0"},
      {"|123456789: 1: 000| 1: 2: 003", "1|2|3 none 0|0|0"},
      {"|1:  2: 003|4: 5:  006|", "none 0|0|0 none 0|0|0"},  // one blank at most
      {"|1: 2: 03|", "none 0|0|0 none 0|0|0"},
      {"|1: 2: 003 4: 5: 006|", "1|2|3 none 0|0|0"},  // begins behind another byte only
      {"|1: 2: 003, 4: 5: 006|", "1|2|3 4|5|6"},
      {"x1: 1: 1: 001|", "1|1|1 none 0|0|0"},  // fails, and is tried again behind the bar
  };
  for (const auto& one : cases) {
    std::string text = one.text;
    std::replace(text.begin(), text.end(), '|', '\0');
    std::replace(text.begin(), text.end(), ':', '|');
    EXPECT_EQ(grid_of(text), one.read) << one.text;
  }
  const std::string_view text = "x1|2|003"sv;
  EXPECT_EQ(grid_of(text, 23), "none 0|0|0 none 0|0|0") << "only blocks of its size count";
  EXPECT_EQ(grid_of(text, 24), "1|2|3 none 0|0|0");
  EXPECT_EQ(grid_of(text, 4000), "1|2|3 none 0|0|0");
  EXPECT_EQ(grid_of(text, 4001), "none 0|0|0 none 0|0|0");
}

TEST(Grid, InQuarterNotes) {
  EXPECT_EQ(quarters_of({1, 0, 0}, 6, 8), 3);
  EXPECT_EQ(quarters_of({0, 1, 0}, 6, 8), 0.5);
  EXPECT_EQ(quarters_of({0, 0, 240}, 6, 8), 0.25);
  EXPECT_EQ(quarters_of({1, 2, 480}, 3, 4), 5.5);
}

// ---- meter map ----

void meter_block(BlockWriter& w, const std::vector<MeterEvent>& events, std::string_view tag = "Meter") {
  w.open(0x2029).raw(tag).zeros(11 - tag.size()).u32(static_cast<std::uint32_t>(events.size()));
  for (const MeterEvent& event : events) {
    w.u40(static_cast<std::uint64_t>(static_cast<std::int64_t>(event.position)) + test::kTickOrigin).zeros(3);
    w.u32(event.bar).u32(event.numerator).u32(event.denominator).zeros(16);
  }
  w.close();
}

std::string dump(const std::vector<MeterEvent>& events) {
  std::string out;
  char text[64];
  for (const MeterEvent& event : events) {
    std::snprintf(text, sizeof text, "%u/%u at %u@%g ", event.numerator, event.denominator, event.bar, event.position);
    out += text;
  }
  return out;
}

TEST(MeterMap, EventsOfTheFirstTaggedBlockUntilOneIsNoMeter) {
  for (const auto& [numerator, denominator] : {std::pair{0u, 4u}, {100u, 4u}, {4u, 0u}, {4u, 65u}}) {
    BlockWriter w;
    meter_block(w, {{0, 1, 2, 2}}, "Muter");
    meter_block(w, {{-5, 1, 99, 64}, {960000, 2, 1, 1}, {5, 3, numerator, denominator}, {6, 4, 4, 4}});
    meter_block(w, {{0, 1, 5, 4}, {1, 2, 6, 4}, {2, 3, 5, 4}});
    // A position below the bias is the start.
    EXPECT_EQ(dump(read_meter_map(Image(w).session)), "99/64 at 1@0 1/1 at 2@960000 ");
  }
}

TEST(MeterMap, ACountThatTheBlockCannotHoldGivesNoEvents) {
  for (const std::uint32_t count : {2u, 4097u, 0xFFFFFFFFu}) {
    BlockWriter w;
    meter_block(w, {{0, 1, 3, 4}});
    EXPECT_TRUE(read_meter_map(Image(w.patch(20, count)).session).empty()) << count;
  }
}

TEST(MeterMap, ChangesAndRepeats) {
  const MeterChanges sorted =
      sort_meter_events({{0, 1, 4, 4}, {1, 2, 4, 4}, {2, 3, 3, 4}, {3, 4, 3, 4}, {4, 5, 3, 8}, {5, 6, 4, 4}});
  EXPECT_EQ(dump(sorted.changes), "3/4 at 3@2 3/8 at 5@4 4/4 at 6@5 ");
  EXPECT_EQ(dump(sorted.repeats), "4/4 at 2@1 3/4 at 4@3 ");
}

// ---- memory locations ----

struct Location {
  std::string name;
  unsigned flags = 2, kind = 1;
  std::uint64_t start = 0, end = 0;  // as stored
};

constexpr std::uint64_t kTicks = test::kTickOrigin;

Fields location(const Location& l, std::size_t behind_name) {
  const std::size_t n = l.name.size();
  Fields fields(0x2077, n + 19 + behind_name);
  fields.put(11, l.flags, 1).put(12, l.kind, 1).put(15, n, 4).text(19, l.name);
  return fields.put(n + 19, l.start, 5).put(n + 27, l.end, 5);
}

std::string locations_of(const std::vector<Fields>& blocks) {
  BlockWriter w;
  for (const Fields& block : blocks) block.into(w);
  const Image image(w);
  std::string out;
  for (const MemoryLocation& l : read_memory_locations(image.session)) {
    char text[256];
    std::snprintf(text, sizeof text, "%.*s:%d %g-%g%s", static_cast<int>(l.name.size()), l.name.data(), l.kind, l.start,
                  l.end, l.in_samples ? "s" : "");
    out += text;
    if (l.palette != -2) out += " palette " + std::to_string(l.palette);
    if (l.marker_color != -1) out += " color " + std::to_string(l.marker_color);
    if (l.stored_rgb != -1) out += " rgb " + std::to_string(l.stored_rgb);
    out += ", ";
  }
  return out;
}

TEST(MemoryLocations, PlacesAndKinds) {
  const struct {
    const char* what;
    Location location;
    const char* read;
  } cases[] = {
      {"a marker in ticks", {"A", 0, 1, kTicks + 5, kTicks + 5}, "A:1 5-5, "},
      {"stored as 9", {"A", 0, 9, kTicks, kTicks}, "A:1 0-0, "},
      {"a selection", {"A", 0, 2, kTicks, kTicks + 7}, "A:2 0-7, "},
      {"no time property", {"", 0, 0, kTicks, kTicks}, ":0 0-0, "},
      {"no such kind", {"A", 0, 3, kTicks, kTicks}, ""},
      {"in samples", {"A", 2, 1, 48000, 48000}, "A:1 48000-48000s, "},
      {"in samples without the flag", {"A", 0xFD, 1, 48000, 48000}, ""},
      {"in samples backwards", {"A", 2, 2, 48001, 48000}, ""},
      {"one end in samples makes both", {"A", 2, 2, 48000, kTicks}, "A:2 48000-1e+12s, "},
      {"backwards in ticks stays", {"A", 0, 2, kTicks + 9, kTicks + 7}, "A:2 9-7, "},
      {"a name of bytes", {"caf\xc3\xa9", 0, 1, kTicks, kTicks}, "caf\xc3\xa9:1 0-0, "},
      {"a name that is no text", {"a\x01", 0, 1, kTicks, kTicks}, ""},
      {"too long a name", {std::string(129, 'a'), 0, 1, kTicks, kTicks}, ""},
  };
  for (const auto& one : cases) EXPECT_EQ(locations_of({location(one.location, 20)}), one.read) << one.what;
}

TEST(MemoryLocations, Colors) {
  const Location a{"abc", 0, 1, kTicks, kTicks};
  // The other form: a palette index, where the block reaches it.
  EXPECT_EQ(locations_of({location(a, 121).put(3 + 145, 0xFFFE, 2)}), "abc:1 0-0, ");
  EXPECT_EQ(locations_of({location(a, 121).put(3 + 145, 57, 2)}), "abc:1 0-0 palette 57, ");
  EXPECT_EQ(locations_of({location(a, 120)}), "abc:1 0-0, ");
  EXPECT_EQ(locations_of({location(a, 263).put(3 + 145, 58, 2)}), "abc:1 0-0 palette 58, ");
  // The long form: a marker colour, and perhaps one of its own.
  Fields long_form = location(a, 264).put(3 + 139, 12, 2).put(3 + 224, 0xAB, 1).put(3 + 226, 0xCD, 1);
  EXPECT_EQ(locations_of({long_form.put(3 + 228, 0xEF, 1)}), "abc:1 0-0 color 12 rgb 11259375, ");
  EXPECT_EQ(locations_of({long_form.put(3 + 225, 1, 1)}), "abc:1 0-0 color 12, ");
}

TEST(MemoryLocations, OneThatRepeatsAnotherIsDropped) {
  const Location a{"A", 0, 1, kTicks + 5, kTicks + 5}, b{"B", 0, 1, kTicks + 1, kTicks + 1};
  Location again = a, other_kind = a;
  again.flags = 1;
  other_kind.kind = 2;
  const Location in_samples = {"A", 2, 1, 5, 5};  // the same numbers in another unit
  EXPECT_EQ(locations_of({location(a, 20), location(b, 20), location(again, 30), location(other_kind, 20),
                          location(in_samples, 20), location(b, 20)}),
            "A:1 5-5, B:1 1-1, A:2 5-5, ");
}

TEST(SessionSettings, EveryCutOfASessionIsRead) {
  BlockWriter w;
  const SecondRecord second{12, 30};
  timecode(5, 15, &second).into(w);
  w.bytes(settings_behind_path({"Disk", "Users"}, 15, 1, 1, 32));
  Fields(0x2066, 60).text(13, "\0   0| 1| 000\0   1| 0| 000\0"sv).into(w);
  meter_block(w, {{0, 1, 6, 8}, {4 * 960000, 3, 3, 4}});
  location({"Chorus", 0, 1, kTicks, kTicks}, 264).into(w);
  location({"Verse", 0, 1, kTicks, kTicks}, 121).into(w);
  test::each_cut(test::image_of(w.take()), [](ByteView cut) {
    const SessionImage image(cut);
    read_session_settings(image);
    read_meter_map(image);
    read_memory_locations(image);
  });
}

}  // namespace
}  // namespace frt

// What a session says of itself: timecode, recording format, pan depth, grid, meter map, memory locations.
#include "session/session_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "session/memory_locations.h"
#include "session/meter_map.h"
#include "support/block_writer.h"

namespace frt {
namespace {

using test::BlockWriter;
using namespace std::string_view_literals;

struct Image {
  explicit Image(const std::vector<std::uint8_t>& blocks) : bytes(test::image_of(blocks)) {
    bytes.resize(bytes.size() + 64);
    session = SessionImage(ByteView(bytes.data(), bytes.size()));
  }
  std::vector<std::uint8_t> bytes;
  SessionImage session;
};

// A block filled by field, each at its distance from the block's first byte.
class Fields {
 public:
  Fields(std::uint16_t content_type, std::size_t size) : type_(content_type), content_(size - 2) {}
  Fields& put(std::size_t at, std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) content_.at(at - 9 + i) = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
  }
  Fields& text(std::size_t at, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) content_.at(at - 9 + i) = static_cast<std::uint8_t>(text[i]);
    return *this;
  }
  void into(BlockWriter& w) const { w.leaf(type_, content_); }
  Image image() const {
    BlockWriter w;
    into(w);
    return Image(w.take());
  }

 private:
  std::uint16_t type_;
  std::vector<std::uint8_t> content_;
};

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

TEST(Timecode, RatesWithoutASecondRecord) {
  const struct {
    unsigned code;
    std::uint32_t start;
    const char* read;
  } cases[] = {
      {1, 24, "24|24 fps||24 0|24|1.000000"},
      {2, 50, "25|25 fps||25 0|50|2.000000"},
      {3, 0, "29.97|29.97 fps||30 2|0|0.000000"},
      {3, 30000, "29.97|29.97 fps||30 2|30000|1001.000000"},
      {5, 0, "29.97 drop|29.97 fps drop frame||30 1|0|0.000000|drop"},
      {7, 0, "30|30 fps||30 0|0|0.000000|plain"},
      {7, 30, "30|30 fps||30 0|30|1.000000"},
      {8, 0, "30 drop|30 fps drop frame|30|30 0|0|0.000000|drop|plain"},
      {9, 24000, "23.976|23.976 fps||24 2|24000|1001.000000"},
      {4, 0, "30|||30 0|0|0.000000|plain"},
      {200, 60, "30|||30 0|60|2.000000"},
      {7, 0xFFFFFFFF, "30|30 fps||30 0|4294967295|143165576.500000"},
  };
  for (const auto& one : cases) {
    const Image image = timecode(one.code, one.start).image();
    EXPECT_EQ(dump(read_session_settings(image.session).timecode), one.read) << one.code;
  }
  EXPECT_EQ(dump(read_session_settings(Image({}).session).timecode), "30|||30 0|0|0.000000|plain");
}

TEST(Timecode, RatesWithASecondRecord) {
  const struct {
    unsigned code;
    std::uint32_t start;
    SecondRecord second;
    const char* read;
  } cases[] = {
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
    const Image image = timecode(one.code, one.start, &one.second).image();
    EXPECT_EQ(dump(read_session_settings(image.session).timecode), one.read) << one.code << " " << one.second.code;
  }
}

TEST(Timecode, ASecondRecordMustFit) {
  const auto label_of = [](const Fields& fields) {
    return std::string(read_session_settings(fields.image().session).timecode.rate_label);
  };
  const auto with_text = [](std::uint32_t count, std::size_t size) {
    Fields fields(0x204d, size);
    fields.put(9, 7, 1).put(34, count, 4);
    if (size >= 38 - 7 + std::size_t{count} + 8) fields.put(38 + count, 13, 4);
    return fields;
  };
  EXPECT_EQ(label_of(with_text(0, 39)), "60");
  EXPECT_EQ(label_of(with_text(0, 38)), "30");  // cuts the start
  EXPECT_EQ(label_of(with_text(64, 103)), "60");
  EXPECT_EQ(label_of(with_text(64, 102)), "30");
  EXPECT_EQ(label_of(with_text(65, 200)), "30");  // too long a text
  // A block that is too short for the rate is passed over.
  BlockWriter w;
  Fields(0x204d, 0x15).put(9, 1, 1).into(w);
  timecode(2, 0).into(w);
  EXPECT_EQ(read_session_settings(Image(w.take()).session).timecode.rate_label, "25");
}

// ---- recording format and pan depth ----

std::string dump(const RecordingFormat& r, const PanDepth& pan) {
  char text[128];
  std::snprintf(text, sizeof text, "%s%d/%d%s type %d, pan %s%d %.1f", r.depth_read ? "" : "unread ", r.depth_byte,
                r.depth, r.is_float ? " float" : "", r.file_type, pan.was_read ? "" : "unread ", pan.value, pan.db);
  return text;
}

std::string dump_settings(const Image& image) {
  const SessionSettings settings = read_session_settings(image.session);
  return dump(settings.recording, settings.pan_depth);
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
      {115, 3, 0, 0, 0, "0/0 type 3, pan 0 -3.0"},
      {114, 3, 1, 0, 0, "unread 0/0 type 3, pan 1 -2.5"},
      {112, 3, 1, 0, 0, "unread 0/0 type 3, pan 1 -2.5"},
      {111, 3, 0, 0, 0, "unread 0/0 type 3, pan unread 0 -3.0"},
      {4, 3, 0, 0, 0, "unread 0/0 type 3, pan unread 0 -3.0"},
      {3, 0, 0, 0, 0, "unread 0/0 type 0, pan unread 0 -3.0"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(dump_settings(fixed_settings(one.size, one.type, one.pan, one.float_flag, one.depth).image()), one.read)
        << one.size;
  EXPECT_EQ(dump_settings(Image({})), "unread 0/0 type 0, pan unread 0 -3.0");
}

TEST(RecordingFormat, BehindAPath) {
  const std::vector<std::string> path = {"Disk", "Users", std::string(255, 'x'), ""};
  EXPECT_EQ(dump_settings(Image(settings_behind_path({}, 14, 3, 0, 16))), "16/16 type 3, pan 3 -4.5");
  EXPECT_EQ(dump_settings(Image(settings_behind_path(path, 15, 1, 1, 32))), "32/32 float type 3, pan 1 -2.5");
  EXPECT_EQ(dump_settings(Image(settings_behind_path(std::vector<std::string>(64, "a"), 14, 1, 0, 24))),
            "24/24 type 3, pan 1 -2.5");
  // Anything else is no such list, and the block is short.
  for (const std::size_t left : {std::size_t{13}, std::size_t{16}})
    EXPECT_EQ(dump_settings(Image(settings_behind_path({}, left, 3, 0, 16))), "unread 0/0 type 3, pan unread 0 -3.0");
  EXPECT_EQ(dump_settings(Image(settings_behind_path({"Disk", std::string(256, 'x')}, 14, 3, 0, 16))),
            "120/0 type 3, pan 120 -3.0");  // letters, at the fixed places
}

TEST(PanDepth, ComesFromTheFirstBlockThatIsLongEnough) {
  BlockWriter w;
  fixed_settings(50, 4, 0, 0, 0).into(w);
  fixed_settings(120, 3, 4, 0, 16).into(w);
  EXPECT_EQ(dump_settings(Image(w.take())), "unread 0/0 type 4, pan 4 -6.0");
}

// ---- grid ----

std::string grid_of(std::string_view text, std::size_t size = 0) {
  Fields fields(0x2066, size ? size : std::max<std::size_t>(text.size() + 6, 24));
  fields.text(13, text);
  const GridSettings grid = read_session_settings(fields.image().session).grid;
  char out[128];
  std::snprintf(out, sizeof out, "%s%ld|%ld|%ld %s%ld|%ld|%ld", grid.nudge_read ? "" : "none ", grid.nudge.bars,
                grid.nudge.beats, grid.nudge.ticks, grid.grid_read ? "" : "none ", grid.grid.bars, grid.grid.beats,
                grid.grid.ticks);
  return out;
}

TEST(Grid, TheFirstStepIsTheNudgeTheSecondTheGrid) {
  const struct {
    std::string_view text;
    const char* read;
  } cases[] = {
      {"\x0c\0\0\0   0| 1| 000\x0a\0\0\0\x0c\0\0\0   2| 3| 240\x0a"sv, "0|1|0 2|3|240"},
      {"\0"
       "0|1|000\0"
       "4|5|678\0"
       "7|8|999\0"sv,
       "0|1|0 4|5|678"},
      {"\0"
       "12345678| 12345678| 000\0"sv,
       "12345678|12345678|0 none 0|0|0"},
      {"\0"
       "123456789| 1| 000\0"
       " 1| 2| 003"sv,
       "1|2|3 none 0|0|0"},
      {"\0"
       "1|  2| 003\0"
       "4| 5|  006\0"sv,
       "none 0|0|0 none 0|0|0"},  // one blank at most
      {"\0"
       "1| 2| 03\0"sv,
       "none 0|0|0 none 0|0|0"},
      {"\0"
       "1| | 003\0"sv,
       "none 0|0|0 none 0|0|0"},
      {"\0"
       "1| 2| 003 4| 5| 006\0"sv,
       "1|2|3 none 0|0|0"},  // begins behind another byte only
      {"\0"
       "1| 2| 003, 4| 5| 006\0"sv,
       "1|2|3 4|5|6"},
      {"x1| 1| 1| 001\0"sv, "1|1|1 none 0|0|0"},  // fails, and is tried again behind the bar
  };
  for (const auto& one : cases) EXPECT_EQ(grid_of(one.text), one.read) << one.text;
}

TEST(Grid, OnlyBlocksOfItsSizeCount) {
  const std::string_view text =
      "\0"
      "1|2|003\0"sv;
  EXPECT_EQ(grid_of(text, 23), "none 0|0|0 none 0|0|0");
  EXPECT_EQ(grid_of(text, 24), "1|2|3 none 0|0|0");
  EXPECT_EQ(grid_of(text, 4000), "1|2|3 none 0|0|0");
  EXPECT_EQ(grid_of(text, 4001), "none 0|0|0 none 0|0|0");
}

TEST(Grid, InQuarterNotes) {
  EXPECT_EQ(quarters_of({1, 0, 0}, 4, 4), 4);
  EXPECT_EQ(quarters_of({1, 0, 0}, 6, 8), 3);
  EXPECT_EQ(quarters_of({0, 1, 0}, 6, 8), 0.5);
  EXPECT_EQ(quarters_of({0, 0, 240}, 6, 8), 0.25);
  EXPECT_EQ(quarters_of({1, 2, 480}, 3, 4), 5.5);
}

// ---- meter map ----

void meter_block(BlockWriter& w, const std::vector<MeterEvent>& events, std::string_view tag = "Meter") {
  w.open(0x2029).raw(tag).zeros(11 - tag.size()).u32(static_cast<std::uint32_t>(events.size()));
  for (const MeterEvent& event : events) {
    w.u40(static_cast<std::uint64_t>(event.position) + test::kTickOrigin).zeros(3);
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

TEST(MeterMap, EventsUntilOneIsNoMeter) {
  for (const auto& [numerator, denominator] :
       std::vector<std::pair<unsigned, unsigned>>{{0, 4}, {100, 4}, {4, 0}, {4, 65}}) {
    BlockWriter w;
    meter_block(w, {{0, 1, 99, 64}, {960000, 2, 1, 1}, {5, 3, numerator, denominator}, {6, 4, 4, 4}});
    EXPECT_EQ(dump(read_meter_map(Image(w.take()).session)), "99/64 at 1@0 1/1 at 2@960000 ");
  }
}

TEST(MeterMap, TheFirstTaggedBlockDecides) {
  BlockWriter w;
  meter_block(w, {{0, 1, 2, 2}}, "Muter");
  meter_block(w, {{0, 1, 3, 4}});
  meter_block(w, {{0, 1, 5, 4}, {1, 2, 6, 4}});
  EXPECT_EQ(dump(read_meter_map(Image(w.take()).session)), "3/4 at 1@0 ");
}

TEST(MeterMap, ACountThatTheBlockCannotHoldGivesNoEvents) {
  for (const std::uint32_t count : {2u, 4097u, 0xFFFFFFFFu}) {
    BlockWriter w;
    meter_block(w, {{0, 1, 3, 4}});
    auto blocks = w.take();
    for (unsigned i = 0; i < 4; ++i) blocks[20 + i] = static_cast<std::uint8_t>(count >> (8 * i));
    EXPECT_TRUE(read_meter_map(Image(blocks).session).empty()) << count;
  }
  EXPECT_TRUE(read_meter_map(Image({}).session).empty());
  EXPECT_EQ(first_meter({}).numerator, 4u);
}

TEST(MeterMap, APositionBelowTheBiasIsTheStart) {
  BlockWriter w;
  w.open(0x2029).raw("Meter").zeros(6).u32(1).u40(77).zeros(3).u32(1).u32(3).u32(4).zeros(16).close();
  EXPECT_EQ(dump(read_meter_map(Image(w.take()).session)), "3/4 at 1@0 ");
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
  return Fields(0x2077, n + 19 + behind_name)
      .put(11, l.flags, 1)
      .put(12, l.kind, 1)
      .put(15, n, 4)
      .text(19, l.name)
      .put(n + 19, l.start, 5)
      .put(n + 27, l.end, 5);
}

std::string dump(const std::vector<MemoryLocation>& locations) {
  std::string out;
  char text[256];
  for (const MemoryLocation& l : locations) {
    std::snprintf(text, sizeof text, "%.*s:%d %g-%g%s p%d m%d #%llx ", static_cast<int>(l.name.size()), l.name.data(),
                  l.kind, l.start, l.end, l.in_samples ? "s" : "", l.palette, l.marker_color,
                  static_cast<unsigned long long>(l.stored_rgb));
    out += text;
  }
  return out;
}

std::string locations_of(const std::vector<Fields>& blocks) {
  BlockWriter w;
  for (const Fields& block : blocks) block.into(w);
  return dump(read_memory_locations(Image(w.take()).session));
}

TEST(MemoryLocations, PlacesAndKinds) {
  const struct {
    const char* what;
    Location location;
    const char* read;
  } cases[] = {
      {"a marker in ticks", {"A", 0, 1, kTicks + 5, kTicks + 5}, "A:1 5-5 p-2 m-1 #ffffffffffffffff "},
      {"stored as 9", {"A", 0, 9, kTicks, kTicks}, "A:1 0-0 p-2 m-1 #ffffffffffffffff "},
      {"a selection", {"A", 0, 2, kTicks, kTicks + 7}, "A:2 0-7 p-2 m-1 #ffffffffffffffff "},
      {"no time property", {"", 0, 0, kTicks, kTicks}, ":0 0-0 p-2 m-1 #ffffffffffffffff "},
      {"no such kind", {"A", 0, 3, kTicks, kTicks}, ""},
      {"in samples", {"A", 2, 1, 48000, 48000}, "A:1 48000-48000s p-2 m-1 #ffffffffffffffff "},
      {"in samples without the flag", {"A", 0xFD, 1, 48000, 48000}, ""},
      {"in samples backwards", {"A", 2, 2, 48001, 48000}, ""},
      {"one end in samples makes both", {"A", 2, 2, 48000, kTicks}, "A:2 48000-1e+12s p-2 m-1 #ffffffffffffffff "},
      {"backwards in ticks stays", {"A", 0, 2, kTicks + 9, kTicks + 7}, "A:2 9-7 p-2 m-1 #ffffffffffffffff "},
      {"a name of bytes", {"caf\xc3\xa9", 0, 1, kTicks, kTicks}, "caf\xc3\xa9:1 0-0 p-2 m-1 #ffffffffffffffff "},
      {"a name that is no text", {"a\x01", 0, 1, kTicks, kTicks}, ""},
      {"too long a name", {std::string(129, 'a'), 0, 1, kTicks, kTicks}, ""},
  };
  for (const auto& one : cases) EXPECT_EQ(locations_of({location(one.location, 20)}), one.read) << one.what;
}

TEST(MemoryLocations, Colors) {
  const Location a{"abc", 0, 1, kTicks, kTicks};
  // The other form: a palette index, where the block reaches it.
  EXPECT_EQ(locations_of({location(a, 121).put(3 + 145, 0xFFFE, 2)}), "abc:1 0-0 p-2 m-1 #ffffffffffffffff ");
  EXPECT_EQ(locations_of({location(a, 121).put(3 + 145, 57, 2)}), "abc:1 0-0 p57 m-1 #ffffffffffffffff ");
  EXPECT_EQ(locations_of({location(a, 120)}), "abc:1 0-0 p-2 m-1 #ffffffffffffffff ");
  EXPECT_EQ(locations_of({location(a, 263).put(3 + 145, 58, 2)}), "abc:1 0-0 p58 m-1 #ffffffffffffffff ");
  // The long form: a marker colour, and perhaps one of its own.
  const auto long_form = [&](unsigned zero) {
    return location(a, 264)
        .put(3 + 139, 12, 2)
        .put(3 + 224, 0xAB, 1)
        .put(3 + 225, zero, 1)
        .put(3 + 226, 0xCD, 1)
        .put(3 + 228, 0xEF, 1);
  };
  EXPECT_EQ(locations_of({long_form(0)}), "abc:1 0-0 p-2 m12 #abcdef ");
  EXPECT_EQ(locations_of({long_form(1)}), "abc:1 0-0 p-2 m12 #ffffffffffffffff ");
}

TEST(MemoryLocations, OneThatRepeatsAnotherIsDropped) {
  const Location a{"A", 0, 1, kTicks + 5, kTicks + 5}, b{"B", 0, 1, kTicks + 1, kTicks + 1};
  Location again = a;
  again.flags = 1;
  Location other_kind = a;
  other_kind.kind = 2;
  Location in_samples = {"A", 2, 1, 5, 5};  // the same numbers in another unit
  EXPECT_EQ(locations_of({location(a, 20), location(b, 20), location(again, 30), location(other_kind, 20),
                          location(in_samples, 20), location(b, 20)}),
            "A:1 5-5 p-2 m-1 #ffffffffffffffff B:1 1-1 p-2 m-1 #ffffffffffffffff A:2 5-5 p-2 m-1 #ffffffffffffffff ");
}

// Nothing is read behind the end, however a session is cut.
TEST(SessionSettings, EveryCutOfASessionIsRead) {
  BlockWriter w;
  const SecondRecord second{12, 30};
  timecode(5, 15, &second).into(w);
  w.bytes(settings_behind_path({"Disk", "Users"}, 15, 1, 1, 32));
  Fields(0x2066, 60).text(13, "\0   0| 1| 000\0   1| 0| 000\0"sv).into(w);
  meter_block(w, {{0, 1, 6, 8}, {4 * 960000, 3, 3, 4}});
  location({"Chorus", 0, 1, kTicks, kTicks}, 264).into(w);
  location({"Verse", 0, 1, kTicks, kTicks}, 121).into(w);
  const auto whole = test::image_of(w.take());
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
    const SessionImage image(ByteView(cut.data(), n));
    read_session_settings(image);
    read_meter_map(image);
    read_memory_locations(image);
  }
}

}  // namespace
}  // namespace frt

// The tables that clip shaping stands on: playlists, fades, clip gain, sync points, clip groups.
#include "session/playlists.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "session/clip_gain.h"
#include "session/clip_groups.h"
#include "session/fades.h"
#include "session/sync_points.h"
#include "support/block_writer.h"

namespace frt {
namespace {

using test::BlockWriter;

// An image and the bytes it views.
struct Image {
  explicit Image(BlockWriter& w) : bytes(test::image_of(w.take())), session(ByteView(bytes.data(), bytes.size())) {}
  std::vector<std::uint8_t> bytes;
  SessionImage session;
};

struct EntryBytes {
  std::uint32_t index = 0;
  std::uint64_t position = 0;
  unsigned kind = 3;
  int color = -2;
  bool is_group = false;
  unsigned trailing = 0;
  unsigned lock_edit = 0, lock_time = 0, group_muted = 0;
  std::uint32_t loop_size = 0;  // of a loop record, 0 for none
};

void write_entry(BlockWriter& w, const EntryBytes& e) {
  w.open(0x1050, 3);  // +0 .. +8
  w.open(0x104f, 10).u8(e.group_muted).u8(e.lock_time).u32(e.index).u8(0).u40(e.position).zeros(3);
  w.u8(e.kind).i16(e.color).u8(e.is_group).u8(0);  // +33 .. +37
  if (e.loop_size) w.open(0x242b).zeros(e.loop_size - 2).close();
  w.fill(10, e.loop_size ? 0 : 0xFF).u8(e.lock_edit).zeros(4).close();  // edit lock at +48 or behind the loop record
  w.u8(e.trailing).u8(1).u8(1).close();
}

void write_playlist(BlockWriter& w, const std::string& name, const std::vector<EntryBytes>& entries,
                    unsigned timebase = 1) {
  w.open(0x1052, 3).text(name).u32(static_cast<std::uint32_t>(entries.size()));
  for (const EntryBytes& entry : entries) write_entry(w, entry);
  w.u8(timebase).u8(0).close();
}

TEST(Playlists, ReadsEntriesByTheirPlacementBlocks) {
  BlockWriter w;
  write_playlist(w, "Gtr",
                 {{.index = 7, .position = 0x1234567890, .kind = 1, .color = 33},
                  {.index = 2, .position = 5, .kind = 1, .trailing = 1},
                  {.index = 0, .kind = 2, .is_group = true, .trailing = 1, .group_muted = 4}},
                 2);
  const Image image(w);
  const auto playlists = read_playlists(image.session);
  ASSERT_EQ(playlists.size(), 1u);
  EXPECT_EQ(playlists[0].name, "Gtr");
  EXPECT_TRUE(playlists[0].ticks);
  EXPECT_EQ(playlists[0].entry_count, 3u);
  ASSERT_EQ(playlists[0].entries.size(), 3u);
  const auto& e = playlists[0].entries;
  EXPECT_EQ(e[0].clip_or_fade_index, 7u);
  EXPECT_EQ(e[0].position, 0x1234567890u);
  EXPECT_EQ(e[0].color, 33);
  EXPECT_TRUE(e[0].plain);
  EXPECT_FALSE(e[0].fade) << "kind 1 alone is a clip drawn over the next";
  EXPECT_FALSE(e[1].plain);
  EXPECT_TRUE(e[1].fade);
  EXPECT_TRUE(e[2].is_group);
  EXPECT_TRUE(e[2].group_muted);
  EXPECT_FALSE(e[2].fade);
}

TEST(Playlists, LocksStandBehindALoopRecord) {
  struct Row {
    const char* what;
    EntryBytes entry;
    bool locked;
  };
  for (const Row& row : {Row{"none", {}, false}, Row{"edit lock", {.lock_edit = 1}, true},
                         Row{"time lock", {.lock_time = 1}, true}, Row{"loop, no lock", {.loop_size = 52}, false},
                         Row{"loop and edit lock", {.lock_edit = 1, .loop_size = 52}, true}}) {
    BlockWriter w;
    write_playlist(w, "A", {row.entry});
    const Image image(w);
    const auto playlists = read_playlists(image.session);
    ASSERT_EQ(playlists.size(), 1u) << row.what;
    EXPECT_EQ(playlists[0].entries.at(0).locked, row.locked) << row.what;
  }
}

TEST(Playlists, ShapeDecidesWhatIsARecord) {
  const auto records_of = [](BlockWriter& w) { return read_playlists(Image(w).session).size(); };
  for (const unsigned timebase : {0u, 1u, 2u, 3u, 255u}) {
    BlockWriter w;
    write_playlist(w, "A", {{}}, timebase);
    EXPECT_EQ(records_of(w), timebase == 1 || timebase == 2 ? 1u : 0u) << timebase;
  }
  for (const std::size_t length : {0u, 1u, 64u, 65u}) {
    BlockWriter w;
    write_playlist(w, std::string(length, 'x'), {{}});
    EXPECT_EQ(records_of(w), length <= 64 ? 1u : 0u) << length;
  }
  BlockWriter control;
  write_playlist(control, "a\x07", {{}});
  EXPECT_EQ(records_of(control), 0u) << "a name is text";
  BlockWriter many;
  many.open(0x1052, 3).text("A").u32(20001);
  for (int i = 0; i < 20001; ++i) many.open(0x1111).close();
  many.u8(1).close();
  EXPECT_EQ(records_of(many), 0u) << "more entries than a playlist holds";
}

TEST(Playlists, AnEntryWithoutAPlacementCountsOnly) {
  BlockWriter w;
  w.open(0x1052, 3).text("A").u32(2).open(0x1050).zeros(30).close();
  write_entry(w, {.index = 9});
  w.u8(1).close();
  const Image image(w);
  const auto playlists = read_playlists(image.session);
  ASSERT_EQ(playlists.size(), 1u);
  EXPECT_EQ(playlists[0].entry_count, 2u);
  ASSERT_EQ(playlists[0].entries.size(), 1u);
  EXPECT_EQ(playlists[0].entries[0].clip_or_fade_index, 9u);
  EXPECT_TRUE(playlists[0].entries_read);
}

TEST(Playlists, SizesAloneGiveTimebaseAndCount) {
  BlockWriter w;
  w.open(0x1052, 3).text("A").u32(1).u8('Y').u16(1).u32(4).zeros(4).u8(2).close();
  const Image image(w);
  const auto playlists = read_playlists(image.session);
  ASSERT_EQ(playlists.size(), 1u);
  EXPECT_TRUE(playlists[0].ticks);
  EXPECT_EQ(playlists[0].entry_count, 1u);
  EXPECT_FALSE(playlists[0].entries_read);
}

TEST(Playlists, BlocksMadeToShareEntriesAreBounded) {
  // Each entry holds a playlist whose own entries run on into the shared chain.
  BlockWriter w;
  for (int i = 0; i < 3000; ++i)
    w.u8('Z')
        .u16(1)
        .u32(29)
        .u16(0x1111)
        .u8('Z')
        .u16(3)
        .u32(100)
        .u16(0x1052)
        .u32(0)
        .u32(20000)
        .open(0x1111)
        .u8(1)
        .close();
  const Image image(w);
  std::size_t entries = 0;
  for (const PlaylistRecord& playlist : read_playlists(image.session)) entries += playlist.entry_count;
  EXPECT_LE(entries, image.bytes.size());
}

TEST(Playlists, EveryTruncationIsSafe) {
  BlockWriter w;
  w.open(0x1054);
  w.u32(2);
  write_playlist(w, "Gtr", {{.index = 1, .loop_size = 52}, {.index = 2, .position = 9, .trailing = 1}});
  write_playlist(w, "", {{}}, 2);
  w.close().open(0x1111).zeros(200).close();
  const std::vector<std::uint8_t> whole = test::image_of(w.take());
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
    const SessionImage image(ByteView(cut.data(), cut.size()));
    EXPECT_LE(read_playlists(image).size(), 2u) << n;
    EXPECT_LE(read_track_playlists(image).size(), 2u) << n;
  }
  const SessionImage image(ByteView(whole.data(), whole.size()));
  const auto tracks = read_track_playlists(image);
  ASSERT_EQ(tracks.size(), 2u);
  EXPECT_FALSE(tracks[0].unnamed);
  EXPECT_TRUE(tracks[1].unnamed);
  EXPECT_EQ(read_playlists(image)[1].start, tracks[1].start);
}

// ---- fades ----

struct FadeBytes {
  unsigned before_width = 2, length_width = 2;
  std::uint64_t before = 0, length = 0;
  unsigned kind = 1, shape = 0, curve_a = 0, curve_b = 0;
  bool long_form = true;
};

void write_fade(BlockWriter& w, const FadeBytes& f) {
  w.open(0x262f).zeros(5).u8(f.length_width << 4 | f.before_width).zeros(2);
  w.number(f.before, f.before_width).number(f.length, f.length_width).u8(f.kind);
  if (f.long_form) w.u8(f.shape).zeros(4).u8(f.curve_a).zeros(2).u8(f.curve_b);
  w.close();
}

TEST(FadeTable, ReadsTheRecord) {
  struct Row {
    const char* what;
    FadeBytes bytes;
    FadeRecord expected;
  };
  const Row rows[] = {
      {"crossfade", {.before = 100, .length = 300}, {.kind = 1, .before = 100, .length = 300}},
      {"fade-in without a before", {.before_width = 0, .length = 50, .kind = 3}, {.kind = 3, .length = 50}},
      {"widest", {4, 4, 0xFFFFFFFE, 0xFFFFFFFF, 2}, {.kind = 2, .before = 4294967294.0, .length = 4294967295.0}},
      {"before equals length", {.before = 7, .length = 7, .kind = 2}, {.kind = 2, .before = 7, .length = 7}},
      {"before above length", {.before = 8, .length = 7}, {.kind = 0, .before = 8, .length = 7}},
      {"kind 0", {.kind = 0}, {}},
      {"kind 4", {.kind = 4}, {}},
      {"before of 5 bytes", {.before_width = 5, .length = 7}, {}},
      {"length of 5 bytes", {.length_width = 5, .length = 7}, {}},
      {"shape", {.length = 7, .shape = 1}, {.kind = 1, .length = 7, .shape = 1}},
      {"S curve",
       {.length = 7, .shape = 2, .curve_a = 1, .curve_b = 1},
       {.kind = 1, .length = 7, .shape = 2, .s_curve = true}},
      {"half an S curve", {.length = 7, .curve_a = 1}, {.kind = 1, .length = 7}},
      {"short form", {.length = 7, .long_form = false}, {.kind = 1, .length = 7}},
  };
  for (const Row& row : rows) {
    BlockWriter w;
    write_fade(w, row.bytes);
    w.zeros(4);
    const Image image(w);
    const auto fades = read_fades(image.session);
    ASSERT_EQ(fades.size(), 1u) << row.what;
    EXPECT_EQ(fades[0].kind, row.expected.kind) << row.what;
    EXPECT_EQ(fades[0].before, row.expected.before) << row.what;
    EXPECT_EQ(fades[0].length, row.expected.length) << row.what;
    EXPECT_EQ(fades[0].shape, row.expected.shape) << row.what;
    EXPECT_EQ(fades[0].s_curve, row.expected.s_curve) << row.what;
  }
}

TEST(FadeTable, ABadRecordKeepsItsNumber) {
  BlockWriter w;
  write_fade(w, {.kind = 9});
  write_fade(w, {.length = 5, .kind = 3});
  const Image image(w);
  const auto fades = read_fades(image.session);
  ASSERT_EQ(fades.size(), 2u);
  EXPECT_EQ(fades[0].kind, 0);
  EXPECT_EQ(fades[1].kind, 3);
}

// ---- clip gain ----

using Points = std::vector<std::pair<std::uint32_t, float>>;

void write_gain_table(BlockWriter& w, const std::vector<Points>& entries, int stated_off_by = 0) {
  w.open(0x2637).u32(static_cast<std::uint32_t>(entries.size()));
  for (const Points& points : entries) {
    const auto n = static_cast<std::uint32_t>(points.size());
    w.bytes({1, 0x46, 1, 0}).u32(14 + 8 * n).u16(0).u32(n + static_cast<std::uint32_t>(stated_off_by)).u32(4).u32(0);
    for (const auto& [position, db] : points) w.u32(position).f32(db);
  }
  w.close();
}

// A clip's name block as sessions write it: the gain index 27 bytes behind the trailer mark.
void write_name_block(BlockWriter& w, const std::string& name, std::uint32_t gain_index) {
  w.open(0x2628, 4).text(name).zeros(10).bytes({0xFF, 0xFF, 4, 0, 4, 0}).zeros(21).u32(gain_index).u16(0).close();
}

TEST(ClipGain, BindsByName) {
  BlockWriter w;
  write_gain_table(w, {{{0, -3.5f}}, {{0, 0.0f}, {480, 6.0f}}, {}, {{9, 37.0f}}, {{0, -145.0f}}, {{0, 36.9f}}});
  write_name_block(w, "fixed", 0);
  write_name_block(w, "line", 1);
  write_name_block(w, "no points", 2);
  write_name_block(w, "too loud", 3);
  write_name_block(w, "too low", 4);
  write_name_block(w, "loud", 5);
  write_name_block(w, "past the table", 6);
  write_name_block(w, "none", 0xFFFFFFFF);
  const Image image(w);
  const ClipGain gain = read_clip_gain(image.session);
  ASSERT_EQ(gain.entries.size(), 6u);
  EXPECT_EQ(gain.stated_counts_wrong, 0);
  EXPECT_EQ(gain.find("fixed")->db, -3.5);
  EXPECT_TRUE(gain.find("fixed")->points.empty());
  ASSERT_EQ(gain.find("line")->points.size(), 2u);
  EXPECT_EQ(gain.find("line")->points[1].position, 480u);
  EXPECT_EQ(gain.find("line")->points[1].db, 6.0);
  EXPECT_EQ(gain.find("no points")->db, 0.0);
  EXPECT_EQ(gain.find("too loud")->db, 0.0);
  EXPECT_EQ(gain.find("too low")->db, 0.0);
  EXPECT_NEAR(gain.find("loud")->db, 36.9, 1e-5);
  EXPECT_EQ(gain.find("past the table"), nullptr);
  EXPECT_EQ(gain.find("none"), nullptr);
  EXPECT_EQ(gain.find("Fixed"), nullptr) << "names compare exactly";
}

TEST(ClipGain, TheLastValidIndexOfANameHolds) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}, {{0, 2.0f}}});
  write_name_block(w, "a", 0);
  write_name_block(w, "a", 1);
  write_name_block(w, "a", 77);
  const Image image(w);
  EXPECT_EQ(read_clip_gain(image.session).find("a")->db, 2.0);
}

TEST(ClipGain, ACountThatDisagreesIsCountedAndTheLengthUsed) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}, {{0, 2.0f}, {5, 3.0f}}}, 1);
  const Image image(w);
  const ClipGain gain = read_clip_gain(image.session);
  EXPECT_EQ(gain.stated_counts_wrong, 2);
  ASSERT_EQ(gain.entries.size(), 2u);
  EXPECT_EQ(gain.entries[1].points.size(), 2u);
}

TEST(ClipGain, AnEntryOfAWrongSizeEndsTheTable) {
  for (const std::uint32_t size : {13u, 15u, 21u, 0xFFFFFFFEu}) {
    BlockWriter w;
    w.open(0x2637).u32(2).bytes({1, 0x46, 1, 0}).u32(22).u16(0).u32(1).zeros(12).f32(1.0f);
    w.zeros(4).u32(size).zeros(40).close();
    const Image image(w);
    EXPECT_EQ(read_clip_gain(image.session).entries.size(), 1u) << size;
  }
}

TEST(ClipGain, IndexOffsets) {
  // A block of 100 bytes from 0 on; the trailer mark stands at 40.
  std::vector<std::uint8_t> bytes(120, 0);
  const ByteView image(bytes.data(), bytes.size());
  EXPECT_EQ(gain_index_offset(image, 100, 100), 96u) << "no mark";
  EXPECT_EQ(gain_index_offset(image, 100, 40), 67u);
  EXPECT_EQ(gain_index_offset(image, 72, 40), 67u) << "the last place for it";
  EXPECT_EQ(gain_index_offset(image, 71, 40), 67u) << "only if the mark plus 31 is below the end";
  bytes[50] = 'Z';
  EXPECT_EQ(gain_index_offset(image, 100, 40), 67u) << "a block of size 0";
  bytes[53] = 10;
  EXPECT_EQ(gain_index_offset(image, 100, 40), 84u);
  EXPECT_EQ(gain_index_offset(image, 88, 40), 84u);
  EXPECT_EQ(gain_index_offset(image, 87, 40), 67u) << "it would pass the end";
  bytes[52] = 1;
  EXPECT_EQ(gain_index_offset(image, 100, 40), 67u) << "no block";
}

TEST(ClipGain, NestedNameBlocksAreSearchedOnce) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}});
  for (int i = 0; i < 20000; ++i) w.u8('Z').u16(1).u32(60).u16(0x2628).u32(1).raw("n");
  w.zeros(200);
  const Image image(w);
  EXPECT_NE(read_clip_gain(image.session).find("n"), nullptr);
}

// ---- sync points ----

TEST(SyncPoints, OnePerClipEntry) {
  BlockWriter w;
  w.open(0x262a).u32(4);
  const auto entry = [&](const std::string& name, unsigned offset_width, unsigned low_nibble, std::uint64_t offset,
                         std::uint64_t sync, unsigned first = 0) {
    w.open(0x2629).open(0x2628).text(name);  // the name's length at +18
    w.u8(first).u8(offset_width << 4).u8(0x20u | low_nibble).u8(0).u8(0);
    w.number(offset, offset_width).number(sync, low_nibble).u16(77).close().close();
  };
  entry("plain", 2, 0, 500, 0);
  entry("synced", 2, 3, 500, 0x123456);
  entry("no offset", 0, 5, 0, 0x1122334455);
  entry("too wide", 6, 2, 1, 99);
  w.close();
  // Not in a clip list.
  w.open(0x2629).open(0x2628).text("stray").bytes({0, 0, 0x21, 0, 0, 9}).close().close();
  const Image image(w);
  const auto points = read_sync_points(image.session);
  ASSERT_EQ(points.size(), 4u);
  EXPECT_EQ(points[0].clip_name, "plain");
  EXPECT_EQ(points[0].samples, 0);
  EXPECT_EQ(points[1].clip_name, "synced");
  EXPECT_EQ(points[1].samples, 0x123456);
  EXPECT_EQ(points[2].samples, 0x1122334455);
  EXPECT_EQ(points[3].samples, 0);
}

// ---- clip groups ----

TEST(ClipGroups, ReadsRows) {
  BlockWriter w;
  w.open(0x262c).u32(3);
  w.open(0x262b).open(0x2628).text("Verse").u8(0).u8(0x50).u8(0x32).u8(0x10).u8(0);
  w.u40(test::kTickOrigin + 25).u16(0).number(96000, 3).u8(9).close().u8(1).zeros(4).u8(7).close();
  w.open(0x262b).zeros(20).close();
  w.open(0x262b).open(0x2628).text("Trim").u8(1).u8(0x10).u8(0x10).u8(0x10).u8(0).bytes({1, 2, 3}).close().close();
  w.close();
  const Image image(w);
  const auto rows = read_clip_group_rows(image.session);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].name, "Verse");
  EXPECT_TRUE(rows[0].valid);
  EXPECT_FALSE(rows[0].is_trim);
  EXPECT_EQ(rows[0].source, 25);
  EXPECT_EQ(rows[0].length, 96000);
  EXPECT_EQ(rows[0].start, 9);
  EXPECT_TRUE(rows[0].trailer_flag);
  EXPECT_EQ(rows[0].trailer_byte, 7);
  EXPECT_FALSE(rows[1].valid) << "another shape keeps its number";
  EXPECT_TRUE(rows[2].is_trim);
  EXPECT_FALSE(rows[2].valid) << "a position without the bias";
}

}  // namespace
}  // namespace frt

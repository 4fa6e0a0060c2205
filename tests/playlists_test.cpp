// The tables that clip shaping stands on: playlists, fades, clip gain, sync points, clip groups.
#include "session/clips/playlists.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "session/clips/clip_gain.h"
#include "session/clips/clip_groups.h"
#include "session/clips/fades.h"
#include "session/clips/sync_points.h"
#include "support/hand_image.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;

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

TEST(Playlists, EntriesAreReadByTheirPlacementBlocks) {
  BlockWriter w;
  write_playlist(w, "Gtr",
                 {{.index = 7, .position = 0x1234567890, .kind = 1, .color = 33},
                  {.index = 2, .position = 5, .kind = 1, .trailing = 1},
                  {.index = 0, .kind = 2, .is_group = true, .trailing = 1, .group_muted = 4}},
                 2);
  w.open(0x1052, 3).text("A").u32(2).open(0x1050).zeros(30).close();  // an entry without a placement
  write_entry(w, {.index = 9});
  w.u8(1).close();
  w.open(0x1052, 3).text("B").u32(1).u8('Y').u16(1).u32(4).zeros(4).u8(2).close();  // another mark, its size right
  const Image image(w);
  const auto playlists = read_playlists(image.session);
  ASSERT_EQ(playlists.size(), 3u);
  EXPECT_EQ(playlists[0].name, "Gtr");
  EXPECT_TRUE(playlists[0].ticks);
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
  EXPECT_EQ(playlists[1].entry_count, 2u);
  ASSERT_EQ(playlists[1].entries.size(), 1u) << "an entry without a placement only counts";
  EXPECT_EQ(playlists[1].entries[0].clip_or_fade_index, 9u);
  EXPECT_TRUE(playlists[1].entries_read);
  EXPECT_TRUE(playlists[2].ticks) << "sizes alone lead to the timebase";
  EXPECT_EQ(playlists[2].entry_count, 1u);
  EXPECT_FALSE(playlists[2].entries_read);
}

TEST(Playlists, LocksStandBehindALoopRecord) {
  BlockWriter w;
  write_playlist(w, "A",
                 {{}, {.lock_edit = 1}, {.lock_time = 1}, {.loop_size = 52}, {.lock_edit = 1, .loop_size = 52}});
  const Image image(w);
  std::string locked;
  const std::vector<PlaylistRecord> playlists = read_playlists(image.session);
  for (const PlaylistEntry& entry : playlists.at(0).entries) locked += entry.locked ? "+" : "-";
  EXPECT_EQ(locked, "-++-+");
}

TEST(Playlists, ShapeDecidesWhatIsARecord) {
  struct Row {
    std::string name;
    unsigned timebase;
    std::size_t records;
  };
  for (const Row& row : {Row{"A", 0, 0}, Row{"A", 1, 1}, Row{"A", 2, 1}, Row{"A", 3, 0}, Row{"", 1, 1},
                         Row{std::string(64, 'x'), 1, 1}, Row{std::string(65, 'x'), 1, 0}, Row{"a\x07", 1, 0}}) {
    BlockWriter w;
    write_playlist(w, row.name, {{}}, row.timebase);
    EXPECT_EQ(read_playlists(Image(w).session).size(), row.records) << row.name << " " << row.timebase;
  }
  for (const std::uint32_t entries : {20000u, 20001u}) {
    BlockWriter w;
    w.open(0x1052, 3).text("A").u32(entries);
    for (std::uint32_t i = 0; i < entries; ++i) w.open(0x1111).close();
    w.u8(1).close();
    EXPECT_EQ(read_playlists(Image(w).session).size(), entries == 20000 ? 1u : 0u) << entries;
  }
}

TEST(Playlists, BlocksMadeToShareEntriesAreBounded) {
  // Each entry holds a playlist whose own entries run on into the shared chain.
  BlockWriter w;
  for (int i = 0; i < 3000; ++i) {
    w.u8('Z').u16(1).u32(29).u16(0x1111);
    w.u8('Z').u16(3).u32(100).u16(0x1052).u32(0).u32(20000).open(0x1111).u8(1).close();
  }
  const Image image(w);
  std::size_t entries = 0;
  for (const PlaylistRecord& playlist : read_playlists(image.session)) entries += playlist.entry_count;
  EXPECT_LE(entries, image.bytes.size());
}

TEST(Playlists, TheTrackListsOwnAndEveryCutOfThem) {
  BlockWriter w;
  w.open(0x1054).u32(2);
  write_playlist(w, "Gtr", {{.index = 1, .loop_size = 52}, {.index = 2, .position = 9, .trailing = 1}});
  write_playlist(w, "", {{}}, 2);
  w.close().open(0x1111).zeros(200).close();
  const Image image(w);
  const auto tracks = read_track_playlists(image.session);
  ASSERT_EQ(tracks.size(), 2u);
  EXPECT_FALSE(tracks[0].unnamed);
  EXPECT_TRUE(tracks[1].unnamed);
  EXPECT_EQ(read_playlists(image.session)[1].start, tracks[1].start);
  test::each_cut(image.bytes, [](ByteView cut) {
    EXPECT_LE(read_playlists(SessionImage(cut)).size(), 2u) << cut.size();
    EXPECT_LE(read_track_playlists(SessionImage(cut)).size(), 2u) << cut.size();
  });
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

TEST(FadeTable, ABadRecordKeepsItsNumber) {
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
      {"shape, half an S curve", {.length = 7, .shape = 1, .curve_a = 1}, {.kind = 1, .length = 7, .shape = 1}},
      {"S curve", {.length = 7, .shape = 2, .curve_a = 1, .curve_b = 1}, {1, 0, 7, 2, true}},
      {"short form", {.length = 7, .long_form = false}, {.kind = 1, .length = 7}},
  };
  BlockWriter w;
  for (const Row& row : rows) write_fade(w, row.bytes);
  const Image image(w);
  const auto fades = read_fades(image.session);
  ASSERT_EQ(fades.size(), std::size(rows));
  for (std::size_t i = 0; i < fades.size(); ++i) {
    const FadeRecord &read = fades[i], &expected = rows[i].expected;
    EXPECT_EQ(read.kind, expected.kind) << rows[i].what;
    EXPECT_EQ(read.before, expected.before) << rows[i].what;
    EXPECT_EQ(read.length, expected.length) << rows[i].what;
    EXPECT_EQ(read.shape, expected.shape) << rows[i].what;
    EXPECT_EQ(read.s_curve, expected.s_curve) << rows[i].what;
  }
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

TEST(ClipGain, TheLastValidIndexOfANameHolds) {
  BlockWriter w;
  write_gain_table(w, {{{0, -3.5f}}, {{0, 0.0f}, {480, 6.0f}}, {}, {{9, 37.0f}}, {{0, -145.0f}}, {{0, 36.9f}}});
  std::uint32_t index = 0;
  for (const char* name : {"fixed", "line", "no points", "too loud", "too low", "loud", "past the table"})
    write_name_block(w, name, index++);
  write_name_block(w, "none", 0xFFFFFFFF);
  for (const std::uint32_t each : {5u, 0u, 77u}) write_name_block(w, "thrice", each);
  const Image image(w);
  const ClipGain gain = read_clip_gain(image.session);
  ASSERT_EQ(gain.entries.size(), 6u);
  EXPECT_EQ(gain.stated_counts_wrong, 0);
  EXPECT_EQ(gain.find("fixed")->db, -3.5);
  EXPECT_TRUE(gain.find("fixed")->points.empty());
  ASSERT_EQ(gain.find("line")->points.size(), 2u);
  EXPECT_EQ(gain.find("line")->points[1].position, 480u);
  EXPECT_EQ(gain.find("line")->points[1].db, 6.0);
  for (const char* no_gain : {"no points", "too loud", "too low"}) EXPECT_EQ(gain.find(no_gain)->db, 0.0) << no_gain;
  EXPECT_NEAR(gain.find("loud")->db, 36.9, 1e-5);
  EXPECT_EQ(gain.find("thrice")->db, -3.5);
  for (const char* unbound : {"past the table", "none", "Fixed"}) EXPECT_EQ(gain.find(unbound), nullptr) << unbound;
}

TEST(ClipGain, ACountThatDisagreesIsCountedAndTheLengthUsed) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}, {{0, 2.0f}, {5, 3.0f}}}, 1);
  const ClipGain gain = read_clip_gain(Image(w).session);
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

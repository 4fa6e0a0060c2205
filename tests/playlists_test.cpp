// The tables that clip shaping stands on: playlists, fades, clip gain, sync points, clip groups.
#include "session/clips/playlists.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "session/clips/clip_gain.h"
#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;
using test::tables_of;

// ---- playlists ----

struct Entry {
  std::uint32_t index = 0;
  std::uint64_t position = 0;
  unsigned kind = 3;
  int color = -2;
  bool is_group = false;
  unsigned trailing = 0;
  unsigned lock_edit = 0, lock_time = 0, group_muted = 0;
  std::uint32_t loop_size = 0;  // of a loop record, 0 for none
};

void write_entry(BlockWriter& w, const Entry& e) {
  w.open(0x1050, 3);  // +0 .. +8
  w.open(0x104f, 10).u8(e.group_muted).u8(e.lock_time).u32(e.index).u8(0).u40(e.position).zeros(3);
  w.u8(e.kind).i16(e.color).u8(e.is_group).u8(0);  // +33 .. +37
  if (e.loop_size) w.open(0x242b).zeros(e.loop_size - 2).close();
  w.fill(10, e.loop_size ? 0 : 0xFF).u8(e.lock_edit).zeros(4).close();  // edit lock at +48 or behind the loop record
  w.u8(e.trailing).u8(1).u8(1).close();
}

void write_playlist(BlockWriter& w, const std::string& name, const std::vector<Entry>& entries, unsigned timebase = 1) {
  w.open(0x1052, 3).text(name).u32(static_cast<std::uint32_t>(entries.size()));
  for (const Entry& entry : entries) write_entry(w, entry);
  w.u8(timebase).u8(0).close();
}

TEST(Playlists, EntriesAreReadByTheirPlacementBlocks) {
  BlockWriter w;
  write_playlist(w, "Gtr",
                 {{.index = 7, .position = 0x1234567890, .kind = 1, .color = 33},  // a clip drawn over the next
                  {.index = 2, .position = 5, .kind = 1, .trailing = 1},
                  {.index = 0, .kind = 2, .is_group = true, .trailing = 1, .group_muted = 4}},
                 2);
  w.open(0x1052, 3).text("A").u32(2).open(0x1050).zeros(30).close();  // an entry without a placement only counts
  write_entry(w, {.index = 9});
  w.u8(1).close();
  // Another mark, its size right: sizes alone lead to the timebase.
  w.open(0x1052, 3).text("B").u32(1).u8('Y').u16(1).u32(4).zeros(4).u8(2).close();
  // Locks stand behind a loop record.
  write_playlist(w, "L",
                 {{}, {.lock_edit = 1}, {.lock_time = 1}, {.loop_size = 52}, {.lock_edit = 1, .loop_size = 52}});
  EXPECT_EQ(tables_of(w).rows("playlists"),
            R"(0: "Gtr" ticks entries=3 | clip 7 at 78187493520 kind=1 color=33 | fade 2 at 5 kind=1 | )"
            R"(group 0 at 0 kind=2 group-muted
1: "A" samples entries=2 | clip 9 at 0 kind=3
2: "B" ticks entries=1 not read
3: "L" samples entries=5 | clip 0 at 0 kind=3 | clip 0 at 0 kind=3 locked | clip 0 at 0 kind=3 locked | )"
            R"(clip 0 at 0 kind=3 | clip 0 at 0 kind=3 locked)");
}

TEST(Playlists, ShapeDecidesWhatIsARecord) {
  const struct {
    std::string name;
    unsigned timebase;
    std::size_t records;
  } cases[] = {{"A", 0, 0},
               {"A", 1, 1},
               {"A", 2, 1},
               {"A", 3, 0},
               {"", 1, 1},
               {std::string(64, 'x'), 1, 1},
               {std::string(65, 'x'), 1, 0},
               {"a\x07", 1, 0}};
  for (const auto& c : cases) {
    BlockWriter w;
    write_playlist(w, c.name, {{}}, c.timebase);
    const auto tables = tables_of(w);
    EXPECT_EQ(tables.count("playlists", "entries="), c.records) << c.name << " " << c.timebase;
    EXPECT_EQ(tables.count("refused", "name, entries or timebase"), 1 - c.records) << c.name << " " << c.timebase;
  }
  for (const std::uint32_t entries : {20000u, 20001u}) {
    BlockWriter w;
    w.open(0x1052, 3).text("A").u32(entries);
    for (std::uint32_t i = 0; i < entries; ++i) w.open(0x1111).close();
    EXPECT_EQ(tables_of(w.u8(1).close()).count("playlists", "entries="), entries == 20000 ? 1u : 0u) << entries;
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
  Skips skips;
  for (const PlaylistRecord& playlist : read_playlists(image.session, skips)) entries += playlist.entry_count;
  EXPECT_LE(entries, image.bytes.size());
}

TEST(Playlists, ThoseOfTheTracksAreTheRootsOwn) {
  test::SessionBuilder s;
  s.track("A").clip(s.audio_file("A.wav", 48000));
  BlockWriter nested;
  write_playlist(nested, "Inside a clip group", {{}});
  s.payload(0x2650, nested.take());
  EXPECT_EQ(tables_of(s).count("playlists", "entries="), 2u);
  EXPECT_EQ(tables_of(s).count("track playlists", "at"), 1u);
  EXPECT_EQ(tables_of(s).count("track playlists", "unnamed"), 0u);
  s.layout.playlist_names = false;
  EXPECT_EQ(tables_of(s).count("track playlists", "unnamed"), 1u);
}

// ---- fades ----

struct FadeBytes {
  unsigned before_width = 2, length_width = 2;
  std::uint64_t before = 0, length = 0;
  unsigned kind = 1, shape = 0, curve_a = 0, curve_b = 0;
  bool long_form = true;
};

TEST(FadeTable, ABadRecordKeepsItsNumber) {
  const struct {
    const char* what;
    FadeBytes bytes;
    const char* read;
  } cases[] = {
      {"crossfade", {.before = 100, .length = 300}, "crossfade length=300 before=100"},
      {"no before", {.before_width = 0, .length = 50, .kind = 3}, "in length=50 before=0"},
      {"widest", {4, 4, 0xFFFFFFFE, 0xFFFFFFFF, 2}, "out length=4294967295 before=4294967294"},
      {"before equals length", {.before = 7, .length = 7, .kind = 2}, "out length=7 before=7"},
      {"before above length", {.before = 8, .length = 7}, "not-understood length=7 before=8"},
      {"kind 0", {.kind = 0}, "not-understood length=0 before=0"},
      {"kind 4", {.kind = 4}, "not-understood length=0 before=0"},
      {"before of 5 bytes", {.before_width = 5, .length = 7}, "not-understood length=0 before=0"},
      {"length of 5 bytes", {.length_width = 5, .length = 7}, "not-understood length=0 before=0"},
      {"half an S curve", {.length = 7, .shape = 1, .curve_a = 1}, "crossfade length=7 before=0 shape=1"},
      {"S curve", {.length = 7, .shape = 2, .curve_a = 1, .curve_b = 1}, "crossfade length=7 before=0 shape=2 s-curve"},
      {"short form", {.length = 7, .long_form = false}, "crossfade length=7 before=0"},
  };
  BlockWriter w;
  std::string expected;
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const FadeBytes& f = cases[i].bytes;
    w.open(0x262f).zeros(5).u8(f.length_width << 4 | f.before_width).zeros(2);
    w.number(f.before, f.before_width).number(f.length, f.length_width).u8(f.kind);
    if (f.long_form) w.u8(f.shape).zeros(4).u8(f.curve_a).zeros(2).u8(f.curve_b);
    w.close();
    expected += (i == 0 ? "" : "\n") + std::to_string(i) + ": " + cases[i].read;
  }
  const auto tables = tables_of(w);
  EXPECT_EQ(tables.rows("fades"), expected);
  EXPECT_EQ(tables.count("refused", "Fade"), 5u);
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

TEST(ClipGain, TheLastValidIndexOfANameHolds) {
  BlockWriter w;
  write_gain_table(w, {{{0, -3.5f}}, {{0, 0.0f}, {480, 6.0f}}, {}, {{9, 37.0f}}, {{0, -145.0f}}, {{0, 36.5f}}});
  const auto clip = [&](const char* name, std::uint32_t index) {
    w.open(0x2628, 4).text(name).zeros(10).bytes({0xFF, 0xFF, 4, 0, 4, 0}).zeros(21).u32(index).u16(0).close();
  };
  clip("line", 1);
  clip("past the table", 6);
  clip("none", 0xFFFFFFFF);
  for (const std::uint32_t each : {5u, 0u, 77u}) clip("thrice", each);
  const auto tables = tables_of(w);
  // Gains from -144 to 36 dB count.
  EXPECT_EQ(tables.rows("clip gain"), "0: -3.5 dB\n1: 0 dB 0/0 480/6\n2: 0 dB\n3: 0 dB\n4: 0 dB\n5: 36.5 dB");
  EXPECT_EQ(tables.rows("clip gain by name"), "\"line\" 1\n\"thrice\" 0");
}

TEST(ClipGain, CountsAreClaimsAndAWrongSizeEndsTheTable) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}, {{0, 2.0f}, {5, 3.0f}}}, 1);
  Skips skips;
  const ClipGain gain = read_clip_gain(Image(w).session, skips);
  EXPECT_EQ(gain.stated_counts_wrong, 2);
  EXPECT_EQ(gain.entries.at(1).points.size(), 2u);

  for (const std::uint32_t size : {13u, 15u, 21u, 0xFFFFFFFEu}) {
    w.open(0x2637).u32(2).bytes({1, 0x46, 1, 0}).u32(22).u16(0).u32(1).zeros(12).f32(1.0f);
    const auto tables = tables_of(w.zeros(4).u32(size).zeros(40).close());
    EXPECT_EQ(tables.rows("clip gain"), "0: 1 dB") << size;
    EXPECT_EQ(tables.count("refused", "size of an entry"), 1u) << size;
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
  EXPECT_EQ(gain_index_offset(image, 88, 40), 84u);
  EXPECT_EQ(gain_index_offset(image, 87, 40), 67u) << "it would pass the end";
  bytes[52] = 1;
  EXPECT_EQ(gain_index_offset(image, 100, 40), 67u) << "no block";
}

TEST(ClipGain, NestedNameBlocksAreSearchedOnce) {
  BlockWriter w;
  write_gain_table(w, {{{0, 1.0f}}});
  for (int i = 0; i < 20000; ++i) w.u8('Z').u16(1).u32(60).u16(0x2628).u32(1).raw("n");
  EXPECT_EQ(tables_of(w.zeros(200)).rows("clip gain by name"), "\"n\" 0");
}

// ---- sync points and clip groups ----

TEST(SyncPoints, OnePerClipOrNoneIsTrusted) {
  for (const bool matched : {true, false}) {
    BlockWriter w;
    w.open(0x262a).u32(4);
    const auto entry = [&](const std::string& name, unsigned offset_width, unsigned low_nibble, std::uint64_t offset,
                           std::uint64_t sync) {
      w.open(0x2629).open(0x2628).text(name);
      w.u8(0).u8(offset_width << 4).u8(0x20u | low_nibble).u8(0).u8(0);
      w.number(offset, offset_width).number(sync, low_nibble).u16(77).close().close();
    };
    entry("plain", 2, 0, 500, 0);
    entry("synced", 2, 3, 500, 0x123456);
    entry("no offset", 0, 5, 0, 0x1122334455);
    entry("too wide", 6, 2, 1, 99);
    // Longer than a sync point's name may be: it has none, and then nothing lines up.
    if (!matched) entry(std::string(256, 'n'), 0, 1, 0, 9);
    w.close();
    w.open(0x2629).open(0x2628).text("stray").bytes({0, 0, 0x21, 0, 0, 9}).close().close();  // not in a clip list
    const auto tables = tables_of(w);
    EXPECT_EQ(tables.rows("sync points"), matched ? "clip 1 at 1193046\nclip 2 at 73588229205" : "");
    EXPECT_EQ(tables.text.find("sync points unmatched") != std::string::npos, !matched);
  }
}

TEST(ClipGroups, ARowOfAnotherShapeKeepsItsNumber) {
  BlockWriter w;
  w.open(0x262c).u32(3);
  w.open(0x262b).open(0x2628).text("Verse").u8(0).u8(0x50).u8(0x32).u8(0x10).u8(0);
  w.u40(test::kTickOrigin + 25).u16(0).number(96000, 3).u8(9).close().u8(1).zeros(4).u8(7).close();
  w.open(0x262b).zeros(20).close();
  // A position without the bias.
  w.open(0x262b).open(0x2628).text("Trim").u8(1).u8(0x10).u8(0x10).u8(0x10).u8(0).bytes({1, 2, 3}).close().close();
  const auto tables = tables_of(w.close());
  EXPECT_EQ(tables.rows("clip groups"),
            "0: \"Verse\" source=25 length=96000 start=9 trailer trailer_byte=7\n"
            "1: \"\" source=0 length=0 start=0 not-valid\n2: \"Trim\" source=1 length=2 start=3 trim not-valid");
  EXPECT_EQ(tables.count("refused", "ClipGroup"), 2u);
}

}  // namespace
}  // namespace frt

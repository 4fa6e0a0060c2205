// From placements to items: pairing with playlists, timebase, deleted placements, fades, gain.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <deque>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "model/clips/deleted_placements.h"
#include "model/clips/fades.h"
#include "model/clips/item_order.h"
#include "model/clips/pairing.h"
#include "model/clips/placed_clips.h"
#include "model/clips/shape_clips.h"
#include "support/block_writer.h"

namespace frt {
namespace {

constexpr double kRate = 48000.0;

OutputItem item_at(double position, double length, double source_offset = 0.0) {
  OutputItem item;
  item.position = position;
  item.length = length;
  item.source_offset = source_offset;
  return item;
}

// A playlist's entries as text, index@position each: "1@100" a plain one, "f0@90" a fade, "g4@100" a group, "n2@200"
// one that is not plain. Behind it "k2" is another kind than usual, "t" adds the origin of ticks.
std::vector<PlaylistEntry> entries(const std::string& text) {
  std::vector<PlaylistEntry> entries;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    PlaylistEntry& entry = entries.emplace_back();
    entry.plain = word[0] != 'f' && word[0] != 'n';
    entry.fade = word[0] == 'f';
    entry.is_group = word[0] == 'g';
    entry.kind = entry.fade ? 1 : 3;
    std::istringstream parts(std::isdigit(word[0]) ? word : word.substr(1));
    char mark = 0;
    parts >> entry.clip_or_fade_index >> mark >> entry.position;
    if (word.back() == 't') entry.position += kTickOrigin;
    if (const std::size_t kind = word.find('k'); kind != word.npos)
      entry.kind = static_cast<std::uint8_t>(word[kind + 1] - '0');
  }
  return entries;
}

std::vector<PlacedClip> clips(const std::string& text) {
  std::vector<PlacedClip> clips;
  for (const PlaylistEntry& entry : entries(text)) {
    clips.emplace_back().clip_index = static_cast<std::uint16_t>(entry.clip_or_fade_index);
    clips.back().raw_position = static_cast<std::uint32_t>(entry.position);
  }
  return clips;
}

PlaylistRecord playlist_of(std::vector<PlaylistEntry> entries, std::string_view name = "A", bool ticks = false) {
  PlaylistRecord record;
  record.name = name;
  record.ticks = ticks;
  record.entry_count = static_cast<std::uint32_t>(entries.size());
  record.entries = std::move(entries);
  record.entries_read = true;
  return record;
}

// "clip@position clip@position "
std::string text_of(const std::vector<PlacedClip>& clips) {
  std::string text;
  for (const PlacedClip& clip : clips)
    text += std::to_string(clip.clip_index) + "@" + std::to_string(clip.raw_position) + " ";
  return text;
}

// ---- pairing and timebase ----

TEST(Pairing, ByCountFromTheCursorThenByNameOrByNumber) {
  struct Row {
    const char* what;
    const char* tracks;         // name clips stored-index
    const char* playlists;      // name entries flags: ticks, holds a group, unread, none
    std::size_t channel_count;  // tracks as the track list knows them
    const char* expected;       // record:name(record name)/timebase
    int judged, read_that_way;
  };
  const Row rows[] = {
      {"by count from the cursor", "x 2 0 y 1 0 z 2 0", "One 1 - Two 2 t Three 1 - Four 2 -", 0,
       "1:Two(Two)/t 2:Three(Three)/s 3:Four(Four)/s ", 0, 0},
      {"a track without a hit leaves the cursor", "x 5 0 y 1 0", "One 1 -", 0, "-1:x()/s 0:One(One)/s ", 0, 1},
      {"a name counts only where there is a group", "Plain 7 0 Grouped 9 0", "Plain 2 - Grouped 1 g", 0,
       "-1:Plain()/s 1:Grouped(Grouped)/s ", 0, 1},
      {"and if all entries were read", "Grouped 9 0", "Grouped 1 g Broken 1 u", 0, "-1:Grouped()/s ", 0, 1},
      {"an empty name renames nothing and decides nothing", "Gtr 1 0", "* 1 t Other 4 -", 0, "0:Gtr()/s ", 1, 0},
      {"by number where a playlist has no name, whose record bears its track's", "Bass 1 1 Keys 2 3",
       "Empty 0 - * 3 t Neighbour 1 - Keys.02 9 -", 4, "1:Bass(Bass)/t 3:Keys.02(Keys.02)/s ", 0, 0},
      {"not if the track list knows another number of tracks", "Bass 1 1", "Empty 0 - * 3 t Neighbour 1 -", 4,
       "2:Neighbour(Neighbour)/s ", 0, 0},
  };
  for (const Row& row : rows) {
    std::deque<std::string> names;
    std::vector<PlacedTrack> tracks;
    std::istringstream track_words(row.tracks), playlist_words(row.playlists);
    std::size_t count = 0;
    std::uint16_t stored_index = 0;
    for (std::string name; track_words >> name >> count >> stored_index;) {
      tracks.emplace_back().clips = std::vector<PlacedClip>(count, clips("0@5")[0]);
      tracks.back().node.name = names.emplace_back(name);
      tracks.back().node.track_index = static_cast<std::uint16_t>(tracks.size() - 1);
      tracks.back().node.stored_track_index = stored_index;
    }
    std::vector<PlaylistRecord> playlists;
    std::vector<TrackPlaylist> track_playlists;
    char flag = 0;
    for (std::string name; playlist_words >> name >> count >> flag;) {
      const PlaylistEntry entry = entries(flag == 'g' ? "g0@0" : "0@0")[0];
      names.push_back(name == "*" ? "" : name);
      playlists.push_back(playlist_of(std::vector<PlaylistEntry>(count, entry), names.back(), flag == 't'));
      playlists.back().entries_read = flag != 'u';
      playlists.back().start = 1000 + playlists.size();
      track_playlists.push_back({playlists.back().start, name == "*"});
    }
    RunCounters counters;
    take_records(tracks, playlists, pair_tracks(tracks, playlists, track_playlists, row.channel_count), counters);
    std::string text;
    for (const auto& [node, placed, deleted] : tracks) {
      text += std::to_string(node.playlist) + ":" + std::string(node.name) + "(" + std::string(node.record_name) + ")" +
              (node.ticks ? "/t " : "/s ");
    }
    EXPECT_EQ(text, row.expected) << row.what;
    EXPECT_EQ(counters.timebase_judged, row.judged) << row.what;
    EXPECT_EQ(counters.timebase_read_that_way, row.read_that_way) << row.what;
  }
}

TEST(Timebase, Decision) {
  struct Row {
    const char* what;
    std::vector<bool> records;  // timebases, in ticks
    std::vector<std::uint32_t> raw_positions;
    bool ticks;
    int read_that_way, judged;
  };
  const std::uint32_t large = 1000000001, not_large = 1000000000;
  const Row rows[] = {
      {"all samples", {false, false}, {large, large}, false, 1, 0},
      {"all ticks", {true, true}, {0, 0}, true, 1, 0},
      {"mixed, half of them large", {true, false}, {large, not_large}, true, 0, 1},
      {"mixed, fewer than half", {true, false}, {large, 0, not_large}, false, 0, 1},
      {"no records, large", {}, {large}, true, 0, 1},
      {"no records, at the limit", {}, {not_large}, false, 0, 1},
      {"no records, no items", {}, {}, true, 0, 1},
  };
  for (const Row& row : rows) {
    std::vector<PlacedTrack> tracks(1);
    for (const std::uint32_t raw : row.raw_positions) tracks[0].clips.emplace_back().raw_position = raw;
    std::vector<PlaylistRecord> playlists;
    for (const bool ticks : row.records) playlists.push_back(playlist_of(std::vector<PlaylistEntry>(50), "P", ticks));
    RunCounters counters;
    take_records(tracks, playlists, pair_tracks(tracks, playlists, {}, 0), counters);
    EXPECT_EQ(tracks[0].node.ticks, row.ticks) << row.what;
    EXPECT_EQ(counters.timebase_read_that_way, row.read_that_way) << row.what;
    EXPECT_EQ(counters.timebase_judged, row.judged) << row.what;
    EXPECT_EQ(counters.timebase_records_exist, !row.records.empty()) << row.what;
    EXPECT_EQ(counters.tick_based_tracks, row.ticks) << row.what;
    EXPECT_EQ(counters.timebase_all_samples, &row == rows) << row.what;
  }
}

// ---- deleted placements ----

struct DeletedCase {
  std::vector<PlaylistEntry> entries = {};
  std::vector<PlacedClip> clips = {};
  std::vector<FadeRecord> fades = {};
  ConversionOptions options = {};
  RunCounters counters = {};
  std::vector<PlacedTrack> tracks = {};

  std::string run() {
    tracks.assign(1, {});
    tracks[0].node.playlist = 0;
    tracks[0].clips = clips;
    const std::vector<PlaylistRecord> playlists = {playlist_of(entries)};
    take_out_group_placements(tracks, playlists);
    set_deleted_placements_aside(tracks, playlists, fades, options, counters);
    return text_of(tracks[0].clips) + "| " + text_of(tracks[0].deleted);
  }
};

TEST(DeletedPlacements, AreThoseWithoutAnEntry) {
  struct Row {
    const char *what, *entries, *clips, *expected;  // kept | deleted
    std::size_t fades = 0;                          // the fade table's size
    int dropped = 0;                                // fade clips
    bool keep_fade_clips = false;
  };
  const Row rows[] = {
      {"exact", "1@100 2@200", "1@100 2@200", "1@100 2@200 | "},
      {"no entry for the clip", "1@100", "1@100 2@100", "1@100 | 2@100 "},
      {"one entry, two items: 64 away", "1@100", "1@5000 1@164", "1@164 | 1@5000 "},
      {"65 away takes what is left", "1@100", "1@165", "1@165 | "},
      {"nearest goes first", "1@100 1@110", "1@106 1@100 1@300", "1@106 1@100 | 1@300 "},
      {"a tie uses up the lower", "1@100 1@110", "1@105 1@110 1@100", "1@105 1@110 | 1@100 "},
      {"an entry that is not plain matches nothing", "1@100 n2@200", "1@100 2@200", "1@100 | 2@200 "},
      {"nothing plain at all", "n1@100", "2@5", "2@5 | "},
      {"nothing would stay", "1@100", "2@100 3@100", "2@100 3@100 | "},
      {"so no fade clip goes either", "1@500 f0@0", "0@0 2@3", "0@0 2@3 | ", 1},
      {"positions compare by 32 bits", "1@4294967396", "1@100 1@9", "1@100 | 1@9 "},
      {"a fade outside the table is none", "5@0 f0@0 f9@40", "5@0 0@0 9@40", "5@0 | 9@40 ", 1, 1},
      {"fade clips kept", "5@0 f0@0", "5@0 0@0", "5@0 | 0@0 ", 1, 0, true},
      {"of a fade and a clip of one key one is the clip", "0@0 f0@0 0@50", "0@0 0@0 0@50", "0@0 0@50 | ", 1, 1},
      // Groups take out their items first, and fades with them, unless a clip has the same key.
      {"groups", "g4@100 f0@90 f1@95 1@95 7@300", "4@100 4@100 0@90 1@95 7@300", "1@95 7@300 | 4@100 "},
      {"no group", "f0@90 7@300", "0@90 7@300", "7@300 | 0@90 "},
  };
  for (const Row& row : rows) {
    DeletedCase c{.entries = entries(row.entries), .clips = clips(row.clips)};
    c.fades.assign(row.fades, {.kind = 3, .length = 10});
    c.options.keep_fade_clips = row.keep_fade_clips;
    EXPECT_EQ(c.run(), row.expected) << row.what;
    EXPECT_EQ(c.counters.deleted_placements, static_cast<int>(c.tracks[0].deleted.size())) << row.what;
    EXPECT_EQ(c.counters.fade_clips_dropped, row.dropped) << row.what;
  }
}

TEST(DeletedPlacements, StayersTakeMarksByTheirOwnKey) {
  DeletedCase c{.entries = entries("1@100k1 2@200k2 3@300 n1@100k2"), .clips = clips("1@100 2@200 3@310")};
  c.entries[0].color = 33;
  c.entries[1].locked = true;
  c.entries[2].color = 40;
  c.entries[3].color = 50;
  EXPECT_EQ(c.run(), "1@100 2@200 3@310 | ");
  const auto& clips = c.tracks[0].clips;
  EXPECT_TRUE(clips[0].over_next);
  EXPECT_FALSE(clips[0].over_previous);
  EXPECT_EQ(clips[0].color, 33);
  EXPECT_TRUE(clips[1].over_previous);
  EXPECT_TRUE(clips[1].locked);
  EXPECT_EQ(clips[1].color, -2);
  EXPECT_EQ(clips[2].color, -2) << "matched beside its entry, it takes nothing from it";
  EXPECT_EQ(c.counters.colored_placements, 2);
}

// ---- which entries are fades ----

TEST(FadeEntries, BindByTheClipEdgesOfTheirPlaylist) {
  const struct {
    const char *what, *others, *candidate;
    bool is_fade;
    std::int64_t sync = 0;
    bool ticks = false;
  } rows[] = {
      {"a fade-in where a clip begins", "0@100 1@1100", "n2@100", true},
      {"beside it", "0@100 1@1100", "n2@101", false},
      {"where one ends", "0@100 1@1100", "n2@1600", false},
      {"a fade-out where one ends", "0@100 1@1100", "n1@1600", true},
      {"where one begins", "0@100 1@1100", "n1@100", false},
      {"a crossfade where one ends and one begins", "0@100 1@1100", "n0@1100", true},
      {"where one begins only", "0@100 1@1100", "n0@100", false},
      {"a record not understood", "0@100 1@1100", "n3@100", false},
      {"outside the table", "0@100 1@1100", "n4@100", false},
      {"a plain entry is a clip", "0@100 1@1100", "2@100", false},
      {"a group is no fade", "0@100 1@1100", "g2@100", false},
      {"a deleted clip has no edges", "n0@100", "n2@100", false},
      {"before the sync point", "0@100", "n2@60", true, 40},
      {"the end counts from there", "0@100", "n1@1060", true, 40},
      {"groups have no sync point", "g0@100", "n2@100", true, 40},
      {"and a length of their own", "g0@100", "n1@800", true, 40},
      {"an unknown group has none", "g1@100", "n1@800", false, 40},
      {"ticks: a clip of one beat begins", "2@960000t", "n2@960000t", true, 0, true},
      {"and ends, on the sample", "2@960000t", "n1@1920000t", true, 0, true},
      {"beside it", "2@960000t", "n1@1920100t", false, 0, true},
  };
  const std::vector<FadeRecord> fades = {
      {.kind = 1, .length = 20}, {.kind = 2, .length = 20}, {.kind = 3, .length = 20}, {}};
  std::vector<ClipRecord> clips(3);
  clips[0].length = 1000;
  clips[1].length = 500;
  clips[2].length = 24000;
  std::vector<ClipGroupRow> groups(1);
  groups[0].length = 700;
  groups[0].valid = true;
  const TempoMap tempo;
  for (const auto& row : rows) {
    std::vector<PlaylistRecord> playlists = {playlist_of(entries(row.others), "A", row.ticks)};
    playlists[0].entries.push_back(entries(row.candidate)[0]);
    if (row.candidate[0] == 'g') playlists[0].entries.back().plain = false;
    mark_fades_on_clip_edges(playlists, fades, {clips, {row.sync, 0, 0}, groups, tempo, kRate});
    EXPECT_EQ(playlists[0].entries.back().fade, row.is_fade) << row.what;
  }
}

// ---- attaching fades ----

struct FadeCase {
  std::vector<OutputItem> items = {};
  std::vector<FadeRecord> fades = {};
  std::vector<PlaylistEntry> entries = {};
  bool ticks = false;
  TempoMap tempo = {};
  RunCounters counters = {};

  const std::vector<OutputItem>& run() {
    tracks.assign(1, {});
    tracks[0].playlist = 0;
    tracks[0].ticks = ticks;
    tracks[0].items = items;
    attach_fades(tracks, {playlist_of(entries, "A", ticks)}, fades, tempo, kRate, counters);
    return tracks[0].items;
  }
  std::vector<TrackNode> tracks = {};
};

TEST(Fades, BindWithinFiveMilliseconds) {
  for (const auto& [off, binds] :
       {std::pair{0, true}, {-192, true}, {192, true}, {239, true}, {240, false}, {-240, false}}) {
    // The clip starts at 0.25 s, where differences of 240 samples are exact.
    FadeCase c{.items = {item_at(0.25, 1.0)},
               .fades = {{.kind = 3, .length = 480}},
               .entries = entries("f0@" + std::to_string(12000 + off))};
    const double expected = binds ? 0.01 : 0.0;
    EXPECT_EQ(c.run()[0].fade_in, expected) << off;
    EXPECT_EQ(c.counters.fade_ins, binds ? 1 : 0) << off;
    EXPECT_EQ(c.counters.fades_unbound, binds ? 0 : 1) << off;
  }
}

TEST(Fades, EachKindAndShape) {
  FadeCase c{.items = {item_at(1.0, 1.0), item_at(3.0, 1.0)},
             .fades = {{.kind = 3, .length = 480, .shape = 1},
                       {.kind = 2, .before = 960, .length = 960, .shape = 2},
                       {.kind = 2, .length = 960, .shape = 1, .s_curve = true}},
             .entries = entries("f0@48000 f1@96000 f2@192000")};
  const auto& items = c.run();
  EXPECT_EQ(items[0].fade_in, 0.01);
  EXPECT_EQ(items[0].fade_in_shape, 1.0);
  EXPECT_EQ(items[0].fade_out, 0.02);
  EXPECT_EQ(items[0].fade_out_shape, 0.0);
  EXPECT_EQ(items[1].fade_out_shape, 5.1);
  EXPECT_EQ(c.counters.fade_ins, 1);
  EXPECT_EQ(c.counters.fade_outs, 2);
  EXPECT_EQ(c.counters.s_curve_fades, 1);
}

TEST(Fades, WhatIsCountedOtherwise) {
  FadeCase c{.items = {item_at(1.0, 1.0)},
             .fades = {{}, {.kind = 1, .length = 480, .s_curve = true}, {.kind = 3, .length = 1}},
             .entries = entries("f0@48000 f3@48000 f1@48000 f2@96000 n2@48000")};
  c.run();
  EXPECT_EQ(c.counters.fades_not_understood, 2) << "kind 0, outside the table";
  EXPECT_EQ(c.counters.fades_unbound, 2) << "a crossfade with one edge, a fade-in at an end";
  EXPECT_EQ(c.counters.s_curve_fades, 1) << "S curves count before they bind";
}

TEST(Fades, CrossfadeExtendsBothClipsIfTheirMaterialLastsThatFar) {
  struct Row {
    double source_offset, before, length;  // of the right clip, seconds; of the fade, samples
    double left_length, right_position, fade_out, fade_in, shape;
  };
  for (const Row& row :
       {Row{1.0, 4800, 14400, 2.2, 1.9, 0.3, 0.3, 1.0}, Row{0.05, 4800, 14400, 2.0, 2.0, 0.1, 0.2, 0.0},
        Row{0.05, 4800, 4800, 2.0, 2.0, 0.1, 0.1, 0.0}}) {
    FadeCase c{.items = {item_at(0.0, 2.0), item_at(2.0, 3.0, row.source_offset)},
               .fades = {{.kind = 1, .before = row.before, .length = row.length, .shape = 1}},
               .entries = entries("f0@96000")};
    const auto& items = c.run();
    EXPECT_DOUBLE_EQ(items[0].length, row.left_length);
    EXPECT_DOUBLE_EQ(items[0].fade_out, row.fade_out);
    EXPECT_EQ(items[0].fade_out_shape, row.shape);
    EXPECT_TRUE(items[0].crossfaded);
    EXPECT_DOUBLE_EQ(items[1].position, row.right_position);
    EXPECT_DOUBLE_EQ(items[1].source_offset, row.source_offset - (2.0 - row.right_position));
    EXPECT_DOUBLE_EQ(items[1].length, 5.0 - row.right_position);
    EXPECT_DOUBLE_EQ(items[1].fade_in, row.fade_in);
    EXPECT_EQ(items[1].fade_in_shape, row.shape);
    EXPECT_FALSE(items[1].crossfaded);
    EXPECT_EQ(c.counters.crossfades, 1);
  }
}

TEST(Fades, TickBasedTracksConvertEveryValue) {
  FadeCase c{.items = {item_at(0.0, 1.0), item_at(1.0, 1.0, 1.0)},
             .fades = {{.kind = 1, .before = 96000, .length = 288000}},
             .entries = entries("f0@1920000t"),
             .ticks = true};
  c.tempo.events = {{0, 120.0}, {1920000, 60.0}};  // slower from 1 s on
  const auto& items = c.run();
  EXPECT_DOUBLE_EQ(items[1].position, 1.0 - 0.05) << "at 120 BPM before the change";
  EXPECT_DOUBLE_EQ(items[0].fade_out, 0.3) << "all of it measured at 60 BPM from the position on";
}

// The rules read literally: every item is looked at for every fade.
std::vector<OutputItem> attach_slowly(std::vector<OutputItem> items, const FadeCase& c) {
  for (const PlaylistEntry& entry : c.entries) {
    const FadeRecord& fade = c.fades[entry.clip_or_fade_index];
    const double t = static_cast<double>(entry.position) / kRate;
    const double pre = fade.before / kRate, length = fade.length / kRate;
    OutputItem *start = nullptr, *end = nullptr;
    double nearest_start = 0.005, nearest_end = 0.005;
    for (OutputItem& item : items) {
      const double from_start = std::abs(item.position - t), from_end = std::abs(item.position + item.length - t);
      if (from_start < nearest_start) start = &item, nearest_start = from_start;
      if (from_end < nearest_end) end = &item, nearest_end = from_end;
    }
    if (fade.kind == 3 && start) start->fade_in = length;
    if (fade.kind == 2 && end) end->fade_out = length;
    if (fade.kind != 1 || !start || !end) continue;
    if (start->source_offset < pre || start->position < pre) {
      end->fade_out = pre > 0 ? pre : length;
      start->fade_in = length - pre > 0 ? length - pre : length;
      continue;
    }
    end->length += length - pre;
    start->position -= pre;
    start->source_offset -= pre;
    start->length += pre;
    end->fade_out = start->fade_in = length;
  }
  sort_by_position(items);
  return items;
}

TEST(Fades, NearestEdgesAreThoseOfALiteralSearch) {
  std::mt19937 random(7);
  const auto below = [&](unsigned n) { return static_cast<std::uint32_t>(random() % n); };
  for (int round = 0; round < 400; ++round) {
    FadeCase c;
    const unsigned span = 200 + below(6000);  // crowded: many edges within reach of one fade
    const unsigned count = 1 + below(40);
    for (unsigned i = 0; i < count; ++i)
      c.items.push_back(item_at(below(span) / kRate, below(span / 2) / kRate, below(400) / kRate));
    for (std::size_t i = 0; i < c.items.size(); ++i) c.items[i].ordinal = i;
    sort_by_position(c.items);
    for (std::uint32_t i = 0; i < 60; ++i) {
      const std::uint32_t length = below(300);
      c.fades.push_back({.kind = static_cast<std::uint8_t>(1 + (below(3) == 0 ? below(3) : 0)),
                         .before = static_cast<double>(below(length + 1)),
                         .length = static_cast<double>(length)});
      c.entries.push_back(entries("f" + std::to_string(i) + "@" + std::to_string(below(span)))[0]);
    }
    const auto slow = attach_slowly(c.items, c);
    const auto& fast = c.run();
    ASSERT_EQ(fast.size(), slow.size());
    for (std::size_t i = 0; i < slow.size(); ++i) {
      ASSERT_EQ(fast[i].ordinal, slow[i].ordinal) << round;
      ASSERT_EQ(fast[i].position, slow[i].position) << round;
      ASSERT_EQ(fast[i].length, slow[i].length) << round;
      ASSERT_EQ(fast[i].fade_in, slow[i].fade_in) << round;
      ASSERT_EQ(fast[i].fade_out, slow[i].fade_out) << round;
    }
  }
}

// ---- small rules ----

TEST(ClipShaping, WholeFileClipsAndFileKeys) {
  const struct {
    const char* name;
    std::uint32_t offset;
    bool whole;
  } clips[] = {{"Take", 63, true}, {"Take", 64, false},  {"Take-01", 0, false},  {"Take-", 0, false},
               {"", 0, true},      {"Take_01", 0, true}, {"Take-01.L", 0, true}, {"0123", 0, true}};
  for (const auto& one : clips) EXPECT_EQ(is_whole_file(one.name, one.offset), one.whole) << one.name;
  const std::pair<const char*, const char*> keys[] = {
      {"Kick_01.WAV", "kick"},  {"Kick-007.aiff", "kick"}, {"Kick.audio", "kick.audio"},
      {"Kick01.wav", "kick01"}, {"Kick_.wav", "kick_"},    {"01.wav", "01"},
      {"a_1_2.", "a_1"}};
  for (const auto& [name, key] : keys) EXPECT_EQ(file_key(name), key) << name;
}

TEST(ClipShaping, SortingIsStableAndMovesEverything) {
  std::vector<OutputItem> items;
  for (const double position : {3.0, 1.0, 2.0, 1.0, 0.5, 3.0, 1.0}) {
    items.push_back(item_at(position, 1.0));
    items.back().ordinal = items.size();
    items.back().warp = {{static_cast<double>(items.size()), 0.0}};
  }
  sort_by_position(items);
  std::string order;
  for (const OutputItem& item : items) {
    order += std::to_string(item.ordinal);
    EXPECT_EQ(item.warp.at(0).first, static_cast<double>(item.ordinal));
  }
  EXPECT_EQ(order, "5247316");
}

// ---- the whole stage on an image ----

struct ImageClip {
  const char* name;
  std::uint64_t length, sync;
  std::uint32_t gain_index;
};

// Clips with their sync points and gain indices, one gain table, one fade, one track's playlist.
struct Session {
  std::vector<ImageClip> clips;
  std::vector<PlaylistEntry> entries;
  bool ticks = false;
  std::vector<std::uint8_t> bytes;
  ClipTables tables;
  RunCounters counters;
  ConversionOptions options;
  TempoMap tempo;

  ShapedClips shape() {
    test::BlockWriter w;
    w.open(0x2637).u32(2);
    w.zeros(4).u32(22).u16(0).u32(1).zeros(12).f32(-6.0f);
    w.zeros(4).u32(30).u16(0).u32(2).zeros(12).f32(0.0f).u32(4800).f32(3.0f).close();
    w.open(0x262a).u32(0);
    for (const ImageClip& clip : clips) {
      w.open(0x2629).open(0x2628).text(clip.name).bytes({0, 0, 0x24, 0, 0}).number(clip.sync, 4);
      w.zeros(20).u32(clip.gain_index).close().close();
    }
    w.close();
    w.open(0x262f).zeros(5).u8(0x20).zeros(2).u16(480).u8(3).zeros(12).close();
    w.open(0x1054).u32(1).open(0x1052, 3).text("Trk").u32(static_cast<std::uint32_t>(entries.size()));
    for (const PlaylistEntry& e : entries) {
      w.open(0x1050, 3).open(0x104f, 10).u16(0).u32(e.clip_or_fade_index).u8(0).u40(e.position).zeros(3);
      w.u8(e.kind).i16(e.color).u8(0).zeros(16).close().u8(e.plain ? 0 : 1).u16(0).close();
    }
    w.u8(ticks ? 2 : 1).close().close();
    bytes = test::image_of(w.take());
    for (std::size_t i = 0; i < clips.size(); ++i) {
      ClipRecord clip;
      clip.index = static_cast<std::uint16_t>(i);
      clip.name = clips[i].name;
      clip.length = static_cast<std::int64_t>(clips[i].length);
      tables.audio_clips.push_back(clip);
    }
    for (const PlaylistEntry& e : entries) {
      Placement placement;
      placement.track_name = "Trk";
      placement.clip = e.clip_or_fade_index;
      placement.position40 = e.position;
      placement.start = placement.raw_start = static_cast<std::uint32_t>(e.position);
      tables.audio.push_back(placement);
    }
    return shape_clips(SessionImage(ByteView(bytes.data(), bytes.size())), tables, tempo, kRate, options, counters);
  }
};

TEST(ClipShaping, WholeStage) {
  Session s;
  s.clips = {{"one", 48000, 0, 0}, {"two", 48000, 2400, 1}, {"three", 96000, 0, 9}};
  s.entries = entries("0@48000 n0@48000k2 1@98400 2@480000 n2@1");
  s.options.recover_deleted = true;
  const ShapedClips shaped = s.shape();
  ASSERT_EQ(shaped.tracks.size(), 1u);
  const TrackNode& track = shaped.tracks[0];
  EXPECT_EQ(track.name, "Trk");
  ASSERT_EQ(track.items.size(), 3u);
  EXPECT_EQ(track.items[0].position, 1.0);
  EXPECT_EQ(track.items[0].fade_in, 0.01) << "by the clip edge, whatever the entry's kind";
  EXPECT_EQ(track.items[0].gain_db, -6.0);
  EXPECT_EQ(track.items[0].gain_envelope, nullptr);
  EXPECT_DOUBLE_EQ(track.items[1].position, 2.0) << "the sync point stands at the stored position";
  EXPECT_EQ(track.items[1].sync_offset, 0.05);
  ASSERT_NE(track.items[1].gain_envelope, nullptr);
  EXPECT_EQ(track.items[1].gain_envelope->size(), 2u);
  EXPECT_TRUE(track.items[1].has_gain);
  EXPECT_FALSE(track.items[2].has_gain);
  ASSERT_EQ(track.alternates.size(), 1u);
  EXPECT_FALSE(track.alternates[0].has_gain) << "set aside before the gain";
  EXPECT_EQ(track.alternates[0].clip_name, "three");
  EXPECT_EQ(track.alternates[0].ordinal, 4u);
  EXPECT_EQ(s.counters.clips_with_gain, 2);
  EXPECT_EQ(s.counters.fade_clips_dropped, 1);
  EXPECT_EQ(s.counters.deleted_placements, 1);
  EXPECT_FALSE(s.counters.sync_points_unmatched);
}

TEST(ClipShaping, SyncPointsMoveNothingIfTheyDontLineUpNorBeforeTheStart) {
  for (const bool unmatched : {true, false}) {
    Session s;
    s.clips = {{"one", 48000, 2400, 9}};
    s.entries = entries("0@1200");
    s.tables.audio_clips.resize(unmatched ? 1 : 0);  // one clip more than the session's own list holds
    const ShapedClips shaped = s.shape();
    EXPECT_EQ(shaped.tracks[0].items[0].position, unmatched ? 0.025 : 0.0);
    EXPECT_EQ(shaped.tracks[0].items[0].sync_offset, unmatched ? 0.0 : 0.05);
    EXPECT_EQ(s.counters.sync_points_unmatched, unmatched);
  }
}

TEST(ClipShaping, TickPositions) {
  struct Row {
    const char* what;
    std::uint64_t position;
    double song_start;
    double expected;
  };
  for (const Row& row : {Row{"the origin", kTickOrigin, 0.0, 0.0}, Row{"one beat", kTickOrigin + 960000, 0.0, 0.5},
                         Row{"by its low 32 bits", kTickOrigin + 960000 + (std::uint64_t{1} << 32), 0.0, 0.5},
                         Row{"after a song start", kTickOrigin + 960000, 2.0, 2.5},
                         Row{"before the origin", kTickOrigin - 960000, 2.0, 1.5},
                         Row{"before the timeline", kTickOrigin - 9600000, 2.0, 0.0}}) {
    Session s;
    s.ticks = true;
    s.clips = {{"one", 48000, 0, 9}};
    s.entries = entries("0@" + std::to_string(row.position));
    s.tempo.song_start = row.song_start;
    const ShapedClips shaped = s.shape();
    EXPECT_TRUE(shaped.tracks[0].ticks) << row.what;
    EXPECT_DOUBLE_EQ(shaped.tracks[0].items[0].position, row.expected) << row.what;
  }
}

}  // namespace
}  // namespace frt

// From placements to items: pairing with playlists, timebase, deleted placements, fades, gain.
#include "model/clip_shaping.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "model/deleted_placements.h"
#include "model/fades.h"
#include "model/item_order.h"
#include "model/placed_clips.h"
#include "model/timebase.h"
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

// A placement of a clip, by its stored position.
PlacedClip placed(std::uint16_t clip, std::uint32_t raw_position) {
  PlacedClip placed;
  placed.clip_index = clip;
  placed.raw_position = raw_position;
  return placed;
}

PlaylistEntry plain(std::uint32_t clip, std::uint64_t position, std::uint8_t kind = 3) {
  PlaylistEntry entry;
  entry.clip_or_fade_index = clip;
  entry.position = position;
  entry.kind = kind;
  entry.plain = true;
  return entry;
}

PlaylistEntry fade_entry(std::uint32_t fade, std::uint64_t position) {
  PlaylistEntry entry = plain(fade, position, 1);
  entry.plain = false;
  entry.fade = true;
  return entry;
}

PlaylistEntry not_plain(std::uint32_t index, std::uint64_t position, std::uint8_t kind) {
  PlaylistEntry entry = plain(index, position, kind);
  entry.plain = false;
  return entry;
}

PlaylistEntry group_entry(std::uint32_t group, std::uint64_t position) {
  PlaylistEntry entry = plain(group, position);
  entry.is_group = true;
  return entry;
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

struct PairingCase {
  std::vector<PlacedTrack> tracks;
  std::vector<PlaylistRecord> playlists;
  std::vector<TrackPlaylist> track_playlists;
  RunCounters counters;

  TrackNode& track(std::string_view name, std::size_t clips, std::uint32_t raw_position = 0) {
    PlacedTrack& track = tracks.emplace_back();
    track.clips.assign(clips, placed(0, raw_position));
    track.node.name = name;
    track.node.track_index = track.node.stored_track_index = static_cast<std::uint16_t>(tracks.size() - 1);
    return track.node;
  }
  PlaylistRecord& playlist(std::string_view name, std::size_t count, bool ticks = false) {
    PlaylistRecord record = playlist_of(std::vector<PlaylistEntry>(count, plain(0, 0)), name, ticks);
    record.start = 1000 + playlists.size();
    track_playlists.push_back({record.start, name.empty()});
    return playlists.emplace_back(std::move(record));
  }
  // "3:Name/t" a track: its record, its name, its timebase.
  std::string run(std::size_t channel_count = 0) {
    take_records(tracks, playlists, pair_tracks(tracks, playlists, track_playlists, channel_count), counters);
    std::string text;
    for (const auto& [node, clips, deleted] : tracks)
      text += std::to_string(node.playlist) + ":" + std::string(node.name) + (node.ticks ? "/t " : "/s ");
    return text;
  }
};

TEST(Pairing, ByCountFromTheCursor) {
  PairingCase c;
  c.track("x", 2);
  c.track("y", 1);
  c.track("z", 2);
  c.playlist("One", 1);
  c.playlist("Two", 2, true);
  c.playlist("Three", 1);
  c.playlist("Four", 2);
  EXPECT_EQ(c.run(), "1:Two/t 2:Three/s 3:Four/s ");
  EXPECT_EQ(c.counters.tick_based_tracks, 1);
  EXPECT_EQ(c.counters.sample_based_tracks, 2);
  EXPECT_EQ(c.counters.timebase_judged + c.counters.timebase_read_that_way, 0);
}

TEST(Pairing, ATrackWithoutAHitLeavesTheCursor) {
  PairingCase c;
  c.track("x", 5);
  c.track("y", 1);
  c.playlist("One", 1);
  EXPECT_EQ(c.run(), "-1:x/s 0:One/s ");
  EXPECT_EQ(c.counters.timebase_read_that_way, 1);
}

TEST(Pairing, ClipGroupsAreFoundByName) {
  PairingCase c;
  c.track("Plain", 7);
  c.track("Grouped", 9);
  c.playlist("Plain", 2);
  c.playlist("Grouped", 1).entries[0].is_group = true;
  EXPECT_EQ(c.run(), "-1:Plain/s 1:Grouped/s ") << "a name counts only where there is a group";

  PairingCase unread;
  unread.track("Grouped", 9);
  unread.playlist("Grouped", 1).entries[0].is_group = true;
  unread.playlist("Broken", 1).entries_read = false;
  EXPECT_EQ(unread.run(), "-1:Grouped/s ") << "and only if every playlist's entries were read";
}

TEST(Pairing, AnEmptyNameRenamesNothingAndDoesNotDecide) {
  PairingCase c;
  c.track("Gtr", 1, 5);
  c.playlist("", 1, true);
  c.playlist("Other", 4, false);
  EXPECT_EQ(c.run(), "0:Gtr/s ");
  EXPECT_EQ(c.counters.timebase_judged, 1);
  EXPECT_TRUE(c.tracks[0].node.record_name.empty());
}

TEST(Pairing, ByNumberWhereAPlaylistHasNoName) {
  PairingCase c;
  c.track("Bass", 1).stored_track_index = 1;
  c.track("Keys", 2).stored_track_index = 3;
  c.playlist("Empty", 0);
  c.playlist("", 3, true);
  c.playlist("Neighbour", 1);
  c.playlist("Keys.02", 9);
  EXPECT_EQ(c.run(4), "1:Bass/t 3:Keys.02/s ");
  EXPECT_EQ(c.tracks[0].node.record_name, "Bass") << "a record without a name bears its track's";
  EXPECT_EQ(c.counters.timebase_judged + c.counters.timebase_read_that_way, 0);

  PairingCase other;
  other.track("Bass", 1).stored_track_index = 1;
  other.playlist("Empty", 0);
  other.playlist("", 3, true);
  other.playlist("Neighbour", 1);
  EXPECT_EQ(other.run(4), "2:Neighbour/s ") << "not if the track list knows another number of tracks";
}

TEST(Pairing, ByNumberWithoutARecordIsUnpaired) {
  PairingCase c;
  c.track("Bass", 1);
  c.playlist("", 1);
  c.playlists.clear();  // of another shape: no record
  EXPECT_EQ(c.run(1), "-1:Bass/s ");
  EXPECT_EQ(c.counters.timebase_judged, 1);
  EXPECT_FALSE(c.counters.timebase_records_exist);
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
    PairingCase c;
    c.track("x", 0);
    for (const std::uint32_t raw : row.raw_positions) c.tracks[0].clips.push_back(placed(0, raw));
    for (const bool ticks : row.records) c.playlist("P", 50, ticks);
    c.run();
    EXPECT_EQ(c.tracks[0].node.ticks, row.ticks) << row.what;
    EXPECT_EQ(c.counters.timebase_read_that_way, row.read_that_way) << row.what;
    EXPECT_EQ(c.counters.timebase_judged, row.judged) << row.what;
    EXPECT_EQ(c.counters.timebase_records_exist, !row.records.empty()) << row.what;
    EXPECT_EQ(c.counters.timebase_all_samples, std::string(row.what) == "all samples") << row.what;
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

TEST(DeletedPlacements, MatchesEntries) {
  struct Row {
    const char* what;
    std::vector<PlaylistEntry> entries;
    std::vector<PlacedClip> clips;
    const char* expected;  // kept | deleted
  };
  const Row rows[] = {
      {"exact", {plain(1, 100), plain(2, 200)}, {placed(1, 100), placed(2, 200)}, "1@100 2@200 | "},
      {"no entry for the clip", {plain(1, 100)}, {placed(1, 100), placed(2, 100)}, "1@100 | 2@100 "},
      {"64 away", {plain(1, 100)}, {placed(1, 164)}, "1@164 | "},
      {"one entry, two items", {plain(1, 100)}, {placed(1, 5000), placed(1, 130)}, "1@130 | 1@5000 "},
      {"65 away takes what is left", {plain(1, 100)}, {placed(1, 165)}, "1@165 | "},
      {"nearest goes first",
       {plain(1, 100), plain(1, 110)},
       {placed(1, 106), placed(1, 100), placed(1, 300)},
       "1@106 1@100 | 1@300 "},
      {"a tie takes the lower", {plain(1, 100), plain(1, 110)}, {placed(1, 105), placed(1, 100)}, "1@105 1@100 | "},
      {"an entry that is not plain matches nothing",
       {plain(1, 100), not_plain(2, 200, 3)},
       {placed(1, 100), placed(2, 200)},
       "1@100 | 2@200 "},
      {"nothing plain at all", {not_plain(1, 100, 3)}, {placed(2, 5)}, "2@5 | "},
      {"nothing would stay", {plain(1, 100)}, {placed(2, 100), placed(3, 100)}, "2@100 3@100 | "},
      {"positions compare by 32 bits", {plain(1, 0x100000064)}, {placed(1, 100), placed(1, 9)}, "1@100 | 1@9 "},
  };
  for (const Row& row : rows) {
    DeletedCase c{.entries = row.entries, .clips = row.clips};
    EXPECT_EQ(c.run(), row.expected) << row.what;
    EXPECT_EQ(c.counters.deleted_placements, static_cast<int>(c.tracks[0].deleted.size())) << row.what;
  }
}

TEST(DeletedPlacements, TheTieUsesUpTheLowerEntry) {
  // The item between both entries takes the lower one, so the second item is left with the upper one's mark.
  DeletedCase c{.entries = {plain(1, 100), plain(1, 110)}, .clips = {placed(1, 105), placed(1, 110), placed(1, 100)}};
  EXPECT_EQ(c.run(), "1@105 1@110 | 1@100 ");
}

TEST(DeletedPlacements, StayersTakeMarksByTheirOwnKey) {
  PlaylistEntry over_next = plain(1, 100, 1), over_previous = plain(2, 200, 2), beside = plain(3, 300);
  over_next.color = 33;
  over_previous.locked = true;
  beside.color = 40;
  PlaylistEntry ghost = not_plain(1, 100, 2);
  ghost.color = 50;
  DeletedCase c{.entries = {over_next, over_previous, beside, ghost},
                .clips = {placed(1, 100), placed(2, 200), placed(3, 310)}};
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

const FadeRecord kInFade{.kind = 3, .before = 0, .length = 10};

TEST(DeletedPlacements, FadeClips) {
  DeletedCase c{.entries = {plain(5, 0), fade_entry(0, 0), fade_entry(9, 40)},
                .clips = {placed(5, 0), placed(0, 0), placed(9, 40)},
                .fades = {kInFade}};
  EXPECT_EQ(c.run(), "5@0 | 9@40 ") << "outside the fade table it is no fade";
  EXPECT_EQ(c.counters.fade_clips_dropped, 1);

  c = {.entries = c.entries, .clips = c.clips, .fades = {kInFade}};
  c.options.keep_fade_clips = true;
  EXPECT_EQ(c.run(), "5@0 | 0@0 9@40 ");
  EXPECT_EQ(c.counters.fade_clips_dropped, 0);

  c = {.entries = c.entries, .clips = c.clips};
  EXPECT_EQ(c.run(), "5@0 | 0@0 9@40 ") << "without a fade table";
}

TEST(DeletedPlacements, AFadeAndAClipOfOneKey) {
  // Clip 0 and fade 0 both stand at 0: one of the two items is the clip.
  DeletedCase c{.entries = {plain(0, 0), fade_entry(0, 0)}, .clips = {placed(0, 0), placed(0, 0)}, .fades = {kInFade}};
  EXPECT_EQ(c.run(), "0@0 | ");
  EXPECT_EQ(c.counters.fade_clips_dropped, 1);
  EXPECT_EQ(c.counters.deleted_placements, 0);

  c = {.entries = {plain(0, 0), fade_entry(0, 0), plain(0, 50)},
       .clips = {placed(0, 0), placed(0, 0), placed(0, 50)},
       .fades = {kInFade}};
  EXPECT_EQ(c.run(), "0@0 0@50 | ") << "the fade doesn't take a neighbour's entry";
}

TEST(DeletedPlacements, NothingCountsIfNothingStays) {
  DeletedCase c{
      .entries = {plain(1, 500), fade_entry(0, 0)}, .clips = {placed(0, 0), placed(2, 3)}, .fades = {kInFade}};
  EXPECT_EQ(c.run(), "0@0 2@3 | ");
  EXPECT_EQ(c.counters.fade_clips_dropped, 0);
  EXPECT_EQ(c.counters.deleted_placements, 0);
}

TEST(DeletedPlacements, GroupItemsAreTakenOutOncePerKey) {
  DeletedCase c{.entries = {group_entry(4, 100), fade_entry(0, 90), fade_entry(1, 95), plain(1, 95), plain(7, 300)},
                .clips = {placed(4, 100), placed(4, 100), placed(0, 90), placed(1, 95), placed(7, 300)}};
  EXPECT_EQ(c.run(), "1@95 7@300 | 4@100 ") << "fade 1 shares its key with a clip";
  EXPECT_EQ(c.counters.fade_clips_dropped, 0);

  c = {.entries = {fade_entry(0, 90), plain(7, 300)}, .clips = {placed(0, 90), placed(7, 300)}};
  EXPECT_EQ(c.run(), "7@300 | 0@90 ") << "without a group the first pass takes nothing";
}

TEST(DeletedPlacements, TracksWithoutAPlaylistKeepAll) {
  std::vector<PlacedTrack> tracks(1);
  tracks[0].clips = {placed(1, 1), placed(2, 2)};
  RunCounters counters;
  set_deleted_placements_aside(tracks, {playlist_of({plain(1, 1)})}, {}, {}, counters);
  EXPECT_EQ(tracks[0].clips.size(), 2u);
}

// ---- which entries are fades ----

struct EdgeCase {
  std::vector<ClipRecord> clips = std::vector<ClipRecord>(3);
  std::vector<std::int64_t> sync;
  std::vector<ClipGroupRow> groups;
  std::vector<FadeRecord> fades = {{.kind = 1, .length = 20}, {.kind = 2, .length = 20}, {.kind = 3, .length = 20}, {}};
  TempoMap tempo;

  bool is_fade(const std::vector<PlaylistEntry>& others, const PlaylistEntry& candidate, bool ticks = false) {
    std::vector<PlaylistRecord> playlists = {playlist_of(others, "A", ticks)};
    playlists[0].entries.push_back(candidate);
    mark_fades_on_clip_edges(playlists, fades, {clips, sync, groups, tempo, kRate});
    return playlists[0].entries.back().fade;
  }
};

TEST(FadeEntries, BindByTheClipEdgesOfTheirPlaylist) {
  EdgeCase c;
  c.clips[0].length = 1000;
  c.clips[1].length = 500;
  const std::vector<PlaylistEntry> clips = {plain(0, 100), plain(1, 1100)};
  const auto fade = [](std::uint32_t record, std::uint64_t at) { return not_plain(record, at, 3); };
  EXPECT_TRUE(c.is_fade(clips, fade(2, 100))) << "a fade-in where a clip begins";
  EXPECT_FALSE(c.is_fade(clips, fade(2, 101)));
  EXPECT_FALSE(c.is_fade(clips, fade(2, 1600))) << "where one ends";
  EXPECT_TRUE(c.is_fade(clips, fade(1, 1600)));
  EXPECT_FALSE(c.is_fade(clips, fade(1, 100)));
  EXPECT_TRUE(c.is_fade(clips, fade(0, 1100))) << "one ends and one begins";
  EXPECT_FALSE(c.is_fade(clips, fade(0, 100)));
  EXPECT_FALSE(c.is_fade(clips, fade(3, 100))) << "a record not understood";
  EXPECT_FALSE(c.is_fade(clips, fade(4, 100))) << "outside the table";
  EXPECT_FALSE(c.is_fade(clips, plain(2, 100))) << "a plain entry is a clip";
  EXPECT_FALSE(c.is_fade({not_plain(0, 100, 3)}, fade(2, 100))) << "a deleted clip has no edges";
  PlaylistEntry group = fade(2, 100);
  group.is_group = true;
  EXPECT_FALSE(c.is_fade(clips, group));
}

TEST(FadeEntries, SyncPointsAndGroupsMoveTheEdges) {
  EdgeCase c;
  c.clips[0].length = 1000;
  c.sync = {40, 0, 0};
  EXPECT_TRUE(c.is_fade({plain(0, 100)}, not_plain(2, 60, 3)));
  EXPECT_TRUE(c.is_fade({plain(0, 100)}, not_plain(1, 1060, 3)));
  ClipGroupRow row;
  row.length = 700;
  row.valid = true;
  c.groups = {row};
  EXPECT_TRUE(c.is_fade({group_entry(0, 100)}, not_plain(2, 100, 3))) << "groups have no sync point";
  EXPECT_TRUE(c.is_fade({group_entry(0, 100)}, not_plain(1, 800, 3)));
  EXPECT_FALSE(c.is_fade({group_entry(1, 100)}, not_plain(1, 800, 3)));
}

TEST(FadeEntries, TickPlaylistsCompareOnTheSample) {
  EdgeCase c;
  c.clips[0].length = 24000;  // one beat at 120 BPM
  const auto tick = [](std::uint64_t t) { return kTickOrigin + t; };
  EXPECT_TRUE(c.is_fade({plain(0, tick(960000))}, not_plain(2, tick(960000), 3), true));
  EXPECT_TRUE(c.is_fade({plain(0, tick(960000))}, not_plain(1, tick(1920000), 3), true));
  EXPECT_FALSE(c.is_fade({plain(0, tick(960000))}, not_plain(1, tick(1920100), 3), true));
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
               .entries = {fade_entry(0, static_cast<std::uint64_t>(12000 + off))}};
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
             .entries = {fade_entry(0, 48000), fade_entry(1, 96000), fade_entry(2, 192000)}};
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
             .entries = {fade_entry(0, 48000), fade_entry(3, 48000), fade_entry(1, 48000), fade_entry(2, 96000),
                         not_plain(2, 48000, 3)}};
  c.run();
  EXPECT_EQ(c.counters.fades_not_understood, 2) << "kind 0, outside the table";
  EXPECT_EQ(c.counters.fades_unbound, 2) << "a crossfade with one edge, a fade-in at an end";
  EXPECT_EQ(c.counters.s_curve_fades, 1) << "S curves count before they bind";
}

TEST(Fades, CrossfadeExtendsBothClips) {
  FadeCase c{.items = {item_at(0.0, 2.0), item_at(2.0, 3.0, 1.0)},
             .fades = {{.kind = 1, .before = 4800, .length = 14400, .shape = 1}},
             .entries = {fade_entry(0, 96000)}};
  const auto& items = c.run();
  EXPECT_DOUBLE_EQ(items[0].length, 2.2);
  EXPECT_DOUBLE_EQ(items[0].fade_out, 0.3);
  EXPECT_EQ(items[0].fade_out_shape, 1.0);
  EXPECT_TRUE(items[0].crossfaded);
  EXPECT_DOUBLE_EQ(items[1].position, 1.9);
  EXPECT_DOUBLE_EQ(items[1].source_offset, 0.9);
  EXPECT_DOUBLE_EQ(items[1].length, 3.1);
  EXPECT_DOUBLE_EQ(items[1].fade_in, 0.3);
  EXPECT_EQ(items[1].fade_in_shape, 1.0);
  EXPECT_FALSE(items[1].crossfaded);
  EXPECT_EQ(c.counters.crossfades, 1);
}

TEST(Fades, CrossfadeWithoutMaterialLeavesTheClips) {
  struct Row {
    double before, length;  // samples
    double fade_out, fade_in;
  };
  for (const Row& row : {Row{4800, 14400, 0.1, 0.2}, Row{4800, 4800, 0.1, 0.1}}) {
    FadeCase c{.items = {item_at(0.0, 2.0), item_at(2.0, 3.0, 0.05)},
               .fades = {{.kind = 1, .before = row.before, .length = row.length, .shape = 1, .s_curve = true}},
               .entries = {fade_entry(0, 96000)}};
    const auto& items = c.run();
    EXPECT_EQ(items[0].length, 2.0);
    EXPECT_EQ(items[1].position, 2.0);
    EXPECT_DOUBLE_EQ(items[0].fade_out, row.fade_out);
    EXPECT_DOUBLE_EQ(items[1].fade_in, row.fade_in);
    EXPECT_TRUE(items[0].crossfaded);
    EXPECT_EQ(items[0].fade_out_shape, 0.0) << "shapes stay as they were";
    EXPECT_EQ(c.counters.crossfades, 1);
    EXPECT_EQ(c.counters.s_curve_fades, 1);
  }
}

TEST(Fades, TickBasedTracksConvertEveryValue) {
  FadeCase c{.items = {item_at(0.0, 1.0), item_at(1.0, 1.0, 1.0)},
             .fades = {{.kind = 1, .before = 96000, .length = 288000}},
             .entries = {fade_entry(0, kTickOrigin + 1920000)},
             .ticks = true};
  c.tempo.events = {{0, 120.0}, {1920000, 60.0}};  // slower from 1 s on
  const auto& items = c.run();
  EXPECT_DOUBLE_EQ(items[1].position, 1.0 - 0.05) << "at 120 BPM before the change";
  EXPECT_DOUBLE_EQ(items[0].fade_out, 0.3) << "all of it measured at 60 BPM from the position on";
}

TEST(Fades, ItemsAreSortedAgain) {
  FadeCase c{.items = {item_at(0.0, 2.0), item_at(1.95, 1.0), item_at(2.0, 3.0, 1.0)},
             .fades = {{.kind = 1, .before = 4800, .length = 9600}},
             .entries = {fade_entry(0, 96000)}};
  const auto& items = c.run();
  EXPECT_DOUBLE_EQ(items[1].position, 1.9);
  EXPECT_DOUBLE_EQ(items[2].position, 1.95);
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
      c.entries.push_back(fade_entry(i, below(span)));
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

TEST(ClipShaping, WholeFile) {
  EXPECT_TRUE(is_whole_file("Take", 0));
  EXPECT_TRUE(is_whole_file("Take", 63));
  EXPECT_FALSE(is_whole_file("Take", 64));
  EXPECT_FALSE(is_whole_file("Take-01", 0));
  EXPECT_FALSE(is_whole_file("Take-", 0));
  EXPECT_TRUE(is_whole_file("Take_01", 0));
  EXPECT_TRUE(is_whole_file("0123", 0));
  EXPECT_TRUE(is_whole_file("", 0));
  EXPECT_TRUE(is_whole_file("Take-01.L", 0));
}

TEST(ClipShaping, FileKey) {
  EXPECT_EQ(file_key("Kick.WAV"), "kick");
  EXPECT_EQ(file_key("Kick_01.wav"), "kick");
  EXPECT_EQ(file_key("Kick-007.aiff"), "kick");
  EXPECT_EQ(file_key("Kick.audio"), "kick.audio");
  EXPECT_EQ(file_key("Kick01.wav"), "kick01");
  EXPECT_EQ(file_key("Kick_.wav"), "kick_");
  EXPECT_EQ(file_key("01.wav"), "01");
  EXPECT_EQ(file_key("a_1_2."), "a_1");
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
    ASSERT_EQ(item.warp.size(), 1u);
    EXPECT_EQ(item.warp[0].first, static_cast<double>(item.ordinal));
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
      placement.raw_start = static_cast<std::uint32_t>(e.position);
      tables.audio.push_back(placement);
    }
    return shape_clips(SessionImage(ByteView(bytes.data(), bytes.size())), tables, tempo, kRate, options, counters);
  }
};

TEST(ClipShaping, WholeStage) {
  Session s;
  s.clips = {{"one", 48000, 0, 0}, {"two", 48000, 2400, 1}, {"three", 96000, 0, 9}};
  s.entries = {plain(0, 48000), not_plain(0, 48000, 2), plain(1, 96000 + 2400), plain(2, 480000), not_plain(2, 1, 3)};
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
  EXPECT_EQ(track.alternates[0].clip_name, "three");
  EXPECT_EQ(track.alternates[0].ordinal, 4u);
  EXPECT_EQ(s.counters.clips_with_gain, 2);
  EXPECT_EQ(s.counters.fade_clips_dropped, 1);
  EXPECT_EQ(s.counters.deleted_placements, 1);
  EXPECT_FALSE(s.counters.sync_points_unmatched);
}

TEST(ClipShaping, DeletedPlacementsAreItemsOnlyIfAskedFor) {
  for (const bool recover : {false, true}) {
    Session s;
    s.options.recover_deleted = recover;
    s.clips = {{"one", 48000, 0, 0}};
    s.entries = {plain(0, 48000), not_plain(0, 96000, 3)};
    const ShapedClips shaped = s.shape();
    EXPECT_EQ(shaped.tracks[0].items.size(), 1u);
    EXPECT_EQ(s.counters.deleted_placements, 1) << "counted either way";
    ASSERT_EQ(shaped.tracks[0].alternates.size(), recover ? 1u : 0u);
    if (recover) {
      EXPECT_FALSE(shaped.tracks[0].alternates[0].has_gain) << "set aside before the gain";
    }
  }
}

TEST(ClipShaping, WithoutFadesTheFadeEntriesMatchNothing) {
  Session s;
  s.options.no_fades = true;
  s.clips = {{"one", 48000, 0, 9}};
  s.entries = {plain(0, 48000), not_plain(0, 48000, 2)};
  const ShapedClips shaped = s.shape();
  ASSERT_EQ(shaped.tracks[0].items.size(), 1u);
  EXPECT_EQ(shaped.tracks[0].items[0].fade_in, 0.0);
  EXPECT_EQ(s.counters.fade_clips_dropped, 0);
  EXPECT_EQ(s.counters.deleted_placements, 1);
  EXPECT_EQ(s.counters.fades_not_understood, 1);
}

TEST(ClipShaping, SyncPointsThatDontLineUpMoveNothing) {
  Session s;
  s.clips = {{"one", 48000, 2400, 9}};
  s.entries = {plain(0, 48000)};
  s.tables.audio_clips.resize(1);  // one clip more than the session's own list holds
  const ShapedClips shaped = s.shape();
  EXPECT_EQ(shaped.tracks[0].items[0].position, 1.0);
  EXPECT_EQ(shaped.tracks[0].items[0].sync_offset, 0.0);
  EXPECT_TRUE(s.counters.sync_points_unmatched);
}

TEST(ClipShaping, SyncPointBeforeTheStartIsHeldAtZero) {
  Session s;
  s.clips = {{"one", 48000, 2400, 9}};
  s.entries = {plain(0, 1200)};
  EXPECT_EQ(s.shape().tracks[0].items[0].position, 0.0);
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
    s.entries = {plain(0, row.position)};
    s.tempo.song_start = row.song_start;
    const ShapedClips shaped = s.shape();
    EXPECT_TRUE(shaped.tracks[0].ticks) << row.what;
    EXPECT_DOUBLE_EQ(shaped.tracks[0].items[0].position, row.expected) << row.what;
  }
}

}  // namespace
}  // namespace frt

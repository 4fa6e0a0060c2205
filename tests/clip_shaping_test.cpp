// From placements to items: pairing with playlists, timebase, deleted placements, fades, gain.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <deque>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "model/clips/deleted_placements.h"
#include "model/clips/fades.h"
#include "model/clips/item_order.h"
#include "model/clips/pairing.h"
#include "model/clips/shape_clips.h"
#include "session/clips/fades.h"

namespace frt {
namespace {

const Clock kClock;

OutputItem item_at(double position, double length, double source_offset = 0.0) {
  OutputItem item;
  item.position = position;
  item.length = length;
  item.source_offset = source_offset;
  return item;
}

// A playlist's entries as text, index@position each: "1@100" a clip, "f0@90" a fade, "g4@100" a group, "n2@200" one
// that is no clip. Behind it "k2" is another kind than usual, "t" adds the origin of ticks.
std::vector<PlaylistEntry> entries(const std::string& text) {
  std::vector<PlaylistEntry> entries;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    PlaylistEntry& entry = entries.emplace_back();
    entry.is_clip = word[0] != 'f' && word[0] != 'n';
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
      {"a track without a hit leaves the cursor", "x 5 0 y 1 0", "One 1 -", 0, "-:x()/s 0:One(One)/s ", 0, 1},
      {"a name counts only where there is a group", "Plain 7 0 Grouped 9 0", "Plain 2 - Grouped 1 g", 0,
       "-:Plain()/s 1:Grouped(Grouped)/s ", 0, 1},
      {"and if all entries were read", "Grouped 9 0", "Grouped 1 g Broken 1 u", 0, "-:Grouped()/s ", 0, 1},
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
      tracks.back().node.stored_track_index = stored_index;
    }
    std::vector<PlaylistRecord> playlists;
    std::vector<TrackPlaylist> track_playlists;
    char flag = 0;
    for (std::string name; playlist_words >> name >> count >> flag;) {
      names.push_back(name == "*" ? "" : name);
      const PlaylistEntry entry = entries(flag == 'g' ? "g0@0" : "0@0")[0];
      playlists.push_back(playlist_of(std::vector<PlaylistEntry>(count, entry), names.back(), flag == 't'));
      playlists.back().entries_read = flag != 'u';
      playlists.back().start = 1000 + playlists.size();
      track_playlists.push_back({playlists.back().start, name == "*"});
    }
    const PairingCounts counts =
        take_records(tracks, playlists, pair_tracks(tracks, playlists, track_playlists, row.channel_count));
    std::string text;
    for (const PlacedTrack& track : tracks) {
      const TrackNode& node = track.node;
      text += (node.playlist ? std::to_string(*node.playlist) : "-") + ":" + std::string(node.name) + "(" +
              std::string(node.record_name) + ")" + (node.ticks ? "/t " : "/s ");
    }
    EXPECT_EQ(text, row.expected) << row.what;
    EXPECT_EQ(counts.judged, row.judged) << row.what;
    EXPECT_EQ(counts.read_that_way, row.read_that_way) << row.what;
  }
}

TEST(Timebase, WhereRecordsDisagreeOrAreMissingIsJudgedBySize) {
  const struct {
    std::vector<bool> records;  // timebases, in ticks
    std::vector<std::uint32_t> raw_positions;
    bool ticks;
  } rows[] = {
      {{true, false}, {1000000001, 1000000000}, true},      // half of them large
      {{true, false}, {1000000001, 0, 1000000000}, false},  // fewer
      {{}, {1000000000}, false},
      {{}, {}, true},
  };
  for (const auto& row : rows) {
    std::vector<PlacedTrack> tracks(1);
    for (const std::uint32_t raw : row.raw_positions) tracks[0].clips.emplace_back().raw_position = raw;
    std::vector<PlaylistRecord> playlists;
    for (const bool ticks : row.records) playlists.push_back(playlist_of(std::vector<PlaylistEntry>(50), "P", ticks));
    EXPECT_EQ(take_records(tracks, playlists, pair_tracks(tracks, playlists, {}, 0)).judged, 1);
    EXPECT_EQ(tracks[0].node.ticks, row.ticks);
  }
}

// ---- deleted placements ----

struct DeletedCase {
  std::vector<PlaylistEntry> entries;
  std::vector<FadeRecord> fades = {};
  ConversionOptions options = {};
  DeletedCounts counts = {};
  std::vector<PlacedTrack> tracks = std::vector<PlacedTrack>(1);

  // What stays | what is set aside.
  std::string run(std::vector<PlacedClip> placed) {
    tracks[0].node.playlist = 0;
    tracks[0].clips = std::move(placed);
    const std::vector<PlaylistRecord> playlists = {playlist_of(entries)};
    take_out_group_placements(tracks, playlists);
    counts = set_deleted_placements_aside(tracks, playlists, fades, options);
    std::string text;
    for (const auto* list : {&tracks[0].clips, &tracks[0].deleted}) {
      if (list == &tracks[0].deleted) text += "| ";
      for (const PlacedClip& clip : *list)
        text += std::to_string(clip.clip_index) + "@" + std::to_string(clip.raw_position) + " ";
    }
    return text;
  }
};

TEST(DeletedPlacements, AreThoseWithoutAnEntry) {
  const struct {
    const char *what, *entries, *clips, *expected;
    std::size_t fades = 0;  // the fade table's size
    int dropped = 0;        // fade clips
    bool keep_fade_clips = false;
  } rows[] = {
      {"no entry for the clip", "1@100", "1@100 2@100", "1@100 | 2@100 "},
      {"one entry, two items: 64 away", "1@100", "1@5000 1@164", "1@164 | 1@5000 "},
      {"65 away takes what is left", "1@100", "1@165", "1@165 | "},
      {"nearest goes first", "1@100 1@110", "1@106 1@100 1@300", "1@106 1@100 | 1@300 "},
      {"a tie uses up the lower", "1@100 1@110", "1@105 1@110 1@100", "1@105 1@110 | 1@100 "},
      {"an entry that is no clip matches nothing", "1@100 n2@200", "1@100 2@200", "1@100 | 2@200 "},
      {"no clip at all", "n1@100", "2@5", "2@5 | "},
      {"so no fade clip goes either", "1@500 f0@0", "0@0 2@3", "0@0 2@3 | ", 1},
      {"positions compare by 32 bits", "1@4294967396", "1@100 1@9", "1@100 | 1@9 "},
      {"a fade outside the table is none", "5@0 f0@0 f9@40", "5@0 0@0 9@40", "5@0 | 9@40 ", 1, 1},
      {"fade clips kept", "5@0 f0@0", "5@0 0@0", "5@0 | 0@0 ", 1, 0, true},
      {"of a fade and a clip of one key one is the clip", "0@0 f0@0 0@50", "0@0 0@0 0@50", "0@0 0@50 | ", 1, 1},
      // Groups take out their items first, and fades with them, unless a clip has the same key.
      {"groups", "g4@100 f0@90 f1@95 1@95 7@300", "4@100 4@100 0@90 1@95 7@300", "1@95 7@300 | 4@100 "},
      {"no group", "f0@90 7@300", "0@90 7@300", "7@300 | 0@90 "},
  };
  for (const auto& row : rows) {
    DeletedCase c{entries(row.entries)};
    c.fades.assign(row.fades, {.kind = FadeKind::kFadeIn, .length = 10});
    c.options.keep_fade_clips = row.keep_fade_clips;
    EXPECT_EQ(c.run(clips(row.clips)), row.expected) << row.what;
    EXPECT_EQ(c.counts.deleted, static_cast<int>(c.tracks[0].deleted.size())) << row.what;
    EXPECT_EQ(c.counts.fade_clips_dropped, row.dropped) << row.what;
  }
}

TEST(DeletedPlacements, StayersTakeMarksByTheirOwnKey) {
  DeletedCase c{entries("1@100k1 2@200k2 3@300 n1@100k2")};
  c.entries[0].color = 33;
  c.entries[1].locked = true;
  c.entries[2].color = 40;
  c.entries[3].color = 50;
  c.run(clips("1@100 2@200 3@310"));
  const auto& placed = c.tracks[0].clips;
  EXPECT_TRUE(placed[0].over_next && !placed[0].over_previous && placed[0].color == 33);
  EXPECT_TRUE(placed[1].over_previous && placed[1].locked && placed[1].color == -2);
  EXPECT_EQ(placed[2].color, -2) << "matched beside its entry, it takes nothing from it";
  EXPECT_EQ(c.counts.colored, 2);
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
      {"a fade-out where one ends", "0@100 1@1100", "n1@1600", true},
      {"where one begins", "0@100 1@1100", "n1@100", false},
      {"a crossfade where one ends and one begins", "0@100 1@1100", "n0@1100", true},
      {"where one begins only", "0@100 1@1100", "n0@100", false},
      {"a record not understood", "0@100 1@1100", "n3@100", false},
      {"outside the table", "0@100 1@1100", "n4@100", false},
      {"a deleted clip has no edges", "n0@100", "n2@100", false},
      {"before the sync point", "0@100", "n2@60", true, 40},
      {"the end counts from there", "0@100", "n1@1060", true, 40},
      {"groups have no sync point, and a length of their own", "g0@100", "n1@800", true, 40},
      {"an unknown group has none", "g1@100", "n1@800", false, 40},
      {"ticks: a clip of one beat ends, on the sample", "2@960000t", "n1@1920000t", true, 0, true},
      {"beside it", "2@960000t", "n1@1920100t", false, 0, true},
  };
  const std::vector<FadeRecord> fades = {
      {.kind = FadeKind::kCrossfade}, {.kind = FadeKind::kFadeOut}, {.kind = FadeKind::kFadeIn}, {}};
  std::vector<ClipRecord> clips(3);
  clips[0].length = 1000, clips[1].length = 500, clips[2].length = 24000;
  std::vector<ClipGroupRow> groups(1);
  groups[0].length = 700;
  groups[0].valid = true;
  for (const auto& row : rows) {
    std::vector<PlaylistRecord> playlists = {playlist_of(entries(row.others), "A", row.ticks)};
    playlists[0].entries.push_back(entries(row.candidate)[0]);
    mark_fades_on_clip_edges(playlists, fades, {clips, {row.sync, 0, 0}, groups, kClock});
    EXPECT_EQ(playlists[0].entries.back().fade, row.is_fade) << row.what;
  }
}

// ---- attaching fades ----

struct FadeCase {
  std::vector<OutputItem> items;
  std::vector<FadeRecord> fades;
  std::vector<PlaylistEntry> entries;
  bool ticks = false;
  Clock clock = {};
  FadeCounts counts = {};
  std::vector<TrackNode> tracks = std::vector<TrackNode>(1);

  const std::vector<OutputItem>& run() {
    tracks[0].playlist = 0;
    tracks[0].ticks = ticks;
    tracks[0].items = items;
    counts = attach_fades(tracks, {playlist_of(entries, "A", ticks)}, fades, clock);
    return tracks[0].items;
  }
};

TEST(Fades, BindWithinFiveMilliseconds) {
  for (const auto& [off, binds] : {std::pair{0, true}, {-192, true}, {239, true}, {240, false}, {-240, false}}) {
    // The clip starts at 0.25 s, where differences of 240 samples are exact.
    FadeCase c{{item_at(0.25, 1.0)},
               {{.kind = FadeKind::kFadeIn, .length = 480}},
               entries("f0@" + std::to_string(12000 + off))};
    EXPECT_EQ(c.run()[0].fade_in, binds ? 0.01 : 0.0) << off;
    EXPECT_EQ(c.counts.fade_ins, binds ? 1 : 0) << off;
    EXPECT_EQ(c.counts.unbound, binds ? 0 : 1) << off;
  }
}

TEST(Fades, WhatIsCountedOtherwise) {
  FadeCase c{
      {item_at(1.0, 1.0)},
      {{}, {.kind = FadeKind::kCrossfade, .length = 480, .s_curve = true}, {.kind = FadeKind::kFadeIn, .length = 1}},
      entries("f0@48000 f3@48000 f1@48000 f2@96000 n2@48000")};
  c.run();
  EXPECT_EQ(c.counts.not_understood, 2) << "kind 0, outside the table";
  EXPECT_EQ(c.counts.unbound, 2) << "a crossfade with one edge, a fade-in at an end";
  EXPECT_EQ(c.counts.s_curves, 1) << "S curves count before they bind";
}

TEST(Fades, CrossfadeExtendsBothClipsIfTheirMaterialLastsThatFar) {
  struct Row {
    double source_offset, before, length;  // of the right clip, seconds; of the fade, samples
    double left_length, right_position, fade_out, fade_in;
    FadeShape shape;
  };
  for (const Row& row : {Row{1.0, 4800, 14400, 2.2, 1.9, 0.3, 0.3, FadeShape::kCurved},
                         Row{0.05, 4800, 14400, 2.0, 2.0, 0.1, 0.2, FadeShape::kLinear},
                         Row{0.05, 4800, 4800, 2.0, 2.0, 0.1, 0.1, FadeShape::kLinear}}) {
    FadeCase c{{item_at(0.0, 2.0), item_at(2.0, 3.0, row.source_offset)},
               {{.kind = FadeKind::kCrossfade, .before = row.before, .length = row.length, .shape = 1}},
               entries("f0@96000")};
    const auto& items = c.run();
    EXPECT_DOUBLE_EQ(items[0].length, row.left_length);
    EXPECT_DOUBLE_EQ(items[0].fade_out, row.fade_out);
    EXPECT_EQ(items[0].fade_out_shape, row.shape);
    EXPECT_TRUE(items[0].crossfaded && !items[1].crossfaded);
    EXPECT_DOUBLE_EQ(items[1].position, row.right_position);
    EXPECT_DOUBLE_EQ(items[1].source_offset, row.source_offset - (2.0 - row.right_position));
    EXPECT_DOUBLE_EQ(items[1].length, 5.0 - row.right_position);
    EXPECT_DOUBLE_EQ(items[1].fade_in, row.fade_in);
    EXPECT_EQ(items[1].fade_in_shape, row.shape);
  }
}

TEST(Fades, TickBasedTracksConvertEveryValue) {
  FadeCase c{{item_at(0.0, 1.0), item_at(1.0, 1.0, 1.0)},
             {{.kind = FadeKind::kCrossfade, .before = 96000, .length = 288000}},
             entries("f0@1920000t"),
             true};
  c.clock.tempo.events = {{0, 120.0}, {1920000, 60.0}};  // slower from 1 s on
  const auto& items = c.run();
  EXPECT_DOUBLE_EQ(items[1].position, 1.0 - 0.05) << "at 120 BPM before the change";
  EXPECT_DOUBLE_EQ(items[0].fade_out, 0.3) << "all of it measured at 60 BPM from the position on";
}

// The rules read literally: every item is looked at for every fade.
std::vector<OutputItem> attach_slowly(std::vector<OutputItem> items, const FadeCase& c) {
  for (const PlaylistEntry& entry : c.entries) {
    const FadeRecord& fade = c.fades[entry.clip_or_fade_index];
    const double t = c.clock.of_samples(static_cast<double>(entry.position));
    const double pre = c.clock.of_samples(fade.before), length = c.clock.of_samples(fade.length);
    OutputItem *start = nullptr, *end = nullptr;
    double nearest_start = 0.005, nearest_end = 0.005;
    for (OutputItem& item : items) {
      const double from_start = std::abs(item.position - t), from_end = std::abs(item.position + item.length - t);
      if (from_start < nearest_start) start = &item, nearest_start = from_start;
      if (from_end < nearest_end) end = &item, nearest_end = from_end;
    }
    if (fade.kind == FadeKind::kFadeIn && start) start->fade_in = length;
    if (fade.kind == FadeKind::kFadeOut && end) end->fade_out = length;
    if (fade.kind != FadeKind::kCrossfade || !start || !end) continue;
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
    FadeCase c{{}, {}, {}};
    const unsigned span = 200 + below(6000);  // crowded: many edges within reach of one fade
    const unsigned count = 1 + below(40);
    for (unsigned i = 0; i < count; ++i)
      c.items.push_back(item_at(below(span) / 48000.0, below(span / 2) / 48000.0, below(400) / 48000.0));
    for (std::uint32_t i = 0; i < count; ++i) c.items[i].ordinal = i;
    sort_by_position(c.items);
    for (std::uint32_t i = 0; i < 60; ++i) {
      const double length = below(300);
      c.fades.push_back({.kind = static_cast<FadeKind>(1 + (below(3) == 0 ? below(3) : 0)),
                         .before = below(static_cast<unsigned>(length) + 1) * 1.0,
                         .length = length});
      c.entries.push_back(entries("f" + std::to_string(i) + "@" + std::to_string(below(span)))[0]);
    }
    const auto slow = attach_slowly(c.items, c);
    const auto& fast = c.run();
    ASSERT_EQ(fast.size(), slow.size());
    for (std::size_t i = 0; i < slow.size(); ++i) {
      const auto values = [](const OutputItem& item) {
        return std::tuple(item.ordinal, item.position, item.length, item.fade_in, item.fade_out);
      };
      ASSERT_EQ(values(fast[i]), values(slow[i])) << round;
    }
  }
}

// ---- the whole stage ----

// One track: clips 0, 1, ... of 48000 samples each, placed as the playlist's entries say.
struct Stage {
  explicit Stage(const std::string& text) {
    source.playlists = {playlist_of(entries(text))};
    for (const PlaylistEntry& entry : source.playlists[0].entries) {
      Placement& placement = source.placements.emplace_back();
      placement.clip = entry.clip_or_fade_index;
      placement.position40 = entry.position;
      placement.start = placement.raw_start = static_cast<std::uint32_t>(entry.position);
    }
    for (const char* name : {"one", "two", "three"}) {
      ClipRecord& clip = source.clips.emplace_back();
      clip.index = static_cast<std::uint16_t>(source.clips.size() - 1);
      clip.name = name;
      clip.length = 48000;
    }
  }
  ShapedClips shape() { return shape_clips(std::move(source), kClock, options); }

  ClipSource source;
  ConversionOptions options;
};

TEST(ClipShaping, GainGoesByNameAndOnlyToWhatStays) {
  Stage stage("0@0 1@48000 2@96000 n0@144000");
  stage.options.recover_deleted = true;
  stage.source.gain.entries = {{-6.0, {}}, {0.0, {{0, 0.0}, {4800, 3.0}}}};
  stage.source.gain.index_of = {{"one", 0}, {"two", 1}};
  const ShapedClips shaped = stage.shape();
  const auto& items = shaped.tracks.at(0).items;
  ASSERT_EQ(items.size(), 3u);
  EXPECT_TRUE(items[0].has_gain && items[0].gain_db == -6.0 && !items[0].gain_envelope);
  EXPECT_TRUE(items[1].has_gain && items[1].gain_envelope == &shaped.gain.entries[1].points);
  EXPECT_FALSE(items[2].has_gain);
  ASSERT_EQ(shaped.tracks[0].alternates.size(), 1u);
  EXPECT_FALSE(shaped.tracks[0].alternates[0].has_gain);
  EXPECT_EQ(shaped.tracks[0].alternates[0].ordinal, 3u);
  EXPECT_EQ(shaped.counts.gain.clips, 2);
}

}  // namespace
}  // namespace frt

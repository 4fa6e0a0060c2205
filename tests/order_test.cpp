// The strip rows decide the order of the tracks; no track is lost on the way.
#include "model/tracks/order.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace frt {
namespace {

constexpr std::uint32_t kAudio = 0x261b, kMaster = 0x261d, kVca = 0x261f, kMidi = 0x2620, kInstrument = 0x2621,
                        kVideo = 0x2623;

OutputTrack track_of(std::string name, std::string pt_name, double position = 0) {
  OutputTrack track;
  track.name = std::move(name);
  track.pt_name = std::move(pt_name);
  OutputItem item;
  item.position = position;
  track.items.push_back(std::move(item));
  return track;
}
OutputTrack track_of(const std::string& name) { return track_of(name, name); }

OutputTrack lane_of(const std::string& owner, const std::string& playlist) {
  OutputTrack track = track_of(owner + " [lane: " + playlist + "]", "");
  track.lane_parent = owner;
  track.lane_name = playlist;
  return track;
}

// A block of the session: mark, type, size, content type, content.
std::string block(std::uint16_t type, const std::string& content) {
  std::string bytes = {'Z', 1, 0};
  const auto size = static_cast<std::uint32_t>(content.size() + 2);
  for (int k = 0; k < 4; ++k) bytes.push_back(static_cast<char>(size >> (8 * k)));
  bytes.push_back(static_cast<char>(type & 0xff));
  bytes.push_back(static_cast<char>(type >> 8));
  return bytes + content;
}

// A track table entry whose size says that its last byte is an activity mark, ending with the two bytes given.
std::string table_entry(const std::string& name, char last_but_one, char last, std::size_t beyond_name = 72) {
  std::string content(2, '\0');
  content.push_back(static_cast<char>(name.size()));
  content.append(3, '\0').append(name);
  content.append(beyond_name - 2 - 6 - 2, '\x7f');
  content.push_back(last_but_one);
  content.push_back(last);
  return block(0x251a, content);
}

struct Session {
  std::vector<StripRow> rows;
  std::vector<OutputTrack> folded, midi;
  std::vector<DisplayRow> display_rows;
  std::vector<std::string_view> voice_off;
  std::vector<AudioFileEntry> audio_files;
  std::vector<ClickTest> click_tests;
  std::set<std::string, std::less<>> vca_masters;
  std::string bytes;
  ConversionOptions options;
  TrackMaps maps;
  RunCounters counters;
  Problem problem;

  StripRow& row(std::uint32_t type, std::string_view current, std::string_view original = {}) {
    StripRow& row = rows.emplace_back();
    row.content_type = type;
    row.current_name = current;
    row.original_name = original.empty() ? current : original;
    return row;
  }
  // Audio rows with the names given.
  void audio_rows(std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) row(kAudio, name);
  }
  void display_row(std::string_view name, std::uint16_t type) {
    DisplayRow& row = display_rows.emplace_back();
    row.name = name;
    row.row_type = type;
    row.has_track = type == 11;
  }
  std::vector<OutputTrack> order() {
    const SessionImage image(ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
    return order_tracks({image, rows, options, maps, std::move(folded), std::move(midi), display_rows, voice_off,
                         audio_files, vca_masters, click_tests},
                        counters, problem);
  }
};

std::string names(const std::vector<OutputTrack>& tracks) {
  std::string text;
  for (const OutputTrack& track : tracks) {
    if (!text.empty()) text += "; ";
    text += track.name;
    if (track.is_midi) text += " midi";
    if (track.items.empty()) text += " empty";
    for (const Lane& lane : track.lanes) text += " [" + lane.name + "]";
    if (track.inactive) text += " inactive";
    if (track.voice_off) text += " off";
  }
  return text;
}

TEST(Order, TracksFollowTheStripRowsWithAnEmptyOneForEachStripWithoutClips) {
  Session session;
  session.folded = {track_of("Vox"), track_of("Bass"), track_of("Drums")};
  session.midi = {track_of("Keys", ""), track_of("Synth")};
  session.vca_masters = {"VCA 1"};
  session.row(kAudio, "Drums");
  session.row(kMaster, "Master 1");
  session.row(kVca, "VCA 1");
  session.row(kVca, "VCA 2");  // links nothing
  session.row(kVideo, "Picture");
  session.row(kAudio, "Aux 1");
  session.row(kInstrument, "Keys");
  session.audio_rows({"", "Bass"});
  session.row(kMidi, "Bells");
  session.row(kMidi, "Synth");
  session.row(kAudio, "Vox");
  EXPECT_EQ(names(session.order()),
            "Drums; VCA 1 empty; Aux 1 empty; Keys midi; Bass; Bells midi empty; Synth midi; Vox");
  EXPECT_EQ(session.counters.empty_tracks, 2);
  EXPECT_EQ(session.counters.video_tracks, std::vector<std::string>{"Picture"});
  EXPECT_EQ(session.counters.unmatched_tracks, 0);
  EXPECT_EQ(session.problem.kind, "");
}

TEST(Order, ARenamedTrackIsFoundByItsOldNameUnlessAnotherTrackBearsItNow) {
  Session renamed;
  renamed.folded = {track_of("Audio 1")};
  renamed.row(kAudio, "Lead Vox", "Audio 1");
  EXPECT_EQ(names(renamed.order()), "Audio 1");

  Session taken;
  taken.folded = {track_of("Audio 1")};
  taken.row(kAudio, "Lead Vox", "Audio 1");
  taken.row(kAudio, "Audio 1", "Audio 2");
  EXPECT_EQ(names(taken.order()), "Lead Vox empty; Audio 1");

  Session nameless;
  nameless.folded = {track_of("Take [alt playlist]", "")};
  nameless.row(kAudio, "Vox").original_name = {};
  EXPECT_EQ(names(nameless.order()), "Vox empty; Take [alt playlist]");
}

TEST(Order, OtherLegsAndTakesComeWithTheirTrackThoughATakenOneStandsBetween) {
  Session session;
  session.folded = {track_of("Gtr [L]", "Gtr"),       track_of("Gtr [R]", "Gtr"), track_of("Vox"),
                    track_of("Gtr [alt takes]", ""),  track_of("Bass"),           track_of("Bass [alt takes]", ""),
                    track_of("Gtr 2 [alt takes]", "")};
  session.audio_rows({"Bass", "Vox", "Gtr"});
  EXPECT_EQ(names(session.order()),
            "Bass; Bass [alt takes]; Vox; Gtr [L]; Gtr [R]; Gtr [alt takes]; Gtr 2 [alt takes]");
  EXPECT_EQ(session.counters.unmatched_tracks, 1);
}

TEST(Order, TwoRowsOfOneNameShareTheTracksOfThatName) {
  Session apart;
  apart.folded = {track_of("Gtr"), track_of("Vox"), track_of("Gtr")};
  apart.audio_rows({"Gtr", "Gtr", "Vox"});
  EXPECT_EQ(names(apart.order()), "Gtr; Gtr; Vox");

  Session one;
  one.folded = {track_of("Gtr")};
  one.audio_rows({"Gtr", "Gtr"});
  EXPECT_EQ(names(one.order()), "Gtr; Gtr empty");
}

TEST(Order, ALaneWhoseOwnerHasNoClipsRidesOnTheEmptyTrack) {
  Session session;
  session.folded = {track_of("Bass"), lane_of("Vox", "Vox.01"), lane_of("Gone", "Gone.01")};
  session.audio_rows({"Vox", "Bass"});
  EXPECT_EQ(names(session.order()), "Vox empty [Vox.01]; Bass; Gone [lane: Gone.01]");
  EXPECT_EQ(session.counters.lanes, 1);
  EXPECT_EQ(session.counters.homeless_lanes_folded, 1);
  EXPECT_EQ(session.counters.unmatched_tracks, 1);
}

TEST(Order, WhatNoRowNamesIsAppendedAndReported) {
  Session session;
  session.folded = {track_of("Vox"), track_of("Old [alt playlist]", "")};
  session.midi = {track_of("Keys")};
  session.midi[0].is_midi = true;
  EXPECT_EQ(names(session.order()), "Vox; Old [alt playlist]; Keys midi");
  EXPECT_EQ(session.counters.unmatched_tracks, 2);
  EXPECT_EQ(session.problem.kind, "unmatched-tracks");
  EXPECT_EQ(session.problem.detail, "2 track(s) matched no strip row");
}

TEST(Order, FreezeRendersAreLeftOutAndTellTheirFiles) {
  Session session;
  const auto clip = [](std::uint16_t file) {
    std::string number = {static_cast<char>(file & 0xff), static_cast<char>(file >> 8)};
    return block(0x2629, std::string(4, '\0') + block(0x2628, "clip") + number);
  };
  session.bytes = std::string(20, '\0') + block(0x2632, clip(3) + clip(1)) + std::string(20, '\0');
  session.audio_files = {{"Audio Files/Synth-FZ.wav", 1}, {"other.wav", 2}};
  OutputTrack record = track_of("?", "?", 4.5);
  record.freeze_record = true;
  record.frozen_track = "Synth";
  record.items[0].clip_index = 1;
  record.items.push_back({});
  record.items[1].clip_index = 0;  // its file is not in the list
  record.items.push_back({});
  record.items[2].clip_index = 2;  // no such row
  session.folded = {track_of("Synth"), std::move(record)};
  session.row(kAudio, "Synth");
  EXPECT_EQ(names(session.order()), "Synth");
  EXPECT_EQ(session.counters.freeze_records, 1);
  const std::vector<std::pair<std::string, double>> renders = {{"Synth-FZ.wav", 4.5}, {"", 0.0}, {"", 0.0}};
  EXPECT_EQ(session.maps.freeze_renders.at("Synth"), renders);
  EXPECT_EQ(session.counters.unmatched_tracks, 0);
}

TEST(Order, BasicFoldersStandBeforeTheFirstTrackOfALaterRow) {
  Session session;
  session.folded = {track_of("Kick"), track_of("Vox")};
  session.audio_rows({"Kick", "Vox"});
  session.display_row("Drums", 11);
  session.display_row("Inner", 11);
  session.display_row("No track", 1);
  session.display_row("Kick", 1);
  session.display_row("Vox", 11);  // a track of that name is there
  session.display_row("Last", 11);
  EXPECT_EQ(names(session.order()), "Drums empty; Inner empty; Kick; Vox; Last empty");
  EXPECT_EQ(session.maps.width, (ByName<int>{{"Drums", 2}, {"Inner", 2}, {"Last", 2}}));
  EXPECT_EQ(session.counters.empty_tracks, 0);
}

TEST(Order, InactiveAndVoiceOffCountOnceANameAndNeverTouchAlternates) {
  Session session;
  session.folded = {track_of("Gtr [L]", "Gtr"), track_of("Gtr [R]", "Gtr"), track_of("Gtr [alt takes]", ""),
                    track_of("Old"), track_of("Vox")};
  session.row(kAudio, "Gtr").row_active = false;
  session.row(kAudio, "Renamed", "Old").row_active = false;
  session.row(kAudio, "Vox");
  session.voice_off = {"Vox", "Nobody", ""};
  EXPECT_EQ(names(session.order()), "Gtr [L] inactive; Gtr [R] inactive; Gtr [alt takes]; Old inactive; Vox off");
  EXPECT_EQ(session.counters.inactive_tracks, 2);
  EXPECT_EQ(session.counters.voice_off_tracks, 1);
}

// Read as a mark, the last byte of older sessions' entries would mute every track.
TEST(Order, OnlyAnEntryWithAnActivityMarkMakesATrackInactive) {
  const struct {
    const char* what;
    std::string bytes;
    bool inactive;
  } cases[] = {
      {"marked inactive", table_entry("Vox", 1, 0), true},
      {"marked active", table_entry("Vox", 1, 1), false},
      {"a track colour", table_entry("Vox", 25, 0), false},
      {"the last track colour", table_entry("Vox", 95, 0), false},
      {"no colour: a multiple of 24", table_entry("Vox", 48, 0), true},
      {"below the palette", table_entry("Vox", 24, 0), true},
      {"another size", table_entry("Vox", 1, 0, 62), false},
      {"another name", table_entry("Bass", 1, 0), false},
  };
  for (const auto& c : cases) {
    Session session;
    session.bytes = std::string(20, '\0') + c.bytes + std::string(20, '\0');
    session.row(kAudio, "Vox");
    EXPECT_EQ(names(session.order()), c.inactive ? "Vox empty inactive" : "Vox empty") << c.what;
  }
}

TEST(Order, OnlyNoClickLeavesOutEmptyClickTracksAndNamesTheOthers) {
  Session session;
  session.options.no_click = true;
  session.folded = {track_of("Click")};
  session.midi = {track_of("Click 3")};
  for (const char* name : {"Click", "Click 2"}) session.row(kAudio, name);
  session.row(kMidi, "Click 3");
  session.row(kInstrument, "Click 4");
  session.row(kAudio, "Tempo");
  session.click_tests = {{true, false}, {true, false}, {true, false}, {true, true}, {false, true}};
  EXPECT_EQ(names(session.order()), "Click; Click 3 midi; Tempo empty");
  EXPECT_EQ(session.counters.click_left_out, 2);
  EXPECT_EQ(session.counters.click_left_out_names, (std::vector<std::string>{"Click 2", "Click 4"}));
  EXPECT_EQ(session.counters.click_kept, (std::vector<std::string>{"Click", "Click 3", "Tempo"}));
  EXPECT_EQ(session.counters.empty_tracks, 1);

  Session kept;
  kept.audio_rows({"Click"});
  kept.click_tests = {{true, true}};
  EXPECT_EQ(names(kept.order()), "Click empty");
  EXPECT_TRUE(kept.counters.click_kept.empty());
}

// Rows in the opposite order of the folded list leave ever longer taken stretches behind each hit.
TEST(Order, ManyTracksInReverseOrderAreFoundWithoutWalkingThemAgain) {
  Session session;
  constexpr int kTracks = 50000;
  std::vector<std::string> track_names;
  for (int i = 0; i < kTracks; ++i) track_names.push_back("Track " + std::to_string(i));
  for (const std::string& name : track_names) session.folded.push_back(track_of(name));
  for (int i = kTracks; i-- > 0;) session.row(kAudio, track_names[static_cast<std::size_t>(i)]);
  const auto tracks = session.order();
  ASSERT_EQ(tracks.size(), static_cast<std::size_t>(kTracks));
  EXPECT_EQ(tracks.front().name, track_names.back());
  EXPECT_EQ(session.counters.unmatched_tracks, 0);
}

}  // namespace
}  // namespace frt

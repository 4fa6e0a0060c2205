// The strip rows decide the order of the tracks; no track is lost on the way.
#include "model/tracks/order.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace frt {
namespace {

OutputTrack track_of(std::string name, std::string pt_name) {
  OutputTrack track;
  track.name = std::move(name);
  track.pt_name = std::move(pt_name);
  track.items.resize(1);
  return track;
}
OutputTrack track_of(const std::string& name) { return track_of(name, name); }

OutputTrack lane_of(const std::string& owner, const std::string& playlist) {
  OutputTrack track = track_of(owner + " [lane: " + playlist + "]", "");
  track.lane_parent = owner;
  track.lane_name = playlist;
  return track;
}

struct Session {
  std::vector<StripRow> rows = {};
  ConversionOptions options = {};
  OrderInput input{.rows = rows, .options = options};
  OrderedTracks ordered = {};

  Session() = default;
  explicit Session(std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) row(name);
  }
  StripRow& row(std::string_view current, StripKind kind = StripKind::kAudio) {
    StripRow& row = rows.emplace_back();
    row.kind = kind;
    row.current_name = row.original_name = current;
    return row;
  }
  std::string order() {
    ordered = order_tracks(std::move(input));
    std::string text;
    for (const OutputTrack& track : ordered.tracks) {
      text += (text.empty() ? "" : "; ") + track.name;
      if (track.is_midi) text += " midi";
      if (track.items.empty()) text += " empty";
      for (const Lane& lane : track.lanes) text += " [" + lane.name + "]";
      if (track.inactive) text += " inactive";
      if (track.voice_off) text += " off";
    }
    return text;
  }
};

TEST(Order, ARenamedTrackIsFoundByItsOldNameUnlessAnotherTrackBearsItNow) {
  for (const bool taken : {false, true}) {
    Session session{"Lead Vox"};
    session.rows[0].original_name = "Audio 1";
    if (taken) session.row("Audio 1").original_name = "Audio 2";
    session.input.folded = {track_of("Audio 1")};
    EXPECT_EQ(session.order(), taken ? "Lead Vox empty; Audio 1" : "Audio 1");
  }
}

TEST(Order, OtherLegsAndTakesComeWithTheirTrackThoughATakenOneStandsBetween) {
  Session session{"Bass", "Vox", "Gtr"};
  session.input.folded = {
      track_of("Gtr [L]", "Gtr"),       track_of("Gtr [R]", "Gtr"), track_of("Vox"),
      track_of("Gtr [alt takes]", ""),  track_of("Bass"),           track_of("Bass [alt takes]", ""),
      track_of("Gtr 2 [alt takes]", "")};
  EXPECT_EQ(session.order(), "Bass; Bass [alt takes]; Vox; Gtr [L]; Gtr [R]; Gtr [alt takes]; Gtr 2 [alt takes]");
  EXPECT_EQ(session.ordered.counts.unmatched_tracks, 1);
}

TEST(Order, TwoRowsOfOneNameShareTheTracksOfThatName) {
  Session apart{"Gtr", "Gtr", "Vox"};
  apart.input.folded = {track_of("Gtr"), track_of("Vox"), track_of("Gtr")};
  EXPECT_EQ(apart.order(), "Gtr; Gtr; Vox");

  Session one{"Gtr", "Gtr"};
  one.input.folded = {track_of("Gtr")};
  EXPECT_EQ(one.order(), "Gtr; Gtr empty");
}

TEST(Order, WhatNoRowNamesIsAppendedAndCountedButForOrphans) {
  Session session{"Vox", "Bass"};
  session.input.folded = {track_of("Bass"), lane_of("Vox", "Vox.01"), lane_of("Gone", "Gone.01"), track_of("Old", "")};
  session.input.folded[3].orphan_playlist = true;
  session.input.midi = {track_of("Keys")};
  EXPECT_EQ(session.order(), "Vox empty [Vox.01]; Bass; Gone [lane: Gone.01]; Old; Keys");
  EXPECT_EQ(session.ordered.counts.homeless_lanes, 1);
  EXPECT_EQ(session.ordered.counts.unmatched_tracks, 2);
}

TEST(Order, FreezeRendersAreLeftOutAndTellTheirFiles) {
  Session session{"Synth"};
  const std::optional<std::uint16_t> files[] = {3, 1, std::nullopt};  // 3 isn't in the list
  const AudioFileEntry listed[] = {{"Audio Files/Synth-FZ.wav", 1}, {"other.wav", 2}};
  session.input.freeze_files = files;
  session.input.audio_files = listed;
  OutputTrack record = track_of("?");
  record.freeze_record = true;
  record.frozen_track = "Synth";
  for (const std::uint32_t clip : {1u, 0u, 2u, 9u}) {
    record.items.back().clip_index = clip;
    record.items.back().position = 4.5;
    record.items.emplace_back();
  }
  record.items.pop_back();
  session.input.folded = {track_of("Synth"), std::move(record)};
  EXPECT_EQ(session.order(), "Synth");
  EXPECT_EQ(session.ordered.counts.unmatched_tracks, 0);
  const std::vector<std::pair<std::string, double>> renders = {{"Synth-FZ.wav", 4.5}, {"", 4.5}, {"", 4.5}, {"", 4.5}};
  EXPECT_EQ(session.ordered.freeze_renders.at("Synth"), renders);
}

TEST(Order, InactiveAndVoiceOffCountOnceANameAndNeverTouchAlternates) {
  Session session{"Gtr", "Renamed", "Vox", "Marked"};
  session.input.folded = {track_of("Gtr [L]", "Gtr"), track_of("Gtr [R]", "Gtr"), track_of("Gtr [alt takes]", ""),
                          track_of("Old"), track_of("Vox")};
  session.rows[0].row_active = session.rows[1].row_active = false;
  session.rows[1].original_name = "Old";
  const std::string_view voice_off[] = {"Vox", "Nobody", ""}, marked[] = {"Marked", ""};
  session.input.voice_off_names = voice_off;
  session.input.inactive_names = marked;
  EXPECT_EQ(session.order(),
            "Gtr [L] inactive; Gtr [R] inactive; Gtr [alt takes]; Old inactive; Vox off; Marked empty inactive");
  EXPECT_EQ(session.ordered.counts.inactive_tracks, 3);
  EXPECT_EQ(session.ordered.counts.voice_off_tracks, 1);
}

TEST(Order, OnlyNoClickLeavesOutEmptyClickTracksAndOnlyVcasThatLinkSomethingStand) {
  for (const bool no_click : {true, false}) {
    Session session{"Click", "Click 2"};
    session.options.no_click = no_click;
    session.input.folded = {track_of("Click")};
    session.input.midi = {track_of("Click 3")};
    session.input.vca_masters = {"VCA 1"};
    session.row("Click 3", StripKind::kMidi);
    session.row("Click 4", StripKind::kInstrument);
    session.row("Tempo");
    session.row("VCA 1", StripKind::kVca);
    session.row("VCA 2", StripKind::kVca);  // links nothing
    session.input.click_tests = {{true, false}, {true, false}, {true, false}, {true, true}, {false, true}, {}, {}};
    const std::string tracks = session.order();
    const OrderCounts& counts = session.ordered.counts;
    using Names = std::vector<std::string>;
    EXPECT_EQ(counts.click_left_out_names, no_click ? (Names{"Click 2", "Click 4"}) : Names{});
    EXPECT_EQ(counts.click_kept, no_click ? (Names{"Click", "Click 3", "Tempo"}) : Names{});
    EXPECT_EQ(tracks, no_click ? "Click; Click 3 midi; Tempo empty; VCA 1 empty"
                               : "Click; Click 2 empty; Click 3 midi; Click 4 midi empty; Tempo empty; VCA 1 empty");
  }
}

// Rows in the opposite order of the folded list leave ever longer taken stretches behind each hit.
TEST(Order, ManyTracksInReverseOrderAreFoundWithoutWalkingThemAgain) {
  std::vector<std::string> names;
  for (int i = 0; i < 50000; ++i) names.push_back("Track " + std::to_string(i));
  Session session;
  for (const std::string& name : names) session.input.folded.push_back(track_of(name));
  for (auto name = names.rbegin(); name != names.rend(); ++name) session.row(*name);
  session.order();
  EXPECT_EQ(session.ordered.tracks.front().name, names.back());
  EXPECT_EQ(session.ordered.counts.unmatched_tracks, 0);
}

}  // namespace
}  // namespace frt

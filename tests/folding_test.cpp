// Per-leg track lists in, the tracks of the mix out.
#include "model/tracks/folding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"

namespace frt {
namespace {

OutputItem item_at(double position, std::string_view file = "a.wav", double length = 1.0) {
  OutputItem item;
  item.position = position;
  item.length = length;
  item.file_name = file;
  return item;
}

struct Session {
  std::vector<TrackNode> nodes;
  std::vector<std::string_view> strips;
  ByName<std::size_t> owners;
  ConversionOptions options;
  TrackMaps maps;
  RunCounters counters;

  // A track whose playlist record bears its name.
  TrackNode& track(std::string_view name, std::vector<OutputItem> items) {
    TrackNode node;
    node.track_index = static_cast<std::uint16_t>(nodes.size());
    node.name = node.record_name = name;
    node.items = std::move(items);
    nodes.push_back(std::move(node));
    return nodes.back();
  }
  std::vector<OutputTrack> fold() { return fold_tracks(std::move(nodes), strips, owners, options, maps, counters); }
};

// One track a word: name(pt_name), forced pan, its items as position and side, lanes in brackets.
std::string dump(const std::vector<OutputTrack>& tracks) {
  std::string text;
  for (const OutputTrack& track : tracks) {
    if (!text.empty()) text += "; ";
    text += track.name + "(" + track.pt_name + ")";
    if (track.forced_pan < 0) text += " left";
    if (track.forced_pan > 0) text += " right";
    if (track.freeze_record) text += " freeze:" + track.frozen_track;
    if (track.alt_takes) text += " takes:" + track.alt_parent;
    for (const OutputItem& item : track.items) {
      text += format_text(" %g%s", item.position, item.pan_side < 0 ? "L" : item.pan_side > 0 ? "R" : "");
    }
    for (const Lane& lane : track.lanes) text += " [" + lane.name + format_text(":%zu]", lane.items.size());
    if (!track.lane_parent.empty()) text += " in " + track.lane_parent;
  }
  return text;
}

TEST(Folding, OnlyNeighboursOfOneNameBecomeAStereoTrackWhateverTheirClips) {
  Session session;
  session.strips = {"Gtr", "Vox"};
  session.track("Gtr", {item_at(0, "l.wav"), item_at(2, "l.wav")}).ticks = true;
  session.track("Gtr", {item_at(0, "r.wav"), item_at(1, "other.wav")});
  session.track("Vox", {item_at(5)});
  EXPECT_EQ(dump(session.fold()), "Gtr(Gtr) 0L 0R 1R 2L; Vox(Vox) 5");
  EXPECT_EQ(session.counters.stereo_merges, 1);
  EXPECT_EQ(session.maps.width, (ByName<int>{{"Gtr", 2}, {"Vox", 1}}));
  EXPECT_EQ(session.maps.timebase, (ByName<int>{{"Gtr", 2}, {"Vox", 0}}));  // the first leg decides
  EXPECT_TRUE(session.maps.surround_legs.empty());

  Session apart;
  apart.strips = {"Gtr", "Vox"};
  for (const char* name : {"Gtr", "Vox", "Gtr"}) apart.track(name, {item_at(0)});
  EXPECT_EQ(dump(apart.fold()), "Gtr(Gtr) 0; Vox(Vox) 0; Gtr(Gtr) 0");
}

TEST(Folding, SurroundLegsFoldOnlyWhenTheyHoldTheSameClips) {
  const struct {
    const char* what;
    std::size_t legs;
    std::size_t odd_leg;  // this one differs by `odd`
    OutputItem odd;
    bool folds;
  } cases[] = {
      {"three alike", 3, 0, item_at(1, "m.wav"), true},
      {"eight alike", 8, 0, item_at(1, "m.wav"), true},
      {"nine never", 9, 0, item_at(1, "m.wav"), false},
      {"another file", 6, 5, item_at(1, "n.wav"), false},
      {"letter case counts", 6, 5, item_at(1, "M.wav"), false},
      {"a hair later", 6, 2, item_at(1 + 0.5e-9, "m.wav"), true},
      {"later", 6, 2, item_at(1 + 1e-8, "m.wav"), false},
      {"longer", 6, 2, item_at(1, "m.wav", 1 + 1e-8), false},
  };
  for (const auto& c : cases) {
    Session session;
    session.strips = {"Pad"};
    for (std::size_t leg = 0; leg < c.legs; ++leg) {
      session.track("Pad", {leg == c.odd_leg ? c.odd : item_at(1, "m.wav")});
    }
    const auto tracks = session.fold();
    EXPECT_EQ(tracks.size(), c.folds ? 1u : c.legs) << c.what;
    EXPECT_EQ(session.counters.surround_folds, c.folds ? 1 : 0) << c.what;
    EXPECT_EQ(session.maps.width.at("Pad"), static_cast<int>(c.legs)) << c.what;
    EXPECT_EQ(session.maps.surround_legs.contains("Pad"), c.folds) << c.what;
    EXPECT_EQ(tracks[0].items[0].pan_side, 0.0) << c.what;
  }
  Session empty;
  empty.strips = {"Pad"};
  for (int leg = 0; leg < 4; ++leg) empty.track("Pad", {});
  EXPECT_EQ(empty.fold().size(), 4u);
}

TEST(Folding, AlternatePlaylistsBecomeLanesOfTheirOwnerWhereverTheyStandOrWaitAtTheEnd) {
  Session session;
  session.strips = {"Vox", "Bass"};
  session.owners = {{"Vox.01", 0}, {"Vox.02", 0}, {"Bass.01", 1}, {"Old", 7}};
  session.track("Vox.02", {item_at(9)});
  session.track("Bass.01", {item_at(5)});  // its owner has no clips
  session.track("Vox", {item_at(0)});
  session.track("Vox.01", {item_at(1), item_at(2)});
  session.track("Old", {item_at(3)});   // its owner's number is none of the table
  session.track("Lost", {item_at(4)});  // no owner at all
  EXPECT_EQ(dump(session.fold()),
            "Vox(Vox) 0 [Vox.02:1] [Vox.01:2]; Old [alt playlist]() 3; Lost [alt playlist]() 4; Bass [lane: Bass.01]() "
            "5 in Bass");
  EXPECT_EQ(session.counters.alternate_playlists, 5);
  EXPECT_EQ(session.counters.owner_matches, 3);
  EXPECT_EQ(session.counters.lanes, 2);
  EXPECT_EQ(session.maps.width, (ByName<int>{{"Vox", 1}}));
}

TEST(Folding, OnlyARecordsNameInASessionWithATrackTableMakesAnAlternate) {
  Session unpaired;
  unpaired.strips = {"Vox"};
  unpaired.track("Take", {item_at(0)}).record_name = {};
  EXPECT_EQ(dump(unpaired.fold()), "Take(Take) 0");

  Session without_table;
  without_table.track("Take", {item_at(0)});
  EXPECT_EQ(dump(without_table.fold()), "Take(Take) 0");
}

TEST(Folding, APairWithAnAlternateInItStaysTwoTracksEachOnItsSide) {
  Session session;
  session.strips = {"Other"};
  session.track("Gtr", {item_at(0)});
  session.track("Gtr", {item_at(1)}).record_name = {};
  EXPECT_EQ(dump(session.fold()), "Gtr [alt playlist] [L]() left 0; Gtr [R](Gtr) right 1");
  EXPECT_EQ(session.maps.width, (ByName<int>{{"Gtr", 2}}));
}

TEST(Folding, DroppedAlternatesLeaveNothingButTheirCount) {
  Session session;
  session.strips = {"Vox"};
  session.owners = {{"Vox.01", 0}};
  session.options.keep_alt_takes = false;
  session.options.recover_deleted = true;
  session.track("Vox", {item_at(0)});
  session.track("Vox.01", {item_at(1)}).alternates = {item_at(3)};
  session.track("?", {item_at(2)});  // a freeze render stays, though no track bears its name
  EXPECT_EQ(dump(session.fold()), "Vox(Vox) 0; ? [alt playlist]() freeze:Vox.01 2");
  EXPECT_EQ(session.counters.alternate_playlists, 2);
}

TEST(Folding, FreezeRendersBelongToTheNamedTrackAboveThem) {
  Session session;
  const auto render = [&](double position) { session.track("?", {item_at(position)}).record_name = {}; };
  session.strips = {"Synth", "Keys"};
  render(0);
  session.track("Synth", {item_at(1)});
  render(2);
  render(3);
  session.track("Keys", {item_at(4)});
  render(5);
  EXPECT_EQ(dump(session.fold()),
            "?(?) freeze: 0; Synth(Synth) 1; ?(?) freeze:Synth 2L 3R; Keys(Keys) 4; ?(?) freeze:Keys 5");
}

TEST(Folding, RecoveredPlacementsFollowTheirTrackIfAskedFor) {
  Session session;
  session.strips = {"Gtr", "Vox"};
  session.owners = {{"Vox.01", 1}};
  session.options.recover_deleted = true;
  session.track("Gtr", {item_at(0)});
  session.track("Gtr", {item_at(0)}).alternates = {item_at(7), item_at(6)};
  session.track("Vox", {item_at(1)}).alternates = {item_at(9), item_at(8)};
  session.track("Vox.01", {item_at(2)}).alternates = {item_at(5)};
  EXPECT_EQ(dump(session.fold()),
            "Gtr(Gtr) 0L 0R; Gtr [alt takes]() takes: 6R 7R; "
            "Vox(Vox) 1 [Vox.01:1]; Vox [lane: Vox.01] [alt takes]() takes:Vox 5; Vox [alt takes]() takes: 9 8");

  Session unasked;
  unasked.strips = {"Vox"};
  unasked.track("Vox", {item_at(1)}).alternates = {item_at(9)};
  EXPECT_EQ(dump(unasked.fold()), "Vox(Vox) 1");
}

}  // namespace
}  // namespace frt

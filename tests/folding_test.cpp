// Per-leg track lists in, the tracks of the mix out.
#include "model/tracks/folding.h"

#include <gtest/gtest.h>

#include <string>
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
  std::vector<std::string_view> strips;
  ByName<std::size_t> owners = {};
  std::vector<TrackNode> nodes = {};
  FoldedTracks folded = {};

  // A track whose playlist record bears its name.
  TrackNode& track(std::string_view name, std::vector<OutputItem> items) {
    TrackNode& node = nodes.emplace_back();
    node.track_index = static_cast<std::uint16_t>(nodes.size() - 1);
    node.name = node.record_name = name;
    node.items = std::move(items);
    return node;
  }
  // One track a word: name(pt_name), forced pan, its items as position and side, lanes in brackets.
  std::string fold() {
    folded = fold_tracks(std::move(nodes), strips, owners, {});
    std::string text;
    for (const OutputTrack& track : folded.tracks) {
      text += (text.empty() ? "" : "; ") + track.name + "(" + track.pt_name + ")";
      if (track.is_leg()) text += track.forced_pan < 0 ? " left" : " right";
      if (track.orphan_playlist) text += " orphan";
      for (const OutputItem& item : track.items) {
        text += format_text(" %g%s", item.position, item.pan_side < 0 ? "L" : item.pan_side > 0 ? "R" : "");
      }
      for (const Lane& lane : track.lanes) text += " [" + lane.name + format_text(":%zu]", lane.items.size());
      if (!track.lane_parent.empty()) text += " in " + track.lane_parent;
    }
    return text;
  }
};

TEST(Folding, OnlyNeighboursOfOneNameBecomeAStereoTrackByTheFirstLegsTimebase) {
  Session session{{"Gtr"}};
  session.track("Gtr", {item_at(0), item_at(2)}).ticks = true;
  session.track("Gtr", {item_at(0, "r.wav"), item_at(1, "other.wav")});
  EXPECT_EQ(session.fold(), "Gtr(Gtr) 0L 0R 1R 2L");
  EXPECT_EQ(session.folded.facts.timebase.at("Gtr"), Timebase::kBeatsPosition);

  Session apart{{"Gtr", "Vox"}};
  for (const char* name : {"Gtr", "Vox", "Gtr"}) apart.track(name, {item_at(0)});
  EXPECT_EQ(apart.fold(), "Gtr(Gtr) 0; Vox(Vox) 0; Gtr(Gtr) 0");
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
      {"letter case counts", 6, 5, item_at(1, "M.wav"), false},
      {"a hair later", 6, 2, item_at(1 + 0.5e-9, "m.wav"), true},
      {"later", 6, 2, item_at(1 + 1e-8, "m.wav"), false},
      {"longer", 6, 2, item_at(1, "m.wav", 1 + 1e-8), false},
  };
  for (const auto& c : cases) {
    Session session{{"Pad"}};
    for (std::size_t leg = 0; leg < c.legs; ++leg)
      session.track("Pad", {leg == c.odd_leg ? c.odd : item_at(1, "m.wav")});
    session.fold();
    EXPECT_EQ(session.folded.tracks.size(), c.folds ? 1u : c.legs) << c.what;
    EXPECT_EQ(session.folded.facts.width.at("Pad"), static_cast<int>(c.legs)) << c.what;
    EXPECT_EQ(session.folded.facts.surround_legs.contains("Pad"), c.folds) << c.what;
    EXPECT_EQ(session.folded.tracks[0].items[0].pan_side, 0.0) << c.what;
  }
}

TEST(Folding, AlternatePlaylistsBecomeLanesOfTheirOwnerWhereverTheyStandOrWaitAtTheEnd) {
  Session session{{"Vox", "Bass"}, {{"Vox.01", 0}, {"Vox.02", 0}, {"Bass.01", 1}, {"Old", 7}}};
  session.track("Vox.02", {item_at(9)});
  session.track("Bass.01", {item_at(5)});  // its owner has no clips
  session.track("Vox", {item_at(0)});
  session.track("Vox.01", {item_at(1), item_at(2)});
  session.track("Old", {item_at(3)});   // its owner's number is none of the table
  session.track("Lost", {item_at(4)});  // no owner at all
  EXPECT_EQ(session.fold(),
            "Vox(Vox) 0 [Vox.02:1] [Vox.01:2]; Old [alt playlist]() orphan 3; Lost [alt playlist]() orphan 4; "
            "Bass [lane: Bass.01]() 5 in Bass");
}

TEST(Folding, OnlyARecordsNameInASessionWithATrackTableMakesAnAlternate) {
  Session unpaired{{"Vox"}};
  unpaired.track("Take", {item_at(0)}).record_name = {};
  EXPECT_EQ(unpaired.fold(), "Take(Take) 0");

  Session without_table;
  without_table.track("Take", {item_at(0)});
  EXPECT_EQ(without_table.fold(), "Take(Take) 0");
}

TEST(Folding, APairWithAnAlternateInItStaysTwoTracksEachOnItsSide) {
  Session session{{"Other"}};
  session.track("Gtr", {item_at(0)});
  session.track("Gtr", {item_at(1)}).record_name = {};
  EXPECT_EQ(session.fold(), "Gtr [alt playlist] [L]() left orphan 0; Gtr [R](Gtr) right 1");
}

}  // namespace
}  // namespace frt

// The readers of routes: I/O paths, what rows tell of outputs, sends and inputs, leg routes, one-sided outputs, and the
// states of MIDI tracks.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::tables_of;
using Channels = std::vector<unsigned>;

constexpr std::uint16_t kAudio = 0x261b, kMaster = 0x261d, kMidi = 0x2620, kInstrument = 0x2621;

struct Path {
  std::string name;
  unsigned kind = 2;
  std::uint32_t id = 1;
  Channels channels = {1, 2};
};

void path(BlockWriter& w, const Path& p) {
  w.open(0x1021).u8(p.kind).u8(1).text(p.name).u32(static_cast<std::uint32_t>(p.channels.size()));
  for (const unsigned channel : p.channels) w.u16(channel);
  w.u16(0xffff).u32(42).u32(p.id).u32(7).close();
}

void level(BlockWriter& w, int fader = -60, unsigned flag = 1, std::size_t size = 157) {
  w.open(0x1029).u8(flag).i32(fader).zeros(size - 7).close();
}

void lane(BlockWriter& w, int initial, const std::vector<int>& values = {}) {
  w.open(0x260a).zeros(16).u16(static_cast<unsigned>(values.size())).zeros(8).i16(initial);
  for (const int value : values) w.u32(48000).i16(value);
  w.zeros(2).close();
}

// A mix that plays to `target`; nullptr for a mix without a slot.
void mix(
    BlockWriter& w, const char* target, const std::function<void()>& rest = [] {}) {
  w.open(0x260d);
  level(w);
  if (target) w.open(0x260e).u16(0).text(target).close();
  rest();
  w.close();
}

BlockWriter& open_row(BlockWriter& w, std::string_view name, std::uint16_t type = kAudio, unsigned width = 0) {
  return w.open(type).open(0x102d).open(0x2619).text(name).close().close().u8(width);
}

void input(BlockWriter& w, std::string_view bus, std::uint32_t id, unsigned kind = 2) {
  w.text(bus).u32(0).u32(42).u32(id).u32(7).u8(0).u8(kind).u16(0);
}

TEST(Routes, APathIsOneIfItReadsToItsIds) {
  BlockWriter w;
  path(w, {"Stereo", 2, 1, {3, 4}});
  path(w, {"Stereo", 2, 1, {3, 4}});  // once is enough
  path(w, {"Stereo", 2, 2, {3, 4}});
  path(w, {std::string(80, 'n'), 6, 3, Channels(16, 9)});
  path(w, {"", 2, 4});
  path(w, {std::string(81, 'n'), 2, 5});
  path(w, {"17 channels", 2, 6, Channels(17, 1)});
  path(w, {"bad\x01text", 2, 7});
  w.open(0x1021).u8(2).u8(1).text("no ids").u32(1).u16(1).u16(0).u32(42).u32(8).zeros(3).close();
  w.open(0x1021).u8(9).u8(1).text("no channel").u32(0).u32(42).u32(9).u32(7).close();
  // A path in a path takes the mark that stands behind its own channels.
  w.open(0x1021).u8(2).u8(1).text("outer").u32(0).zeros(30);
  path(w, {"inner", 2, 10, {}});
  w.close();
  std::string wide = "2: \"" + std::string(80, 'n') + "\" kind=6 ids=3/7";
  for (int i = 0; i < 16; ++i) wide += " 9";
  EXPECT_EQ(tables_of(w).rows("routes"),
            "0: \"Stereo\" kind=2 ids=1/7 3 4\n1: \"Stereo\" kind=2 ids=2/7 3 4\n" + wide +
                "\n3: \"no channel\" kind=9 ids=9/7\n4: \"outer\" kind=2 ids=a/7\n5: \"inner\" kind=2 ids=a/7");
}

TEST(Routing, TheFirstMixIsTheOutputAndEachLaterOneASend) {
  BlockWriter w;
  open_row(w, "Plain");
  mix(w, "Out 1-2");
  mix(w, "Verb");
  mix(w, "");       // to nobody
  mix(w, nullptr);  // without a slot
  w.close();
  open_row(w, "No output", kInstrument);
  mix(w, nullptr);
  w.close();
  open_row(w, "Output unread");
  w.open(0x260d);
  level(w, 126);
  w.open(0x260e).u16(0).text("Out").close().close();
  for (const auto& [fader, flag, size] :
       {std::tuple{-1450, 0U, 157U}, {125, 1U, 157U}, {-1451, 1U, 157U}, {0, 2U, 157U}, {0, 1U, 156U}}) {
    w.open(0x260d);
    level(w, fader, flag, size);
    // What isn't text is passed over, and so is a text that ends behind the slot.
    w.open(0x260e).u16(0).text("\x01").u32(8).text("Bus").close().zeros(20).close();
  }
  w.close();
  w.open(kAudio).u16(0).close();  // no name
  open_row(w, "", kAudio).close();
  w.open(kMaster).open(kAudio).open(0x2619).text("Inside a master").close().close().close();
  EXPECT_EQ(tables_of(w).rows("routing"), R"(0: "Plain" output="Out 1-2" | send "Verb" -6 dB post
1: "No output" no-output
2: "Output unread" | send "Bus" -145 dB | send "Bus" 12.5 dB post)");
}

TEST(Routing, ARowWithAnEmptyNameBearsTheTrackTablesAndIsShownByItsStripsName) {
  BlockWriter w;
  for (const char* name : {"Kick", "Snare", "Keys"}) w.open(0x251a).u16(0).text(name).zeros(40).close();
  open_row(w, "");
  mix(w, "A");
  w.close();
  open_row(w, "Old name");
  mix(w, "B");
  w.close();
  w.open(kInstrument).u16(0).close();  // without a name block there is nothing to name it by
  EXPECT_EQ(tables_of(w).rows("routing"), R"(0: "Kick" output="A"
1: "Old name" display="Snare" output="B")");
}

TEST(Routing, TheInputIsTheFirstTextBeforeIdsOfAPathOutsideTheMixes) {
  BlockWriter w;
  path(w, {"Bus", 2, 5});
  const auto row = [&](std::string_view name, const std::function<void()>& content) {
    open_row(w, name);
    content();
    w.close();
  };
  row("takes it", [&] { w.zeros(3), input(w, "Renamed", 5), input(w, "Bus", 5); });
  row("behind a mix", [&] { mix(w, "Out", [&] { input(w, "in the mix", 5); }), input(w, "Bus", 5); });
  row("another kind", [&] { input(w, "Bus", 5, 3); });
  row("other ids", [&] { input(w, "Bus", 6); });
  row("no zero", [&] { w.text("Bus").u32(1).u32(42).u32(5).u32(7).u8(0).u8(2).u16(0); });
  row("last byte", [&] { w.text("Bus").u32(0).u32(42).u32(5).u32(7).u8(0).u8(2).u8(0).u8(1); });
  row("one byte short", [&] { w.text("Bus").u32(0).u32(42).u32(5).u32(7).u8(0).u8(2).u8(0); });
  w.u8(0);
  EXPECT_EQ(tables_of(w).rows("routing"), R"(0: "takes it" input="Renamed" kind=2 ids=5/7
1: "behind a mix" output="Out" input="Bus" kind=2 ids=5/7
2: "another kind"
3: "other ids"
4: "no zero"
5: "last byte"
6: "one byte short")");
}

TEST(SendLanes, GroupsTellVolumeMuteAndPans) {
  struct Case {
    unsigned width;
    std::vector<int> free;
    std::vector<std::vector<int>> groups;
    const char* send;
  };
  const Case cases[] = {
      // By place.
      {0, {1}, {}, " | volume 1"},
      {0, {1, 0, -30}, {}, " pans=1 left=-30 | volume 1 | pan -30"},
      {1, {1, 1, -100, 90, 5}, {}, " pans=2 left=-100 right=90 | volume 1 | mute 1 | pan -100 | second pan 90"},
      // A pan a group.
      {1, {1, 1}, {{}, {}}, " | volume 1 | mute 1"},
      {1, {1, 1, 7}, {{}, {20}}, " pans=1 left=20 | volume 1 | mute 1 | pan 20"},
      {0, {1}, {{10}, {20}, {30}}, " pans=2 left=10 right=20 | volume 1 | pan 10 | second pan 20"},
      // A panner a group.
      {0, {1, 1}, {{10, 11}, {20, 21}}, " pans=1 left=10 | volume 1 | mute 1 | pan 10"},
      {0, {1, 1, 9}, {{10, 11}, {20, 21}}, " pans=2 left=10 | volume 1 | mute 1 | pan 10"},
      {1, {1, 1, 9}, {{10, -100}, {20, 100}}, " pans=2 left=10 right=20 | volume 1 | mute 1 | pan 10 | second pan 20"},
      {1, {1, 1, 9}, {{10, -100}, {20, 99}}, " pans=1 left=10 | volume 1 | mute 1 | pan 10"},
      {1, {1}, {{10, 11}, {20}}, " pans=2 left=10 right=20 | volume 1 | pan 10 | second pan 20"},
      {1, {1, 1, 9}, {{10, 11}}, " pans=2 left=10 | volume 1 | mute 1 | pan 10"},
      {2, {1, 1, 9}, {{}, {20, 21}}, " | volume 1 | mute 1"},
  };
  for (const Case& one : cases) {
    BlockWriter w;
    open_row(w, "T", kAudio, one.width);
    mix(w, "Out");
    mix(w, "Bus", [&] {
      for (const int initial : one.free) lane(w, initial);
      for (const auto& group : one.groups) {
        w.open(0x260c);
        for (const int initial : group) lane(w, initial);
        w.close();
      }
    });
    w.close();
    EXPECT_EQ(tables_of(w).rows("routing"),
              std::string("0: \"T\" output=\"Out\" | send \"Bus\" -6 dB post") + one.send);
  }
}

TEST(SendLanes, ThatReachOverEachOtherCostNoMoreThanTheSession) {
  // Four lanes a send, each of 65,535 points: the same bytes behind all of them.
  constexpr std::uint32_t kReach = 393'300;
  BlockWriter w;
  w.open(0x261b).open(0x2619).text("Gtr").close();
  for (int send = 0; send < 40; ++send) {
    w.open(0x260d).open(0x1029).zeros(155).close().open(0x260e).zeros(2).text("Bus").close();
    for (int lane = 0; lane < 4; ++lane) w.u8('Z').u16(1).u32(kReach).u16(0x260a).zeros(16).u16(65535).zeros(10);
    w.close();
  }
  w.close().zeros(kReach + 100);
  const test::Image image(w);
  const std::vector<AudioFileEntry> files;
  const std::vector<std::int64_t> lengths;
  const std::vector<AudioFileFacts> facts;
  const Session session = read_session(image.session, {12, 48000, files, lengths, facts}, {});
  std::size_t points = 0;
  for (const TrackRouting& row : session.mixer.routing)
    for (const SendRecord& send : row.sends) points += send.volume_lane.points.size() + send.mute_lane.points.size();
  EXPECT_LE(points, image.session.size());
}

TEST(LegRoutes, ARouteLeadsFromTheRowThatTakesItInToTheFirstOtherRowThatNamesIt) {
  BlockWriter w;
  path(w, {"Pair", 6, 5, {3}});
  path(w, {"Pair again", 6, 5, {1, 2}});
  path(w, {"No channel", 6, 5, {0}});
  path(w, {"None at all", 6, 5, {}});
  path(w, {"No source", 6, 8, {1}});
  path(w, {"No target", 6, 9, {1}});
  w.u32(42).u32(5).u32(7);  // in no row
  const auto row = [&](std::string_view name, const std::function<void()>& content) {
    open_row(w, name);
    content();
    w.close();
  };
  row("Source", [&] { w.zeros(1), input(w, "Pair", 5, 6); });
  row("A second source", [&] { w.zeros(1), input(w, "No target", 9, 6); });
  row("Target", [&] { w.zeros(1).u32(42).u32(5).u32(7).u32(42).u32(8).u32(7); });
  row("Also", [&] { w.zeros(1), input(w, "Pair", 5, 6); });
  EXPECT_EQ(tables_of(w).rows("leg routes"), "0: row 0 to row 2 channel 3\n1: row 0 to row 2 channel 1");
}

TEST(OneSidedOutputs, OneChannelOfAPairIsASide) {
  BlockWriter w;
  const auto row = [&](std::string_view name, const char* output) {
    open_row(w, name);
    mix(w, output, [&] { lane(w, 0), lane(w, 0), lane(w, 0); });
    w.close();
  };
  path(w, {"Out / 1-2", 1, 1, {1, 2}});
  path(w, {"Out / L", 1, 2, {1}});
  path(w, {"Out / R", 1, 3, {2}});
  path(w, {"Out / 2-1", 1, 4, {2, 1}});  // an earlier pair has told
  path(w, {"Main / Sub / 3-4", 1, 5, {3, 4}});
  path(w, {"Other 5-6", 1, 6, {5, 6}});
  row("left", "Out / L");
  row("right", "Out / R");
  row("by its number", "Main / 4");
  row("no such channel", "Main / 5");
  row("a pair", "Out / 1-2");
  row("no pair", "Other / 5");
  row("no number", "Out / 1x");
  row("too great a number", "Out / 18446744073709551617");
  row("nothing behind", "Out / ");
  const test::Tables tables = tables_of(w);
  EXPECT_EQ(tables.rows("one-sided outputs"), "\"by its number\" right\n\"left\" left\n\"right\" right");
  // Three lanes are no mono strip's and no stereo one's; but where the side is known, nothing is in doubt.
  EXPECT_EQ(tables.count("unusual strips", "lanes=3"), 6U);
  EXPECT_EQ(tables.count("unusual strips", "\"left\""), 0U);
}

// The same mixer comes out of every layout of its lanes; panners say nothing of a trim.
TEST(Routing, EveryLayoutOfLanesTellsTheSameMixer) {
  for (const auto layout :
       {test::LaneLayout::kPanGroups, test::LaneLayout::kPanGroupsNoTrim, test::LaneLayout::kPanners}) {
    test::SessionBuilder s;
    s.layout.lanes = layout;
    s.layout.row_names = false;
    s.bus("Verb", {3, 4});
    s.io_path(test::PathKind::kOutput, "Out / 1-2", {1, 2}).io_path(test::PathKind::kLegs, "Pair", {1});
    s.track("Vox").fader_db(-3).pan(20).send(test::Send("Verb", -6).pre_fader().pan(-40)).output("Out / 2");
    s.stereo_track("Gtr").send(test::Send("Verb", 0).pan(-90, 80).mute_points({{0, 1}})).no_output();
    s.aux("Reverb").pan(-100, 50).input_bus("Verb").takes_legs_of("Pair");
    s.aux("Source").input_bus("Pair");
    const test::Tables tables = tables_of(s);
    // A mono strip's panner has a level, which makes its send one of two pans.
    const std::string pans = layout == test::LaneLayout::kPanners ? "2" : "1";
    EXPECT_EQ(tables.rows("routing"),
              "0: \"Vox\" output=\"Out / 2\" | send \"Verb\" -6 dB pans=" + pans + R"( left=-40 | volume -60 | pan -40
1: "Gtr" no-output | send "Verb" 0 dB post pans=2 left=-90 right=80 | mute 0 0/1 | pan -90 | second pan 80
2: "Reverb" output="Output 1-2" input="Verb" kind=2 ids=5000000/e1d2c3b4
3: "Source" output="Output 1-2" input="Pair" kind=6 ids=5000002/e1d2c3b4)");
    EXPECT_EQ(tables.rows("leg routes"), "0: row 3 to row 2 channel 1");
    EXPECT_EQ(tables.rows("one-sided outputs"), "\"Vox\" right");
    EXPECT_EQ(tables.count("strips", " stereo"), 3U);
    EXPECT_EQ(tables.count("strips", "| pan 20"), 1U);
    EXPECT_EQ(tables.count("strips", "right pan 50"), 1U);
    EXPECT_EQ(tables.rows("unusual strips"), "");
  }
}

TEST(MidiStates, MuteAndItsLaneComeFromTheRow) {
  BlockWriter w;
  const auto setup = [&](std::uint32_t muted, std::size_t more = 20) {
    w.open(0x2036).u32(1).u32(muted).zeros(more).close();
  };
  const auto row = [&](std::string_view name, const std::function<void()>& content, std::uint16_t type = kMidi) {
    open_row(w, name, type);
    content();
    w.close();
  };
  const auto with_lanes = [&](const std::vector<std::vector<int>>& lanes) {
    w.open(0x2611);
    for (const auto& one : lanes) lane(w, one[0], {one.begin() + 1, one.end()});
    w.close();
  };
  row("muted", [&] { w.open(0x2611), setup(2), setup(1), setup(0), w.close(), w.open(0x2611), setup(0), w.close(); });
  row("not muted", [&] { w.open(0x2611), setup(0, 0), w.close(); });
  row("outside", [&] { setup(1); });
  row("mute lane", [&] { with_lanes({{1, 0, 1}}); });
  row("another lane", [&] { with_lanes({{0, 1, 2}}); });
  row("rests elsewhere", [&] { with_lanes({{64}}); });
  row("two lanes", [&] { with_lanes({{1, 0}, {0, 1}}); });
  row("nothing", [&] { with_lanes({}); });
  row(
      "instrument", [&] { with_lanes({{1}}); }, kInstrument);
  row("", [&] { with_lanes({{1}}); });
  EXPECT_EQ(
      tables_of(w).rows("midi states"),
      "\"another lane\" other-lanes\n\"mute lane\" mute-lane | mute 1 48000/0 48000/1\n\"muted\" muted\n\"not muted\"");
}

}  // namespace
}  // namespace frt

// Clips and where they stand, in both forms of their lists; MIDI clips and notes; the folders of audio files.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::kQuarter;
using test::kTickOrigin;
using test::SessionBuilder;
using test::tables_of;
using test::Track;

constexpr std::uint64_t kFar = 0x1'2345'6789;  // needs its 40 bits

SessionBuilder audio_session() {
  SessionBuilder s;
  const auto zero = s.audio_file("zero.wav", 9), one = s.stereo_file("one", 9);
  Track& gtr = s.stereo_track("Gtr");
  gtr.clip(one).name("a").offset(5).length(100).at(4000).muted();
  s.track("Empty");
  s.track("Vox").clip(zero).name("b").length(0x123456).at(kFar);
  gtr.playlist("Gtr.01").clip({"gone", 77, 77, 9}).name("c").at(1);
  return s;
}

TEST(AudioClips, StandOnTracksWithoutGapsInBothForms) {
  SessionBuilder s = audio_session();
  const auto newer = tables_of(s);
  EXPECT_EQ(newer.rows("audio clips"), R"(0: #0 "a.L" length=100 offset=5 file="one.L.wav" file_index=1 channel=0 of=1
1: #1 "a.R" length=100 offset=5 file="one.R.wav" file_index=2 channel=0 of=1
2: #2 "c.L" length=9 file_index=77 channel=0
3: #3 "c.R" length=9 file_index=77 channel=1
4: #4 "b" length=1193046 file="zero.wav" channel=0 of=1)");
  // Of a position the low 32 bits count on a track in samples.
  EXPECT_EQ(newer.rows("audio placements"), R"(0: track 0 (0) "Gtr" clip 0 start=4000 position40=4000 muted
1: track 1 (1) "Gtr" clip 1 start=4000 position40=4000 muted
2: track 2 (2) "Gtr.01" clip 2 start=1 position40=1
3: track 3 (3) "Gtr.01" clip 3 start=1 position40=1
4: track 4 (5) "Vox" clip 4 start=591751049 position40=4886718345)");
  s.layout.old_clip_list = s.layout.old_placements = true;
  const auto older = tables_of(s);
  EXPECT_EQ(older.count("audio clips", "start="), 5u);
  EXPECT_EQ(older.rows("audio placements"), R"(0: track 0 (0) "Gtr" clip 0 start=4000 position40=4000
1: track 1 (1) "Gtr" clip 1 start=4000 position40=4000
2: track 2 (2) "Gtr.01" clip 2 start=1 position40=1
3: track 3 (3) "Gtr.01" clip 3 start=1 position40=1
4: track 4 (5) "Vox" clip 4 start=4886718345 position40=4886718345)");
}

TEST(AudioClips, BigEndianAndTinyImagesHoldNone) {
  std::vector<std::uint8_t> image = audio_session().image();
  EXPECT_NE(tables_of(image).rows("audio clips"), "");
  image[17] = 1;
  EXPECT_EQ(tables_of(image).rows("audio clips"), "");
  image.resize(64);
  EXPECT_EQ(tables_of(image).rows("audio clips"), "");
}

// A session of one clip and one track of so many channels; the playlists are still to come.
BlockWriter clip_and_track(std::string_view track, unsigned channels) {
  BlockWriter w;
  w.open(0x2067).zeros(40).close().open(0x262a).u32(1).open(0x2629).zeros(9).text("a").three_point(0, 100, 0);
  w.open(0x2628).u16(0).close().u16(0).u16(0).close().zeros(32).close();
  w.open(0x1015).open(0x1014).text(track).u8(1).u32(channels);
  for (unsigned channel = 0; channel < channels; ++channel) w.u16(channel);
  w.u32(0x2a).u64(7).close().zeros(64).close().open(0x1054);
  return w;
}

void placement(BlockWriter& w, unsigned clip, std::uint64_t position) {
  w.open(0x104f).u16(0).u16(clip).zeros(3).u40(position).zeros(12).close();
}

TEST(AudioPlacements, AMarkBehindAListPassesItOverUnlessItIsAnotherBlocks) {
  // The lists' bytes behind their end, and whether the playlist ends with its list.
  for (const auto& [mark, flush, count] : {std::tuple{0u, false, 1u}, {1u, false, 0u}, {1u, true, 1u}}) {
    BlockWriter w = clip_and_track("T", 1);
    w.open(0x1052).text("p").u32(1).open(0x1050).zeros(11);
    placement(w, 0, 48000);
    placement(w, 9, 5);  // no such clip
    w.zeros(64).close();
    if (flush) w.close();
    w.zeros(2).u8(mark).zeros(64);
    if (!flush) w.close();
    EXPECT_EQ(tables_of(w.zeros(128).close()).count("audio placements", "start=48000"), count) << mark << flush;
  }
}

TEST(AudioPlacements, LongTrackNamesStayWholeUntilTheirCopiesAddUp) {
  const std::string name(600, 'n');
  BlockWriter w = clip_and_track(name, 2);
  for (int number = 0; number < 2; ++number) {
    w.open(0x1052).text("p").u32(1).open(0x1050).zeros(11);
    placement(w, 0, 0);
    w.zeros(64).close().zeros(64).close();
  }
  const auto tables = tables_of(w.zeros(8 * 600).close());  // room for one whole copy
  EXPECT_EQ(tables.count("audio placements", name), 1u);
  EXPECT_EQ(tables.count("audio placements", '"' + name.substr(0, 512) + '"'), 1u);
}

SessionBuilder midi_session() {
  SessionBuilder s;
  s.track("Audio");
  Track& keys = s.midi_track("Keys");
  keys.midi_clip("riff", kQuarter, 8000, {{5000, 10, 60, 99}, {5960, 400, 61, 98}});
  keys.midi_clip("early", 0 - std::uint64_t{500}, 9, {{0, 1}}).is_muted = true;
  BlockWriter w;  // a compound clip: named like the clip before it, as long as its notes
  s.payload(0x262c, w.open(0x262b).open(0x2628).text("x").zeros(8).close().u16(0).u16(0).zeros(64).close().take());
  // A clip of an unknown chunk.
  s.payload(0x2634, w.open(0x2633).open(0x2628).text("lost").three_point(0, 9, 0).close().u32(5).close().take());
  return s;
}

TEST(MidiClips, ComeWithTheirNotesAndCompoundOnes) {
  SessionBuilder s = midi_session();
  const auto tables = tables_of(s);
  EXPECT_EQ(tables.rows("midi chunks"),
            R"(0: zero=5000 notes=2 | 0 length 10 note 60 velocity 99 | 960 length 400 note 61 velocity 98
1: zero=0 notes=1 | 0 length 1 note 60 velocity 100)");
  EXPECT_EQ(tables.rows("midi clips"), R"(0: #0 "riff" length=8000 offset=5000 start=1000000000000 chunk=0
1: #1 "early" length=9 start=1000000000000 chunk=1
2: #0 "early" length=1360 start=1000000000000 chunk=0)");
  // Only with a song start of its own a session has something before its first tick.
  EXPECT_EQ(tables.rows("midi placements"), R"(0: track 0 (0) "Keys" clip 0 start=960000 position40=1000000960000
1: track 0 (0) "Keys" clip 1 start=500 position40=999999999500 muted)");
  s.song_start(48000);
  EXPECT_EQ(tables_of(s).count("midi placements", "start=-500"), 1u);
}

TEST(MidiClips, ClaimedNoteCountsAreHeldToTheImage) {
  std::vector<std::uint8_t> image = midi_session().image();
  const auto mark = std::search_n(image.begin(), image.end(), 1, 'M', [&](const std::uint8_t& byte, char) {
    return std::string_view(reinterpret_cast<const char*>(&byte), 5) == "MdNLB";
  });
  std::fill_n(mark + 11, 4, 0xff);
  const auto tables = tables_of(image);
  EXPECT_EQ(tables.count("midi chunks", "notes="), 1u);
  EXPECT_LE(tables.count("midi chunks", "velocity"), image.size() / 35);
}

// ---- folders ----

TEST(AudioFileFolders, GoByParentWhereTheListReadsSoElseByTheEntryBefore) {
  const struct {
    unsigned kind;
    std::uint32_t parent;
    std::string_view name, tag;
  } list[] = {{0, ~0u, "Disc", ""},         {1, 0, "Audio Files", ""},  {1, 0, "Bounced", ""},
              {2, 2, "kick.wav", "WAVE"},   {2, 1, "kick.wav", "WAVE"}, {2, 1, "odd", "????"},
              {2, ~0u, "loose.wav", "EVAW"}};
  for (const unsigned left : {0u, 1u}) {  // a byte too many: kinds and parents don't read
    BlockWriter w;
    w.open(0x1004).u16(0).u32(3).open(0x103a).u32(static_cast<std::uint32_t>(std::size(list)));
    for (const auto& row : list) w.u8(row.kind).u32(row.parent).text(row.name).raw(row.tag).zeros(4 - row.tag.size());
    const auto tables = tables_of(w.zeros(left).close().zeros(8).close());
    // The first folder found for a name stays; an unknown tag ends a list without kinds.
    EXPECT_EQ(tables.rows("folders by name"),
              left == 0 ? "\"kick.wav\" in \"Bounced\"\n\"odd\" in \"Audio Files\"" : "\"kick.wav\" in \"Bounced\"");
    EXPECT_EQ(tables.count("refused", "NameList"), left);
  }
}

TEST(AudioFileFolders, NumbersTellFilesOfOneNameApartOnlyIfEveryListReads) {
  SessionBuilder s;
  s.audio_file("Mix.wav", 1, "Stems");
  s.audio_file("Mix.wav", 2, "Mixes");
  EXPECT_EQ(tables_of(s).rows("audio files"),
            "0: \"Mix.wav\" samples=1 channels=1 folder=\"Stems\" chain=\"Disk/Stems\"\n"
            "1: \"Mix.wav\" samples=2 channels=1 folder=\"Mixes\" chain=\"Disk/Mixes\"");
  s.second_file_list().audio_file("Late.wav", 3);
  EXPECT_EQ(tables_of(s).rows("audio files"),
            "0: \"Mix.wav\" samples=1 channels=1\n1: \"Mix.wav\" samples=2 channels=1\n"
            "2: \"Late.wav\" samples=3 channels=1");
}

}  // namespace
}  // namespace frt

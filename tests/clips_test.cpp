// The clip walk and the audio file list, on images made by hand.
#include "session/clips.h"

#include <gtest/gtest.h>

#include <string>

#include "session/media/file_folders.h"
#include "support/hand_image.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;
using test::kTickOrigin;

void clip(BlockWriter& w, std::string_view name, std::uint64_t offset, std::uint64_t length, std::uint64_t start,
          unsigned file) {
  w.open(0x2629).zeros(9).text(name).three_point(offset, length, start);
  w.open(0x2628).u16(0).close();
  w.u16(file).u16(0).close();
}

void track(BlockWriter& w, std::string_view name, std::initializer_list<unsigned> channels) {
  w.open(0x1014).text(name).u8(1).u32(static_cast<std::uint32_t>(channels.size()));
  for (const unsigned channel : channels) w.u16(channel);
  w.u32(0x2a).u64(7).close();
}

void placement(BlockWriter& w, unsigned clip_number, std::uint64_t position) {
  w.open(0x104f).u16(0).u16(clip_number).zeros(3).u40(position).zeros(12).close();
}

// One line a placement: "track#stored>closed clip@start".
std::string dump(const std::vector<Placement>& placements, const std::vector<ClipRecord>& clips) {
  std::string out;
  for (const Placement& p : placements) {
    out += std::string(p.track_name) + "#" + std::to_string(p.stored_track_index) + ">" +
           std::to_string(p.track_index) + " " + std::string(clips[p.clip].name) + "@" + std::to_string(p.start) +
           (p.muted ? "m\n" : "\n");
  }
  return out;
}

constexpr std::uint64_t kFar = 0x1'2345'6789;  // needs its 40 bits

std::vector<std::uint8_t> audio_session(bool older) {
  BlockWriter w;
  w.open(0x2067).zeros(40).close();
  w.open(older ? 0x100b : 0x262a).u32(3);
  clip(w, "a", 5, 100, 4000, 1);
  clip(w, "b", 0, 0x123456, kFar, 0);
  clip(w, "c", 0, 9, 1, 77);
  w.zeros(32).close();
  w.open(0x1015).u32(3);
  track(w, "Gtr", {0, 1});
  track(w, "Empty", {2});
  track(w, "Vox", {3});
  track(w, "Gtr again", {1});  // a number keeps its first name
  w.zeros(32).close();
  if (older) {
    w.open(0x1012);
    for (const unsigned number : {1u, 9u, 0u}) {
      w.open(0x1011).u32(0).open(0x100f).u32(0);
      w.open(0x100e).u16(0).u16(number).u32(0).close();
      w.zeros(32).close().zeros(32).close();
    }
    w.zeros(64).close();
  } else {
    w.open(0x1054);
    for (int number = 0; number < 4; ++number) {
      w.open(0x1052).text("p").u32(1);
      if (number == 3)
        w.open(0x1050).zeros(9).u8(0).u8(0);
      else
        w.open(0x1050).zeros(9).u8(number == 1).u8(0);
      if (number != 2) placement(w, static_cast<unsigned>(number == 0 ? 1 : 0), number == 3 ? kFar : 48000);
      if (number == 3) placement(w, 9, 5);
      w.zeros(64).close().zeros(2).u8(number == 3).zeros(64).close();
    }
    w.zeros(128).close();
  }
  return w.take();
}

TEST(ClipWalk, ReadsClipsAndPlacesThemOnTracksWithoutGaps) {
  const std::vector<AudioFileEntry> files = {{"zero.wav", 0}, {"one.wav", 1}};
  const Image image(audio_session(false));
  const ClipTables tables = walk_clips(image.session, files, false);
  ASSERT_TRUE(tables.walked);
  ASSERT_EQ(tables.audio_clips.size(), 3u);
  const ClipRecord& a = tables.audio_clips[0];
  EXPECT_EQ(a.name, "a");
  EXPECT_EQ(a.source_offset, 5);
  EXPECT_EQ(a.length, 100);
  EXPECT_EQ(a.start, 4000);
  EXPECT_EQ(a.file_name, "one.wav");
  EXPECT_EQ(tables.audio_clips[1].length, 0x123456);
  EXPECT_EQ(tables.audio_clips[2].file_name, "");
  EXPECT_EQ(tables.channel_count, 4u);
  // The list marked behind its end is passed over, and with it the track; an unknown clip drops its placement.
  EXPECT_EQ(dump(tables.audio, tables.audio_clips), "Gtr#0>0 b@48000\nGtr#1>1 a@48000m\n");
}

TEST(ClipWalk, OlderListsPlaceClipsWhereTheClipsSay) {
  const Image image(audio_session(true));
  const ClipTables tables = walk_clips(image.session, {{"", 40}}, false);
  EXPECT_EQ(dump(tables.audio, tables.audio_clips), "Gtr#0>0 b@" + std::to_string(kFar) + "\nEmpty#2>1 a@4000\n");
}

TEST(ClipWalk, LongTrackNamesStayWholeUntilTheirCopiesAddUp) {
  BlockWriter w;
  w.open(0x2067).zeros(40).close();
  w.open(0x262a).u32(1);
  clip(w, "a", 0, 100, 0, 0);
  w.zeros(32).close();
  w.open(0x1015);
  track(w, std::string(600, 'n'), {0, 1});
  w.zeros(64).close();
  w.open(0x1054);
  for (int number = 0; number < 2; ++number) {
    w.open(0x1052).text("p").u32(1).open(0x1050).zeros(11);
    placement(w, 0, 0);
    w.zeros(64).close().zeros(64).close();
  }
  w.zeros(8 * 600).close();  // room for one whole copy
  const Image image(w);
  const ClipTables tables = walk_clips(image.session, {}, false);
  ASSERT_EQ(tables.audio.size(), 2u);
  EXPECT_EQ(tables.audio[0].track_name.size(), 600u);
  EXPECT_EQ(tables.audio[1].track_name.size(), 512u);
}

TEST(ClipWalk, MarkBehindTheLastListOfAPlaylistIsAnotherBlocks) {
  BlockWriter w;
  w.open(0x2067).zeros(40).close();
  w.open(0x262a).u32(1);
  clip(w, "a", 0, 100, 0, 0);
  w.zeros(32).close();
  w.open(0x1015);
  track(w, "T", {0});
  w.zeros(64).close();
  w.open(0x1054).open(0x1052).text("p").u32(1).open(0x1050).zeros(11);
  placement(w, 0, kFar);
  w.zeros(64).close().close();  // the playlist ends with its list
  w.zeros(2).u8(1).zeros(128).close();
  const Image image(w.take());
  const ClipTables tables = walk_clips(image.session, {}, false);
  ASSERT_EQ(tables.audio.size(), 1u);
  EXPECT_EQ(tables.audio[0].position40, kFar);
  EXPECT_EQ(tables.audio[0].raw_start, 0x23456789u);
}

TEST(ClipWalk, BigEndianAndTinyImagesAreNotWalked) {
  Image image(audio_session(false));
  image.bytes[17] = 1;
  EXPECT_FALSE(walk_clips(SessionImage(ByteView(image.bytes.data(), image.bytes.size())), {}, false).walked);
  EXPECT_FALSE(walk_clips(SessionImage(ByteView(image.bytes.data(), 64)), {}, false).walked);
}

void note(BlockWriter& w, std::uint64_t position, std::uint64_t length) {
  w.u40(position).zeros(3).u8(60).u40(length).zeros(3).u8(99).zeros(17);
}

std::vector<std::uint8_t> midi_session(std::uint32_t count) {
  BlockWriter w;
  w.open(0x2067).zeros(40).close();
  w.open(0x2000).raw("MdNLB").zeros(6).u32(count);
  note(w, 5000, 10);
  note(w, 5960, 400);
  w.zeros(40).close();
  w.open(0x2634).open(0x2633);
  for (const unsigned chunk : {0u, 5u}) {
    w.open(0x2628).text(chunk == 0 ? "riff" : "lost").three_point(4000, 8000, 1).close();
    w.u32(chunk);
  }
  w.zeros(64).close().zeros(64).close();
  w.open(0x262c).open(0x262b);
  w.open(0x2628).text("x").zeros(8).close().u16(0).u16(0);
  w.zeros(64).close().zeros(64).close();
  for (int row = 0; row < 2; ++row) w.open(row == 0 ? 0x261b : 0x2620).zeros(20).close();
  w.open(0x2519);
  for (const char* name : {"Audio", "Keys"}) w.open(0x251a).u16(0).text(name).zeros(40).close();
  w.zeros(96).close();
  w.open(0x1058);
  w.open(0x1057).text("Keys").open(0x1056).zeros(9).u8(1).u8(0);
  placement(w, 0, kTickOrigin + 960000);
  placement(w, 0, kTickOrigin - 500);
  placement(w, 3, kTickOrigin);
  w.zeros(64).close().zeros(64).close();
  w.zeros(128).close();
  return w.take();
}

TEST(ClipWalk, ReadsMidiChunksClipsAndPlacements) {
  const Image image(midi_session(2));
  const ClipTables tables = walk_clips(image.session, {}, false);
  ASSERT_EQ(tables.chunks.size(), 1u);
  const std::vector<MidiNote> notes = chunk_events(image.session.bytes(), tables.chunks[0]);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[1].position, 960u);
  EXPECT_EQ(notes[1].length, 400u);
  EXPECT_EQ(notes[1].velocity, 99);

  ASSERT_EQ(tables.midi_clips.size(), 2u);  // the clip of an unknown chunk is left out
  EXPECT_EQ(tables.midi_clips[0].source_offset, 1000);
  EXPECT_EQ(tables.midi_clips[1].name, "riff");  // compound: named like the clip before, as long as its notes
  EXPECT_EQ(tables.midi_clips[1].length, 1360);
  EXPECT_EQ(dump(tables.midi, tables.midi_clips), "Keys#0>0 riff@960000m\nKeys#0>0 riff@500m\n");
  EXPECT_EQ(walk_clips(image.session, {}, true).midi[1].start, -500);
}

TEST(ClipWalk, ClaimedNoteCountsAreHeldToTheImage) {
  const Image image(midi_session(0xFFFFFFF0));
  const ClipTables tables = walk_clips(image.session, {}, false);
  ASSERT_EQ(tables.chunks.size(), 1u);
  EXPECT_LT(tables.chunks[0].event_count, image.bytes.size() / 35);
}

struct FileRow {
  unsigned kind;
  std::uint32_t parent;
  const char* name;
  const char* tag;
};
const std::vector<FileRow> kList = {{0, ~0u, "Disc", ""},         {1, 0, "Audio Files", ""},  {1, 0, "Bounced", ""},
                                    {2, 2, "kick.wav", "WAVE"},   {2, 1, "kick.wav", "WAVE"}, {2, 1, "odd", "????"},
                                    {2, ~0u, "loose.wav", "EVAW"}};

Image file_list(const std::vector<FileRow>& rows, unsigned behind) {
  BlockWriter w;
  w.open(0x1004).u16(0).u32(3).open(0x103a).u32(static_cast<std::uint32_t>(rows.size()));
  for (const FileRow& row : rows) {
    w.u8(row.kind).u32(row.parent).text(row.name);
    const std::string_view tag = row.tag;
    w.raw(tag).zeros(4 - tag.size());
  }
  w.zeros(behind).close().zeros(8).close();
  return Image(w.take());
}

TEST(AudioFileFolders, ReadsFoldersByParentWhereTheListReadsSo) {
  const Image image = file_list(kList, 0);
  const AudioFileFolders folders = read_audio_file_folders(image.session);
  EXPECT_EQ(folders.by_name.at("kick.wav"), "Bounced");  // the first found stays
  EXPECT_EQ(folders.by_name.at("odd"), "Audio Files");   // whatever its tag
  EXPECT_FALSE(folders.by_name.contains("loose.wav"));
  ASSERT_EQ(folders.by_number.size(), 4u);
  EXPECT_EQ(folders.by_number[1], "Audio Files");
  EXPECT_EQ(folders.name_counts.at("kick.wav"), 2);
}

TEST(AudioFileFolders, OtherListsGoByTagsAndEndWhereTheyStopMakingSense) {
  // A byte too many: kinds and parents don't read; an unknown tag ends the list.
  const Image image = file_list(kList, 1);
  const AudioFileFolders folders = read_audio_file_folders(image.session);
  EXPECT_EQ(folders.by_name.at("kick.wav"), "Bounced");
  EXPECT_FALSE(folders.by_name.contains("odd"));
  EXPECT_TRUE(folders.by_number.empty());
}

}  // namespace
}  // namespace frt

// MIDI from the session's bytes to the project's lines: what stands beside notes, and what a strip does to its clips.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "model/palette.h"
#include "support/convert.h"
#include "support/project_text.h"
#include "support/tables.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::kQuarter;
using test::Lines;
using test::SessionBuilder;
using test::Track;

void notes(BlockWriter& w, std::uint32_t count, std::uint64_t origin) {
  w.raw("MdNLB").zeros(6).u32(count).u40(origin).zeros(30);
}
void stream(BlockWriter& w, unsigned kind, std::uint32_t size = 2, std::uint32_t count = 1) {
  w.raw("MdCDS").zeros(6).raw("Mdss").zeros(2).u32(size).u8(kind).u8(11).zeros(size < 2 ? 0 : size - 2);
  w.raw("MdCD").zeros(6).u32(count).u40(7).zeros(3).i32(-9);
}
// Two events; what is given is added to the first one's numbers and to the section's size.
void sysex(BlockWriter& w, unsigned one = 1, std::uint32_t wide = 5, std::uint32_t size = 0, std::uint32_t count = 2) {
  w.raw("MdES").zeros(6).raw("MdTEL").zeros(2).u32(47 + size).u32(count);
  w.u40(1).zeros(3).u8(one).zeros(1).u32(2 + wide).zeros(1).text("ab");
  w.u40(2).zeros(3).u8(1).zeros(1).u32(3 + 5).zeros(1).text("Md\x7f");
}

TEST(MidiData, SectionsCountBehindTheirChunkAndInTheirShape) {
  const struct {
    const char* what;
    std::function<void(BlockWriter&)> make;
    const char* rows;
  } rows[] = {
      {"all of a chunk's sections, and the next chunk",
       [](BlockWriter& w) {
         w.open(0x2000), notes(w, 1, 500), stream(w, 1), stream(w, 2, 9), stream(w, 4), sysex(w), notes(w, 2, 3);
         stream(w, 2), w.close();
       },
       "0: notes=1 origin=500 | pitch-bend controller=11: 7/-9 | controller controller=11: 7/-9 | "
       "aftertouch controller=11: 7/-9 | sysex 1 \"ab\" | sysex 2 \"Md\\x7f\"\n"
       "1: notes=2 origin=3 | controller controller=11: 7/-9"},
      {"a chunk without notes has no origin", [](BlockWriter& w) { w.open(0x2000), notes(w, 0, 500), w.close(); },
       "0: notes=0 origin=0"},
      {"nothing is open yet", [](BlockWriter& w) { w.open(0x2000), stream(w, 1), sysex(w), notes(w, 1, 5), w.close(); },
       "0: notes=1 origin=5"},
      {"behind the MIDI data's end, and in other data",
       [](BlockWriter& w) {
         w.open(0x2000), notes(w, 1, 5), w.close(), stream(w, 1), sysex(w), w.open(0x2001), notes(w, 1, 5), w.close();
       },
       "0: notes=1 origin=5"},
      {"streams of unknown kinds, of a size too small, without their second mark or with too many events",
       [](BlockWriter& w) {
         w.open(0x2000), notes(w, 1, 5), stream(w, 0), stream(w, 3), stream(w, 1, 1), w.close();
         w.open(0x2000), stream(w, 1, 2, 1000000), stream(w, 1, 2, 0), w.raw("MdCDS").zeros(6).raw("Mdss").zeros(40);
         w.close();
       },
       "0: notes=1 origin=5 | pitch-bend controller=11:"},
      {"SysEx in other shapes",
       [](BlockWriter& w) {
         w.open(0x2000), notes(w, 1, 5), sysex(w, 2), sysex(w, 1, 4), sysex(w, 1, 5, 1), sysex(w, 1, 5, UINT32_MAX);
         sysex(w, 1, 5, 0, 1), sysex(w, 1, 5, 0, 3), sysex(w, 1, 5, UINT32_MAX - 42, 0), w.close();
       },
       "0: notes=1 origin=5"},
  };
  for (const auto& row : rows) {
    BlockWriter w;
    row.make(w);
    EXPECT_EQ(test::tables_of(w).rows("midi streams"), row.rows) << row.what;
  }
}

TEST(MidiData, ASectionCutAnywhereCostsItselfAlone) {
  const std::string chunk = "0: notes=1 origin=5", bend = " | pitch-bend controller=11: 7/-9";
  for (const bool is_sysex : {false, true}) {
    BlockWriter section;
    is_sysex ? sysex(section) : stream(section, 4);
    const std::vector<std::uint8_t> whole = section.take();
    for (std::size_t n = 0; n < whole.size(); ++n) {
      BlockWriter w;
      w.open(0x2000), notes(w, 1, 5), stream(w, 1);
      const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
      w.bytes(cut).close();
      const test::Image image(w, 0);
      EXPECT_EQ(test::tables_of(image.bytes).rows("midi streams"), chunk + bend) << n;
    }
  }
}

TEST(MidiData, SectionsThatClaimEachOthersBytesTakeNoMoreThanTheSessionHolds) {
  BlockWriter w;
  w.open(0x2000), notes(w, 1, 5);
  for (std::uint32_t i = 0; i < 20000; ++i) stream(w, 1, 2, 60000);
  w.zeros(60000 * 12).close();
  EXPECT_LT(test::tables_of(w).rows("midi streams").size(), w.size() + 2'000'000);
}

TEST(MidiPlaylists, AnyTimebaseIsAsGoodAndPositionsHaveTheirOwnLimits) {
  const auto playlist = [](BlockWriter& w, const char* name, std::uint64_t position, int color, unsigned filler) {
    w.open(0x1057).text(name).u32(1).open(0x1056).open(0x104f).zeros(2).u32(3).u8(0).u40(position).zeros(3).u8(2);
    w.i16(color).zeros(12 + filler).u8(0).close().close().u8(90).close();
  };
  BlockWriter w;
  playlist(w, "A", 1'000'000'000'500, 4, 0);
  playlist(w, "A", 999'999'999'000, -2, 0);
  playlist(w, "", 7, -2, 0);
  playlist(w, "B", 7, -2, 4000);
  const test::Tables tables = test::tables_of(w);
  EXPECT_EQ(tables.rows("midi playlists"),
            "\"A\" | clip 3 at 500 kind=2 color=4 | clip 3 at 1000 kind=2\n\"B\" | clip 3 at 999999999993 kind=2");
  EXPECT_EQ(tables.rows("midi positions"), "\"\" 3/7\n\"A\" 3/1000000000500 3/999999999000");
}

// The events of a session's one MIDI clip, as they are written.
std::string events_of(const std::function<void(Track&)>& make) {
  SessionBuilder s;
  make(s.midi_track("M"));
  const std::string project = test::convert(s).project;
  const std::size_t from = project.find(" QN\n") + 4;
  std::string text = project.substr(from, project.find("      >\n    >", from) - from);
  for (std::size_t at; (at = text.find('\n')) != text.npos;) text.replace(at, 1, ",");
  for (std::size_t at; (at = text.find("  ")) != text.npos;) text.erase(at, 1);
  return text;
}

TEST(WrittenMidi, RealTimePropertiesChangeEventsAndHoldThemAtTheirLimits) {
  constexpr std::uint64_t kTick = 1000;
  const auto low = [](test::RealTime properties) {
    return events_of([&](Track& t) {
      t.real_time_properties(properties)
          .midi_clip("C", 0, kQuarter, {{0, 100 * kTick, 2, 100}})
          .controller(2, {{0, 9}});
    });
  };
  const std::string setup = " E 0 b0 07 64, E 0 b0 0a 40,", end = " E 1 b0 7b 00,";
  EXPECT_EQ(low({}), setup + " E 0 90 02 64, E 0 b0 02 09, E 100 80 02 00," + end);
  EXPECT_EQ(low({.octaves = -1, .semitones = 10}), setup + " E 0 90 00 64, E 0 b0 02 09, E 100 80 00 00," + end);
  EXPECT_EQ(low({.semitones = -3}), setup + " Em 0 90 00 64, E 0 b0 02 09, Em 100 80 00 00," + end);
  EXPECT_EQ(low({.octaves = 10, .semitones = 6}), setup + " Em 0 90 7f 64, E 0 b0 02 09, Em 100 80 7f 00," + end);
  EXPECT_EQ(low({.velocity_percent = 0, .velocity_offset = -5}),
            setup + " E 0 90 02 01, E 0 b0 02 09, E 100 80 02 00," + end);
  EXPECT_EQ(low({.velocity_percent = 25, .velocity_offset = 100}),
            setup + " E 0 90 02 7d, E 0 b0 02 09, E 100 80 02 00," + end);
  // Held at the clip's start, so the note is shorter than it was.
  EXPECT_EQ(low({.delay_ticks = -60}), setup + " E 0 90 02 64, E 0 b0 02 09, E 40 80 02 00," + end);
  EXPECT_EQ(low({.delay_ticks = 7}), setup + " E 7 90 02 64, E 0 b0 02 09, E 100 80 02 00," + end);
}

TEST(WrittenMidi, AClipKeepsTheControllersThatItStreamsAndSysExIsNeverMuted) {
  const auto with = [](std::uint8_t controller, int program) {
    return events_of([&](Track& t) {
      t.midi_levels(1, 127).patch(program).midi_clip("C", 0, kQuarter, {{0, 0}}).controller(controller, {{0, 3}});
    });
  };
  EXPECT_EQ(with(7, -1), " E 0 b0 0a 7f, E 0 b0 07 03, E 1 b0 7b 00,");
  EXPECT_EQ(with(10, 0), " E 0 b0 07 01, E 0 c0 00 00, E 0 b0 0a 03, E 1 b0 7b 00,");
  EXPECT_EQ(events_of([](Track& t) {
              t.midi_levels(200, 0).midi_clip("C", 0, kQuarter, {{0, 0}}).sysex(0, "").sysex(2 * kQuarter, "\x01\x02");
            }),
            " <X 0 0, 8Pc=, >, <X 1920 0, 8AEC9w==, >, E 1 b0 7b 00,");
  // A clip of no length is not written.
  EXPECT_EQ(test::lines_of(test::convert(SessionBuilder()).project, "<ITEM").size(), 0U);
}

TEST(ClipColor, IsABodysInTheClassicThemeAndDecodedFromTheDarkOnes) {
  const struct {
    std::int32_t index;
    std::uint32_t classic, dark;
  } rows[] = {
      {1, 0x1ECB4BE, 0x1FF3E66},
      {3, 0x1ECB4D2, 0x1FF42A8},
      {25, 0x1ECB4BE, 0x1FF3E66},
      {26, 0x1FC0056, 0x1FF3E83},
      {47, 0x1F9A8B1, clip_color(95, true).color},
      {2, 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(clip_color(row.index, false).color, row.classic) << row.index;
    EXPECT_EQ(clip_color(row.index, true).color, row.dark) << row.index;
  }
  EXPECT_EQ(clip_color(2, true).kind, ClipColor::kAutoAssigned);
  EXPECT_EQ(clip_color(24, true).color, palette_color(24).color);
  EXPECT_EQ(clip_color(-7, false).kind, 3);
  EXPECT_EQ(clip_color(26, true).shade, ClipColor::Shade::kDarkDerived);
  EXPECT_EQ(clip_color(51, false).kind, 1);
}

}  // namespace
}  // namespace frt

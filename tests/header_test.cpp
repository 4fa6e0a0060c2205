// The project's lines above its first track: markers, the master, and the header as a whole.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "session/headers/memory_locations.h"
#include "session/headers/meter_map.h"
#include "session/headers/tempo_map.h"
#include "support/hand_image.h"
#include "support/project_text.h"
#include "writer/project_header.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::Image;
using test::kTickOrigin;
using namespace std::string_view_literals;

// ---- markers ----

MemoryLocation marker(std::string_view name, std::int32_t kind, double start, double end) {
  MemoryLocation location;
  location.name = name;
  location.kind = kind;
  location.start = start;
  location.end = end;
  return location;
}

std::string header(const HeaderTables& tables, RunCounters& counters) {
  return test::written_by([&](ProjectText& project) { write_project_header(project, tables, counters); });
}

// What stands in an otherwise empty session.
struct Plain {
  TempoMap tempo;
  std::vector<MeterEvent> meters;
  std::vector<MemoryLocation> locations;
  SessionSettings settings;
  RunCounters counters;
  std::string header() {
    return frt::header({.tempo = tempo, .meters = meters, .locations = locations, .settings = settings}, counters);
  }
};

bool has(std::string_view text, std::string_view part) { return text.find(part) != text.npos; }

TEST(Markers, NumbersFormsAndColors) {
  Plain session;
  session.tempo.session_tempo = 60;
  auto& all = session.locations;
  all.push_back(marker("none", 0, 0, 0));
  all.push_back(marker("Verse", 1, 960000, 960000));
  all.push_back(marker("Solo \"1\"", 2, 960000, 1920000));
  all.push_back(marker("point", 2, 960000, 960000));
  all.push_back(marker("back", 2, 960000, 0));
  all.push_back(marker("samples", 1, 24000, 24000));
  all.back().in_samples = true;
  const std::string text = session.header();
  EXPECT_TRUE(has(text,
                  "  MARKER 1 1.0000000000 \"Verse\" 0 0 1 R {7E9B4C45-40B5-E613-6CEE-BC87D7B089C9} 0\n"
                  "  MARKER 2 1.0000000000 'Solo \"1\"' 1 0 1 R {1CD2C5F6-3D00-215A-0447-1E72A6693CEE} 0\n"
                  "  MARKER 2 2.0000000000 \"\" 1\n"
                  "  MARKER 3 1.0000000000 \"point\" 0 0 1 R {BB0A3FA7-394A-5CA1-9B9F-805D7521F013} 0\n"
                  "  MARKER 4 1.0000000000 \"back\" 0 0 1 R "))
      << text;
  EXPECT_TRUE(has(text, "  MARKER 5 0.5000000000 \"samples\" 0 0 1 R "));
  EXPECT_EQ(session.counters.markers, 4);
  EXPECT_EQ(session.counters.regions, 1);
  EXPECT_EQ(session.counters.markers_without_time, 1);
  EXPECT_EQ(session.counters.colored_markers, 0);
}

TEST(Markers, ColorsAreMappedOrNamed) {
  struct Case {
    std::int32_t palette, marker_color;
    std::int64_t rgb;
    unsigned long color;  // 0 for none
    bool unmapped = false;
  };
  const std::vector<Case> cases = {
      {-2, -1, -1, 0},         {25, -1, -1, 0x1FC002C}, {95, -1, -1, 0x15F2211},      {24, -1, -1, 0},
      {96, -1, -1, 0},         {3, -1, -1, 0},          {-2, 7, 0x112233, 0x1332211}, {-2, 7, 0, 0x1000000},
      {-2, 7, 0xFFB300, 0},    {-2, -1, 0x112233, 0},   {-2, 2, -1, 0x1FE0066},       {-2, 3, -1, 0x1DD0292},
      {-2, 5, -1, 0x1D57CFE},  {-2, 11, -1, 0},         {-2, 12, -1, 0x100DFDF},      {-2, 13, -1, 0x102E78D},
      {-2, 17, -1, 0x132DA00}, {-2, 0, -1, 0, true},    {-2, 65535, -1, 0, true},
  };
  for (const Case& one : cases) {
    Plain session;
    session.locations.push_back(marker("M", 1, 0, 0));
    session.locations[0].palette = one.palette;
    session.locations[0].marker_color = one.marker_color;
    session.locations[0].stored_rgb = one.rgb;
    const std::string line = "\"M\" 0 " + std::to_string(one.color) + " 1 R ";
    EXPECT_TRUE(has(session.header(), line)) << line;
    EXPECT_EQ(session.counters.colored_markers, one.color != 0 ? 1 : 0) << line;
    EXPECT_EQ(session.counters.unmapped_marker_colors.size(), one.unmapped ? 1u : 0u) << line;
  }
}

TEST(Markers, ASongStartHoldsEarlierOnesAtZero) {
  Plain session;
  session.tempo.session_tempo = 60;
  session.tempo.song_start = 1;
  session.tempo.song_start_tick = 2 * 960000;
  session.locations = {marker("a", 1, 0, 0), marker("b", 1, 2 * 960000, 0)};
  const std::string text = session.header();
  EXPECT_TRUE(has(text, "  MARKER 1 0.0000000000 \"a\""));
  EXPECT_TRUE(has(text, "  MARKER 2 1.0000000000 \"b\""));
}

// ---- the master ----

void name_block(BlockWriter& w, std::string_view name) { w.open(0x2619).text(name).close(); }

StripRow row(std::uint64_t start, std::uint32_t type, std::string_view current) {
  StripRow row;
  row.start = start;
  row.content_type = type;
  row.current_name = current;
  return row;
}

StripRecord strip(std::string_view name, double fader_db, bool mixer_data = true) {
  StripRecord record;
  record.name = name;
  record.fader_db = fader_db;
  record.has_mixer_data = mixer_data;
  return record;
}

TEST(Master, TheFirstNamedRowIsIt) {
  BlockWriter w;
  name_block(w, "outside");
  w.open(0x261d).zeros(4).close();
  const std::uint64_t second = w.size() + 20;
  w.open(0x261d).zeros(4);
  name_block(w, std::string(65, 'x'));  // too long
  name_block(w, "Main");
  w.close();
  w.open(0x261d);
  name_block(w, "Other");
  w.close();
  const Image image(w);
  const std::vector<StripRow> rows = {row(second, 0x261d, "Renamed"), row(second + 500, 0x261d, ""),
                                      row(900, 0x261b, "")};
  const std::vector<StripRecord> strips = {strip("Main", 1, false), strip("Other", 2), strip("Main", 3),
                                           strip("Main", 4)};
  const MasterStrip master = find_master(image.session, rows, strips);
  EXPECT_EQ(master.name, "Main");
  EXPECT_EQ(master.strip, &strips[2]) << "the first with mixer data";
  EXPECT_EQ(master.count, 2);
}

TEST(Master, ARowWithoutANameOfItsOwnTakesTheTracks) {
  BlockWriter w;
  w.open(0x261d);
  name_block(w, "");
  w.open(0x261b);
  name_block(w, "inner");
  w.close().close();
  const Image image(w, 0);
  EXPECT_EQ(find_master(image.session, {row(20, 0x261d, "Master 1")}, {strip("Master 1", -3)}).strip->fader_db, -3);
  EXPECT_EQ(find_master(image.session, {row(20, 0x261d, "")}, {}).name, "inner");
  test::each_cut(image.bytes, [&](ByteView cut) {
    EXPECT_EQ(find_master(SessionImage(cut), {}, {}).name, cut.size() == image.bytes.size() ? "inner" : "");
  });

  w.open(0x261d);
  name_block(w, "a\x02");
  w.close();
  const Image unnamed(w);
  const MasterStrip none = find_master(unnamed.session, {row(20, 0x261d, "x")}, {strip("", 5)});
  EXPECT_TRUE(none.name.empty());
  EXPECT_EQ(none.strip, nullptr);
  EXPECT_EQ(none.count, 1);
}

TEST(Master, FaderMuteAndAutomation) {
  Plain session;
  StripRecord record = strip("Main", -6);
  record.muted = true;
  HeaderTables tables{.tempo = session.tempo,
                      .meters = session.meters,
                      .locations = session.locations,
                      .settings = session.settings,
                      .master = {"Main", &record, 2}};
  RunCounters counters;
  std::string text = header(tables, counters);
  EXPECT_TRUE(has(text, "  MASTERMUTESOLO 1\n  MASTER_NCH 2 2\n"));
  EXPECT_TRUE(has(text, "  MASTER_VOLUME 0.501187234 0.000000 -1 -1.000000 1.000000\n  MASTER_PANMODE 3\n"));
  EXPECT_FALSE(has(text, "MASTERAUTOMODE"));
  EXPECT_EQ(counters.master_name, "Main");
  EXPECT_EQ(counters.master_faders, 2);
  EXPECT_EQ(counters.faders_at_unity, 0);

  record.mute_lane.points = {{0, 1}};
  text = header(tables, counters);
  EXPECT_TRUE(has(text, "  MASTER_VOLUME 0.501187234 "));
  EXPECT_TRUE(has(text, "  MASTER_PANMODE 3\n  MASTERAUTOMODE 1\n"));
  EXPECT_EQ(counters.faders_at_unity, 0);

  record.volume_lane.points = {{0, -60}};
  text = header(tables, counters);
  EXPECT_TRUE(has(text, "  MASTER_VOLUME 1.000000000 "));
  EXPECT_EQ(counters.faders_at_unity, 1);
}

// ---- the header as a whole ----

TEST(Header, OfASessionThatSaysNothing) {
  Plain session;
  const std::string text = session.header();
  for (const char* part : {"  SAMPLERATE 48000 0 0\n  TEMPO 120 4 4\n  PLAYRATE 1 0 0.25 4\n  <RECORD_CFG\n  >\n",
                           "  RENDER_FILE \"\"\n  MASTERMUTESOLO 0\n",
                           "  PANLAW 0.7079457844\n  MASTER_VOLUME 1.000000000 0.000000 -1 -1.000000 1.000000\n"})
    EXPECT_TRUE(has(text, part)) << text;
  EXPECT_FALSE(session.counters.timecode_written);
  EXPECT_FALSE(session.counters.recording_format_written);
  EXPECT_FALSE(session.counters.grid_written);
}

TEST(Header, OfASessionThatSaysEverything) {
  BlockWriter w;
  test::Fields(0x204d, 0x16).put(9, 5, 1).put(18, 107892, 4).into(w);
  test::Fields(0x1028, 115).put(9, 3, 1).put(21, 0xFFFF, 4).put(118, 3, 1).put(119, 1, 1).put(121, 32, 1).into(w);
  test::Fields(0x2066, 60).text(13, "\0   0| 1| 000\0   1| 0| 000\0"sv).into(w);
  w.open(0x2029).raw("Meter").zeros(6).u32(2);
  w.u40(kTickOrigin).zeros(3).u32(1).u32(6).u32(8).zeros(16);
  w.u40(kTickOrigin + 4 * 960000).zeros(3).u32(3).u32(3).u32(4).zeros(16).close();
  w.open(0x2077).zeros(3).u8(1).zeros(2).text("Chorus");
  w.u40(kTickOrigin + 960000).zeros(3).u40(kTickOrigin + 960000).zeros(3).close();
  w.open(0x2028).raw("Tempo").zeros(36).u64(0).u40(kTickOrigin).zeros(5).f64(120.5);
  w.zeros(43).u40(kTickOrigin + 2 * 960000).zeros(5).f64(60).close();
  const Image image(w);
  const TempoMap tempo = read_tempo(image.session, 96000, 0);
  const auto meters = read_meter_map(image.session);
  const auto locations = read_memory_locations(image.session);
  const SessionSettings settings = read_session_settings(image.session);
  RunCounters counters;
  EXPECT_EQ(header({.session_rate = 96000,
                    .sample_rate = 96000,
                    .tempo = tempo,
                    .meters = meters,
                    .locations = locations,
                    .settings = settings,
                    .notes_block = "  <NOTES\n  >\n",
                    .master_envelopes = "  <MASTERVOLENV2\n  >\n",
                    .master_fx_chain = "  <MASTERFXLIST\n  >\n"},
                   counters),
            "<REAPER_PROJECT 0.1 \"7.0\" 0\n"
            "  <NOTES\n"
            "  >\n"
            "  RIPPLE 0\n"
            "  GROUPOVERRIDE 0 0 0\n"
            "  AUTOXFADE 1\n"
            "  SAMPLERATE 96000 0 0\n"
            "  TEMPO 120.5 6 8\n"
            "  PLAYRATE 1 0 0.25 4\n"
            "  PROJOFFS 3599.9964000000 0 0\n"
            "  TIMEMODE 1 5 -1 30 1 0 -1 0\n"
            "  <RECORD_CFG\n"
            "    ZXZhdyAAAQ==\n"
            "  >\n"
            "  <APPLYFX_CFG\n"
            "  >\n"
            "  RENDER_FILE \"\"\n"
            "  <TEMPOENVEX\n"
            "    PT 0.0000000000 120.500000 1 524294 0 1\n"
            "    PT 0.9958506224 60.000000 1\n"
            "    PT 2.9958506224 60.000000 1 262147 0 3\n"
            "  >\n"
            "  MARKER 1 0.4979253112 \"Chorus\" 0 0 1 R {7E9B4C45-40B5-E613-6CEE-BC87D7B089C9} 0\n"
            "  MASTERMUTESOLO 0\n"
            "  MASTER_NCH 2 2\n"
            "  PANLAW 0.5956621435\n"
            "  GRID 3199 8 3 8 1 0 0 0\n"
            "  MASTER_VOLUME 1.000000000 0.000000 -1 -1.000000 1.000000\n"
            "  MASTER_PANMODE 3\n"
            "  <MASTERVOLENV2\n"
            "  >\n"
            "  <MASTERFXLIST\n"
            "  >\n");
  EXPECT_TRUE(counters.timecode_written);
  EXPECT_NEAR(counters.project_offset, 3599.9964, 1e-9);
  EXPECT_TRUE(counters.recording_format_written);
  EXPECT_EQ(counters.grid_quarters, 3);
  EXPECT_EQ(counters.tempo_changes, 2);
  EXPECT_EQ(counters.meter_changes_written, 1);
}

TEST(Header, RecordingFormatIsWrittenForWavOf16And32Bits) {
  const struct {
    int depth, type;
    const char* text;
  } cases[] = {
      {16, 3, "  <RECORD_CFG\n    ZXZhdxAAAQ==\n  >\n"},
      {32, 0, "  <RECORD_CFG\n    ZXZhdyAAAQ==\n  >\n"},
      {16, 4, "  <RECORD_CFG\n  >\n"},
      {24, 3, "  <RECORD_CFG\n  >\n"},
      {0, 3, "  <RECORD_CFG\n  >\n"},
  };
  for (const auto& one : cases) {
    Plain session;
    session.settings.recording.depth = one.depth;
    session.settings.recording.file_type = one.type;
    EXPECT_TRUE(has(session.header(), one.text)) << one.depth << " " << one.type;
  }
}

TEST(Header, AGridOutsideItsLimitsIsNotWritten) {
  const struct {
    MusicalStep step;
    test::Lines lines;
  } cases[] = {
      {{0, 0, 0}, {}},
      {{250, 0, 0}, {}},  // 1000 quarters
      {{249, 3, 959}, {"3199 8 999.99895833333 8 1 0 0 0"}},
      {{0, 0, 320}, {"3199 8 0.33333333333333 8 1 0 0 0"}},
  };
  for (const auto& one : cases) {
    Plain session;
    session.settings.grid.grid_read = true;
    session.settings.grid.grid = one.step;
    EXPECT_EQ(test::lines_of(session.header(), "GRID"), one.lines);
  }
}

}  // namespace
}  // namespace frt

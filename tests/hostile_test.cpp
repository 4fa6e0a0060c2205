// What no honest session holds: files cut anywhere, bytes changed, blocks nested without end, counts out of reach.
// And what must not matter: earlier runs, locale, time zone, working directory.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "run/text_output.h"
#include "stages/conversion.h"
#include "support/check_run.h"
#include "support/comma_locale.h"
#include "support/console.h"
#include "support/convert.h"
#include "support/process.h"
#include "support/tables.h"

namespace frt::test {
namespace {

SessionBuilder small_session() {
  SessionBuilder s;
  const AudioFile file = s.stereo_file("Gtr", 96000);
  s.tempo_event(4 * kQuarter, 100).meter(0, 1, 4, 4).timecode(2, 90000).grid(0, 1, 0).marker("A", 48000).color(51);
  Track& t = s.stereo_track("Gtr").fader_db(-3).comment("x");
  t.clip(file).name("Gtr-01").at(48000).length(48000).fade_in(480).gain_line({{0, 0}, {48000, -6}});
  t.clip(file).name("Gtr-02").at(96000).length(48000).offset(48000).fade_out(960).locked();
  t.crossfade(96000, 480, 240);
  t.playlist("Gtr.01").clip(file).name("Gtr-03").at(0).length(4800);
  s.master("Master 1");
  return s;
}

// Under sanitizers a run costs ten times as much, and the fuzz targets go the same ways: there a part of the positions
// must do.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kStride = 5;
#else
constexpr std::size_t kStride = 1;
#endif

TEST(SlowHostileSession, EveryTruncationEndsWell) {
  const std::vector<std::uint8_t> file = small_session().file_bytes();
  for (std::size_t size = 0; size < file.size(); size += kStride) {
    const int status = check_run({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)});
    ASSERT_TRUE(status == 0 || status == 1) << size;
    ASSERT_TRUE(size >= 21 || status == 1) << size;
  }
  EXPECT_EQ(check_run(file), 0);
}

TEST(SlowHostileSession, EveryChangedByteEndsWell) {
  const std::vector<std::uint8_t> image = small_session().image();
  for (std::size_t at = 0; at < std::min<std::size_t>(image.size(), 4096); at += kStride) {
    for (const unsigned value : {0x00U, 0x01U, 0x5aU, 0xffU}) {
      if (image[at] == value) continue;
      std::vector<std::uint8_t> changed = image;
      changed[at] = static_cast<std::uint8_t>(value);
      const int status = check_run(encrypt(std::move(changed)));
      ASSERT_TRUE(status == 0 || status == 1) << "byte " << at << " made " << value;
    }
  }
}

// The readers alone, in memory that ends with the image; and with blocks that whole runs above don't hold.
TEST(SlowHostileSession, EveryCutAndEveryChangedByteOfTheTablesIsRead) {
  SessionBuilder s;
  s.layout.saved_by_at_end = false;
  s.track("Vox").clip(s.audio_file("Vox.wav", 9)).sync(3).gain_db(-1).and_at({70});
  s.bus("Verb", {3, 4}).io_path(PathKind::kLegs, "Pair", {1});
  s.aux("Reverb").send("Pair", -3, {{0, -6}}).input_bus("Verb").takes_legs_of("Pair");
  s.midi_track("Keys").midi_clip("riff", 0, 8000, {{0, 10}, {960, 40}});
  s.plugin_name("ToneEqua", "EQ")
      .instrument("Pad")
      .hardware_insert("A 1")
      .insert(Insert("ToneEqua")
                  .control_values({0.5})
                  .chunk("plug", "x", std::vector<std::uint8_t>(40, 200))
                  .automate({"Gain", 1, 0.5, {{0, 1}}, "dB"}));
  BlockWriter w;
  for (int i = 0; i < 2; ++i) {
    w.open(0x2502).zeros(2).u8(1).u8(0).open(0x103d).zeros(70).close().fill(120, 1).close();  // real-time properties
  }
  w.open(0x262c).open(0x262b).open(0x2628).text("x").three_point(kTickOrigin, 9, 1).close().zeros(8).close().close();
  w.open(0x1012).open(0x1011).open(0x100f).open(0x100e).zeros(8).close().close().close().close();
  s.payload(0x2650, w.take());
  std::vector<std::uint8_t> image = s.image();
  for (std::size_t size = 0; size < image.size(); size += 2 * kStride) tables_of(ByteView(image.data(), size));
  for (std::size_t at = 0; at < image.size(); at += 3 * kStride) {
    const std::uint8_t kept = image[at];
    for (const unsigned value : {0x00U, 0x5aU, 0xffU}) {
      image[at] = static_cast<std::uint8_t>(value);
      tables_of(image);
    }
    image[at] = kept;
  }
}

// One run of the program on an image, within the limits of time and memory that hold for every file.
void expect_within_limits(const std::vector<std::uint8_t>& image, const char* what) {
  const TempFolder folder;
  const std::string path = folder.put("Song.ptx", encrypt(image));
  const auto start = std::chrono::steady_clock::now();
  const ProcessResult result = run_process(FERRITE_PROGRAM, {"--check", path});
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(result.status == 0 || result.status == 1) << what << ": " << result.status << result.err;
  // Two seconds a megabyte; an unoptimised build under sanitizers gets ten times that.
  EXPECT_LT(took.count(), 20.0 * std::max(1.0, static_cast<double>(image.size()) / 1048576)) << what;
}

// The blocks of a sound session with something behind them.
std::vector<std::uint8_t> session_with(const std::vector<std::uint8_t>& more) {
  std::vector<std::uint8_t> image = small_session().image();
  image.insert(image.end(), more.begin(), more.end());
  return image;
}

TEST(SlowHostileSession, BlocksNestedAMillionDeep) {
  constexpr std::uint32_t kDepth = 1'000'000;
  for (const unsigned type : {0x1054U, 0x1052U, 0x261cU, 0x261bU, 0x2624U, 0x262aU, 0x1038U, 0x260fU, 0x7777U}) {
    BlockWriter w;
    w.reserve(kDepth * 9);
    // Each block's content is its content type and the next block.
    for (std::uint32_t depth = 0; depth < kDepth; ++depth) w.u8('Z').u16(1).u32((kDepth - depth) * 9 - 7).u16(type);
    expect_within_limits(session_with(w.take()), "nested");
  }
}

TEST(SlowHostileSession, BlocksThatOverlapWithoutEnd) {
  // Every block reaches to the end of the file: as deep as the file is long, for each reader of ranges.
  for (const unsigned type :
       {0x1029U, 0x2619U, 0x261bU, 0x260cU, 0x260dU, 0x1052U, 0x2519U, 0x2637U, 0x1038U, 0x2612U}) {
    std::vector<std::uint8_t> image = small_session().image();
    const std::size_t end = image.size() + 100'000 * 20;
    BlockWriter w;
    for (std::size_t at = image.size(); at < end; at += 20) {
      w.u8('Z').u16(1).u32(static_cast<std::uint32_t>(end - at - 7)).u16(type).u32(3).raw("Gtr").zeros(4);
    }
    expect_within_limits(session_with(w.take()), "overlapping");
  }
}

TEST(SlowHostileSession, RowsMixesAndPathsInsideEachOther) {
  const std::size_t start = small_session().image().size(), end = start + 1'000'000;
  // A block that reaches to the end of the file.
  const auto open = [&](BlockWriter& w, unsigned type) {
    w.u8('Z').u16(1).u32(static_cast<std::uint32_t>(end - start - w.size() - 4)).u16(type);
  };
  const auto level = [](BlockWriter& w) { w.open(0x1029).zeros(155).close(); };
  const auto lane = [](BlockWriter& w) { w.open(0x260a).zeros(16).u16(1).zeros(18).close(); };
  const auto name = [](BlockWriter& w) { w.open(0x2619).text("Gtr").close(); };
  const std::pair<const char*, std::function<void(BlockWriter&)>> units[] = {
      {"rows", [&](BlockWriter& w) { open(w, 0x261b), name(w), lane(w), w.u32(2).raw("a\x01"); }},
      {"rows and mixes", [&](BlockWriter& w) { open(w, 0x2621), open(w, 0x260d), level(w), name(w), lane(w); }},
      {"slots", [&](BlockWriter& w) { open(w, 0x261b), name(w), open(w, 0x260d), level(w), open(w, 0x260e); }},
      {"panners",
       [&](BlockWriter& w) { open(w, 0x260d), open(w, 0x261b), name(w), open(w, 0x260c), lane(w), lane(w); }},
      {"paths", [&](BlockWriter& w) { open(w, 0x1021), w.u8(6).u8(0).text("Gtr").u32(0).u16(42); }},
      {"inserts", [&](BlockWriter& w) { open(w, 0x1038), w.zeros(16).raw("Lin66SAX").raw("6SMC").zeros(4); }},
      {"MIDI rows", [&](BlockWriter& w) { open(w, 0x2620), open(w, 0x2611), name(w), lane(w); }},
  };
  for (const auto& [what, unit] : units) {
    BlockWriter w;
    while (start + w.size() < end - 1000) unit(w);
    expect_within_limits(session_with(w.zeros(end - start - w.size()).take()), what);
  }
}

// Settings in which every position could begin a document and each guess compares thousands of bytes.
TEST(SlowHostileSession, InsertsThatInviteGuesses) {
  constexpr std::size_t kSize = 2'000'000;
  const std::pair<const char*, std::string> patterns[] = {
      {"packed data", std::string("x\x01\x02\x00", 4)},
      {"lengths", std::string("VC2?\x40\x9c\x00\x00RIFF\x40\x9c\x00\x00", 16)},
      {"braces", "{"},
      {"closed braces", std::string(500, '{') + std::string(500, '}') + std::string(200, '\0')},
      {"texts with braces", "{\n\tindex = \"{"},
      {"shells", std::string("\0\x10\0\0", 4) + std::string(16, 'a') + "XPst"},
      {"controls", std::string("l_\0\0\0\0\0\0", 8)},
      {"text", "abcdefgh"},
  };
  for (const auto& [what, pattern] : patterns) {
    std::vector<std::uint8_t> state(kSize);
    for (std::size_t i = 0; i < kSize; ++i) state[i] = static_cast<std::uint8_t>(pattern[i % pattern.size()]);
    for (std::size_t i = 100; i < kSize; i += 3989) state[i] ^= 0x40;  // where long comparisons end
    BlockWriter w;
    w.open(0x1038).u8(1).zeros(15).raw("ToneEqua").u32(0x01020304).raw("none").bytes(state).close();
    expect_within_limits(session_with(w.zeros(2).take()), what);
  }
}

// Each holder of controls reads the same points.
TEST(SlowHostileSession, ControlsThatShareTheirPoints) {
  BlockWriter inside, w;
  inside.open(0x260b).zeros(16).u16(60000).zeros(12).zeros(8 * 60000 + 2).close().text("Gain").zeros(20);
  const std::vector<std::uint8_t> points = inside.take();
  w.open(0x1038).zeros(40).close();
  constexpr std::uint32_t kHolders = 100'000;
  for (std::uint32_t left = kHolders; left > 0; --left) {
    w.u8('Z').u16(1).u32(left * 9 - 7 + static_cast<std::uint32_t>(points.size())).u16(0x260f);
  }
  expect_within_limits(session_with(w.bytes(points).take()), "controls");
}

TEST(SlowHostileSession, CountsNearTheirLimit) {
  // Numbers all over the session in turn claim to be as large as they can be.
  const std::vector<std::uint8_t> image = small_session().image();
  for (const std::uint32_t claim : {0xffffffffU, 0x7ffffff0U}) {
    for (std::size_t at = 20; at + 4 <= image.size(); at += 2 * kStride) {
      std::vector<std::uint8_t> changed = image;
      for (unsigned i = 0; i < 4; ++i) changed[at + i] = static_cast<std::uint8_t>(claim >> (8 * i));
      const int status = check_run(encrypt(std::move(changed)));
      ASSERT_TRUE(status == 0 || status == 1) << "u32 at " << at;
    }
  }
}

TEST(HostileSession, TextCannotBreakALineOfTheProject) {
  SessionBuilder s;
  const AudioFile file = s.audio_file("Vox.wav", 96000);
  s.track("Vox").comment("one\n  >\n>\r\ntwo").clip(file).name("a\"b'c`d");
  s.marker("x\n  <TRACK", 100);
  const Converted converted = convert(s);
  EXPECT_EQ(converted.status, 0);
  EXPECT_EQ(converted.project.find("\n  <TRACK\""), std::string::npos);
  EXPECT_NE(converted.project.find("NAME \"a_b'c`d\""), std::string::npos);
  int depth = 0;
  for (std::size_t at = 0; at < converted.project.size(); at = converted.project.find('\n', at) + 1) {
    const char first = converted.project[std::min(converted.project.find_first_not_of(' ', at),  //
                                                  converted.project.size() - 1)];
    depth += first == '<' ? 1 : first == '>' ? -1 : 0;
    ASSERT_GE(depth, 0) << converted.project.substr(at, 80);
  }
  EXPECT_EQ(depth, 0);
}

TEST(Determinism, TwoRunsInOneProcessGiveTheSameBytes) {
  const SessionBuilder session = small_session();
  EXPECT_EQ(session.image(), session.image());
  const Converted first = convert(session), second = convert(session);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.project, second.project);
  EXPECT_EQ(first.console, second.console);
}

// What a run tells stays with it, also when the next one has nobody to tell.
TEST(Determinism, ALaterRunAddsNothingToTheTextOfAnEarlierOne) {
  const TempFolder folder;
  ConversionOptions options;
  options.session_path = folder.put("Song.ptx", small_session().file_bytes());
  options.check_only = true;
  NullSink silent;
  FrtSink* const sink_before = std::exchange(text_sink, &silent);
  ConversionResult earlier;
  run_conversion(options, &earlier, nullptr);
  const std::string text = earlier.console_text;
  run_conversion(options, nullptr, nullptr);
  text_sink = sink_before;
  EXPECT_NE(text, "");
  EXPECT_EQ(earlier.console_text, text);
}

TEST(Determinism, LocaleTimeZoneAndWorkingDirectoryDoNotMatter) {
  const TempFolder folder, elsewhere;
  small_session().save(folder.at("Song.ptx"));
  const std::vector<std::string> arguments = {folder.at("Song.ptx"), "-o", folder.at("Song.rpp"), "--overwrite"};
  const ProcessResult plain = run_process(FERRITE_PROGRAM, arguments);
  ASSERT_EQ(plain.status, 0) << plain.out << plain.err;
  const std::string project = read_text(folder.at("Song.rpp"));

  ProcessSetup setup;
  setup.folder = elsewhere.path().string();
  setup.environment = {{"TZ", "Pacific/Kiritimati"}};
  for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
    setup.environment.emplace_back("LC_ALL", locale);
    const ProcessResult moved = run_process(FERRITE_PROGRAM, arguments, setup);
    EXPECT_EQ(moved.status, 0);
    EXPECT_EQ(moved.out, plain.out) << locale;
    EXPECT_EQ(read_text(folder.at("Song.rpp")), project) << locale;
  }
}

// Project, console and report print numbers of their own: a session start in seconds, a tempo.
TEST(Determinism, AnEmbeddersLocaleDoesNotMatter) {
  SessionBuilder session = small_session();
  session.tempo(97.5).timecode(2, 90000);
  const TempFolder folder;
  ConversionOptions options;
  options.session_path = folder.put("Song.ptx", session.file_bytes());
  options.output_path = folder.at("Song.rpp");
  options.overwrite = true;
  const auto all_texts = [&] {
    const Console silent;
    ConversionResult result;
    run_conversion(options, &result, nullptr);
    return result.console_text + result.report_text + read_text(options.output_path);
  };
  const std::string plain = all_texts();
  EXPECT_NE(plain.find("(3600.0000 s)"), plain.npos);
  const CommaLocale german;
  ASSERT_TRUE(german.good);
  EXPECT_EQ(all_texts(), plain);
}

}  // namespace
}  // namespace frt::test

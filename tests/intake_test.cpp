// From a path to a usable session: decryption, what is refused and in which words, who saved it, what is damaged.
#include "stages/intake.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "ptf/ptf_format.h"
#include "support/block_writer.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace frt {
namespace {

using test::BlockWriter;
using test::TempFolder;
using Bytes = std::vector<std::uint8_t>;

Bytes image_with(std::uint8_t type, std::uint8_t key, const Bytes& blocks, bool big_endian = false) {
  BlockWriter w;
  Bytes image = test::session_head(w, type, key).bytes(blocks).take();
  if (big_endian) image[17] = 1;
  return image;
}

// The first root, with the version's block at byte 31.
void version_root(BlockWriter& w, std::uint32_t version) {
  w.open(0x0001).u16(0).open(0x2067).zeros(18).u32(version - 2).close().close();
}
void rate_root(BlockWriter& w, std::uint32_t rate) { w.open(0x1028).u16(0).u32(rate).zeros(8).close(); }

Bytes small_session(std::uint32_t version = 12, std::uint32_t rate = 48000) {
  BlockWriter w;
  version_root(w, version);
  rate_root(w, rate);
  return test::image_of(w.take());
}

class Intake : public testing::Test {
 protected:
  void SetUp() override { PTFFormat::allow_unknown_version = false; }
  void TearDown() override { PTFFormat::allow_unknown_version = false; }

  std::string put(std::string_view name, const Bytes& image) { return folder.put(name, test::encrypt(image)); }

  // The whole intake of a path; gives what was printed.
  std::string refusal(const std::string& path, bool has_progress = false) {
    test::Console console;
    PTFFormat ptf;
    const int result = load_session(ptf, path);
    accepted = accept_session(path, ptf, result, has_progress, problem);
    return console.take();
  }

  TempFolder folder;
  bool accepted = false;
  Problem problem;
};

// ---- decryption ----

// The last image is longer than a piece of reading and than 256 pages of the key.
TEST_F(Intake, DecryptsEveryKeyOfBothFamiliesAndPastPage255) {
  const auto expect_decrypted = [&](unsigned type, unsigned key, std::uint32_t words) {
    BlockWriter w;
    for (std::uint32_t i = 0; i < words; ++i) w.u32(i * 2654435761u);
    const Bytes image = image_with(static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(key), w.take());
    PTFFormat ptf;
    ASSERT_EQ(ptf.unxor(put("s.ptx", image)), 0);
    ASSERT_EQ(ptf.image().size(), image.size());
    EXPECT_TRUE(std::equal(image.begin(), image.end(), ptf.image().data())) << type << " " << key;
  };
  for (unsigned key = 0; key < 256; key += 5) {
    expect_decrypted(5, key, 3000);
    expect_decrypted(1, key, 3000);
  }
  expect_decrypted(5, 0xC3, 400'000);
}

TEST_F(Intake, OtherFilesAreNotDecrypted) {
  const auto changed = [](std::size_t at, std::uint8_t value) {
    Bytes session = small_session();
    session[at] = value;
    return session;
  };
  Bytes short_file = small_session();
  short_file.resize(19);
  for (const Bytes& bytes : {changed(18, 4), changed(5, 'x'), changed(0, 2), short_file, Bytes{}, Bytes(5000, 'x')}) {
    PTFFormat ptf;
    EXPECT_EQ(ptf.load(folder.put("s.ptx", bytes), 48000), -1);
    EXPECT_EQ(ptf.image().size(), 0u);
    EXPECT_EQ(ptf.session_rate(), 0);
  }
  PTFFormat ptf;
  EXPECT_EQ(ptf.load(folder.at("missing.ptx"), 48000), -1);
  EXPECT_EQ(ptf.load(folder.path().string(), 48000), -1);
}

// ---- version, rate, audio files ----

TEST_F(Intake, VersionsDecideBeforeRatesUnlessReadAgain) {
  struct Row {
    std::uint32_t version, rate;
    int result;
    std::int64_t rate_after;
  };
  for (const Row& row : {Row{12, 48000, 0, 48000}, Row{5, 44100, 0, 44100}, Row{4, 48000, -3, 0}, Row{13, 48000, -3, 0},
                         Row{0, 48000, -2, 0}, Row{12, 44099, -4, 44099}, Row{12, 192001, -4, 192001},
                         Row{12, 192000, 0, 192000}, Row{12, 0, -4, 0}}) {
    PTFFormat ptf;
    EXPECT_EQ(ptf.load(put("s.ptx", small_session(row.version, row.rate)), 48000), row.result) << row.version;
    EXPECT_EQ(ptf.session_rate(), row.rate_after) << row.version << " " << row.rate;
  }
  PTFFormat ptf;  // an unknown version is read the second time
  EXPECT_EQ(load_session(ptf, put("s.ptx", small_session(23, 96000))), 0);
  EXPECT_EQ(ptf.version(), 23);
  EXPECT_EQ(ptf.session_rate(), 96000);
}

TEST_F(Intake, VersionsOfOlderMakersStandElsewhere) {
  BlockWriter named;
  named.open(0x0001).u16(0).open(0x0003).u8(0).text("Pro Tools").u32(7).u32(10).u32(99).close().close();
  rate_root(named, 48000);
  PTFFormat ptf;
  EXPECT_EQ(ptf.load(put("named.ptx", test::image_of(named.take())), 48000), 0);
  EXPECT_EQ(ptf.version(), 10);

  // No block at byte 31: one of three bytes.
  for (const auto& [at, stored, version] : {std::tuple{64, 9, 9}, {61, 8, 8}, {58, 5, 7}}) {
    BlockWriter plain;
    plain.open(0x0001).zeros(60).close();
    rate_root(plain, 48000);
    Bytes image = test::image_of(plain.take());
    image[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(stored);
    EXPECT_EQ(ptf.load(put("plain" + std::to_string(at), image), 48000), 0);
    EXPECT_EQ(ptf.version(), version);
  }
}

void numbered_entry(BlockWriter& w, unsigned kind, std::uint32_t parent, std::string_view name, const char* tag) {
  w.u8(kind).u32(parent).text(name).raw(std::string_view(tag, 4));
}

std::vector<std::string> files_of(PTFFormat& ptf, const std::string& path) {
  EXPECT_EQ(ptf.load(path, 48000), 0);
  std::vector<std::string> names;
  for (const AudioFileEntry& entry : ptf.audio_files()) {
    EXPECT_EQ(entry.index, names.size());
    names.emplace_back(entry.name);
  }
  return names;
}

Bytes session_with_files(std::uint32_t count, const Bytes& list, const std::vector<std::uint64_t>& lengths = {}) {
  BlockWriter w;
  version_root(w, 12);
  rate_root(w, 48000);
  w.open(0x1004).u32(count).open(0x103A).bytes(list).close();
  for (const std::uint64_t length : lengths) w.open(0x1003).open(0x1001).zeros(6).u64(length).close().close();
  w.close();
  return test::image_of(w.take());
}

TEST_F(Intake, AudioFilesByKind) {
  BlockWriter list;
  list.u32(5);
  numbered_entry(list, 0, 0xFFFFFFFF, "Disc", "\0\0\0\0");
  numbered_entry(list, 1, 0, "Audio Files", "\0\0\0\0");
  numbered_entry(list, 2, 1, "Kick.wav", "EVAW");
  numbered_entry(list, 2, 1, "Take.grp no file name", "MXFf");  // a file by its kind, whatever its tag says
  numbered_entry(list, 2, 1, "Snare.aif", "\0\0\0\0");
  PTFFormat ptf;
  EXPECT_EQ(files_of(ptf, put("s.ptx", session_with_files(3, list.take(), {100, 1ull << 40}))),
            (std::vector<std::string>{"Kick.wav", "Take.grp no file name", "Snare.aif"}));
  EXPECT_EQ(ptf.audio_file_lengths(), (std::vector<std::int64_t>{100, std::int64_t{1} << 40, 0}));
}

TEST_F(Intake, AudioFilesByNameAndTag) {
  // The list's own count is wrong, so entries don't tell their kind.
  BlockWriter list;
  list.u32(99).zeros(5);
  const auto entry = [&](std::string_view name, const char* tag) {
    list.text(name).raw(std::string_view(tag, 4)).zeros(5);
  };
  entry("Audio Files", "\0\0\0\0");
  entry("Kick.wav", "WAVE");
  entry("Fade Files", "WAVE");
  entry("Loop.grp", "WAVE");
  entry("Bass", "\0\0\0\0");
  entry("Bass.wav", "\0\0\0\0");
  entry("Film", "MXFf");
  entry("Snare", "FFIA");
  entry("One more.wav", "WAVE");
  PTFFormat ptf;
  EXPECT_EQ(files_of(ptf, put("s.ptx", session_with_files(3, list.take()))),
            (std::vector<std::string>{"Kick.wav", "Bass.wav", "Snare"}));
}

TEST_F(Intake, ACountIsOnlyAClaim) {
  BlockWriter list;
  list.u32(0xFFFFFFFF).zeros(5).text("Kick.wav").raw("WAVE").zeros(5);
  list.u32(0xFFFFFFF0).raw("the rest");  // a name far past the end
  PTFFormat ptf;
  EXPECT_EQ(files_of(ptf, put("s.ptx", session_with_files(0xFFFFFFFF, list.take()))),
            (std::vector<std::string>{"Kick.wav"}));
}

TEST_F(Intake, BigEndianSessionsReadTheOtherWayRound) {
  const auto u32 = [](std::uint32_t v) { return __builtin_bswap32(v); };
  const auto u16 = [](unsigned v) { return ((v & 255u) << 8) | (v >> 8); };
  BlockWriter w;
  const auto block = [&](unsigned content_type, const Bytes& content) {
    w.u8('Z')
        .u16(u16(1))
        .u32(u32(static_cast<std::uint32_t>(content.size() + 2)))
        .u16(u16(content_type))
        .bytes(content);
    return w.take();
  };
  const Bytes version = block(0x2067, BlockWriter().zeros(18).u32(u32(8)).take());
  const Bytes list =
      block(0x103A, BlockWriter().u32(u32(1)).u8(2).u32(0xFFFFFFFF).u32(u32(8)).raw("Kick.wavWAVE").take());
  BlockWriter all;
  all.bytes(block(0x0001, BlockWriter().u16(0).bytes(version).take()))
      .bytes(block(0x1028, BlockWriter().u16(0).u32(u32(88200)).take()))
      .bytes(block(0x1004, BlockWriter().u32(u32(1)).bytes(list).take()));
  PTFFormat ptf;
  EXPECT_EQ(files_of(ptf, put("s.ptx", image_with(5, 0x51, all.take(), true))), (std::vector<std::string>{"Kick.wav"}));
  EXPECT_EQ(ptf.session_rate(), 88200);
  EXPECT_EQ(ptf.version(), 10);
}

TEST_F(Intake, EveryTruncationIsReadOrRefused) {
  BlockWriter list;
  list.u32(2);
  numbered_entry(list, 2, 0, "Kick.wav", "WAVE");
  numbered_entry(list, 2, 0, "Snare.wav", "WAVE");
  const Bytes whole = session_with_files(2, list.take(), {100, 200});
  std::set<std::size_t> root_ends;
  for (const Block& root : walk_roots(ByteView(whole.data(), whole.size()))) root_ends.insert(root.end());
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    const std::string path = put("cut.ptx", Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)));
    const std::string text = refusal(path);
    EXPECT_EQ(accepted, text.empty()) << n;
    PTFFormat ptf;
    if (ptf.unxor(path) != 0) continue;
    const SessionImage image(ptf.image());
    const DamageResult damage = measure_damage(image);
    // A cut between two roots can't be seen.
    EXPECT_EQ(damage.last_end == n && damage.walked && damage.break_pos == n, root_ends.contains(n)) << n;
    read_saved_by(image);
  }
}

// ---- refusals ----

TEST_F(Intake, AMissingFile) {
  const std::string path = folder.at("My Song.ptx");
  EXPECT_EQ(refusal(path), "\n  No such file:\n    " + path +
                               "\n\n  If the name has spaces, put it in quotes:\n    ferrite \"My Song.ptx\"\n");
  EXPECT_EQ(refusal(path, true), "\n  No such file:\n    " + path +
                                     "\n\n  Not converted: the session file was not found. The file may have been "
                                     "moved, renamed or deleted, or its drive is not connected.\n");
  EXPECT_FALSE(accepted);
  EXPECT_EQ(problem.kind, "");
}

TEST_F(Intake, OlderSessionsAreToldByNameOrByTheirBytes) {
  Bytes older = small_session();
  older[18] = 1;
  for (const std::string& path :
       {put("older.ptx", older), put("SHOUTED.PTS", small_session()), folder.put("empty.ptf", "")}) {
    const std::string text = refusal(path);
    EXPECT_TRUE(text.starts_with("\n  Could not convert: " + path + "\n  Reason: this is an OLDER Pro Tools")) << text;
    EXPECT_TRUE(text.ends_with("and convert that file.\n")) << text;
    EXPECT_FALSE(accepted);
    EXPECT_TRUE(refusal(path, true)
                    .ends_with("\n  Not converted: this is an older Pro Tools session format (.pts or .ptf). Save the "
                               "session as a .ptx "
                               "from Pro Tools 10 or later, then convert that file.\n"));
  }
  EXPECT_EQ(problem.kind, "");
}

TEST_F(Intake, RatesOutOfRangeAndEmptyFiles) {
  const struct {
    std::string path;
    const char *reason, *not_converted;
  } rows[] = {
      {put("rate.ptx", small_session(12, 32000)), "this session is at 32000 Hz",
       "the session is at 32000 Hz, outside the supported range (44100 - 192000 Hz).\n"},
      {folder.put("empty.ptx", ""), "the file is EMPTY (0 bytes).",
       "the session file is empty (0 bytes), so there is no session to convert.\n"},
  };
  for (const auto& row : rows) {
    const std::string text = refusal(row.path);
    EXPECT_TRUE(text.starts_with("\n  Could not read: " + row.path + "\n  Reason: " + row.reason)) << text;
    EXPECT_EQ(refusal(row.path, true), text + "\n  Not converted: " + row.not_converted);
    EXPECT_FALSE(accepted);
  }
  EXPECT_EQ(problem.kind, "");
}

TEST_F(Intake, UnreadableFilesAreDiagnosed) {
  const std::string other = folder.put("song.ptx", "RIFF, not a session at all");
  EXPECT_EQ(refusal(other),
            "\n  Could not read: " + other +
                "\n  Reason: that session could not be decrypted - is this really a Pro Tools session file?.  (code -1)"
                "\n  Decryption: FAILED\n\n  Please send this text and the .ptx file to support@kestrel.example.\n");
  EXPECT_EQ(problem.kind, "unreadable");
  EXPECT_EQ(problem.detail, "the session could not be decrypted - is this really a Pro Tools session file? (code -1)");

  problem = {};
  BlockWriter w;
  version_root(w, 12);
  w.raw("..ProTools Session, forty characters are shown and no more").zeros(4);
  const Bytes image = test::image_of(w.take());
  const std::string no_rate = put("norate.ptx", image);
  EXPECT_EQ(refusal(no_rate, true), "\n  Could not read: " + no_rate +
                                        "\n  Reason: that session was decrypted but the contents could not be parsed.  "
                                        "(code -4)\n  Decryption: OK (" +
                                        std::to_string(image.size()) +
                                        " bytes)\n  Version byte: 0\n"
                                        "  Header text: ProTools Session, forty characters are s\n"
                                        "\n  kestrel will offer to send this as a problem report.\n");
  EXPECT_EQ(problem.detail, "the session was decrypted but the contents could not be parsed (code -4)");

  EXPECT_NE(refusal(put("v0.ptx", small_session(0))).find("has no readable version marker.  (code -2)"),
            std::string::npos);
  EXPECT_EQ(problem.detail, "the session was decrypted but the contents could not be parsed (code -4)")
      << "the first problem stays";
  EXPECT_NE(refusal(folder.path().string()).find("Decryption: FAILED"), std::string::npos);

  EXPECT_EQ(refusal(put("sound.ptx", small_session(12, 96000)), true), "");
  EXPECT_TRUE(accepted);
}

// ---- who saved it ----

std::string saved_text(const Bytes& image) {
  const SessionImage session(ByteView(image.data(), image.size()));
  const SavedBy saved = read_saved_by(session);
  return std::string(saved.product) + "|" + std::string(saved.version) + "|" + std::to_string(saved.version_major);
}

Bytes with_header(std::string_view product, std::string_view next, std::size_t before = 5) {
  BlockWriter w;
  return test::image_of(w.zeros(before).text(product).zeros(7).text(next).zeros(20).take());
}

Bytes with_product_block(std::string_view product, std::string_view version) {
  BlockWriter w;
  w.zeros(2000).open(0x0003).u8(0).text(product).zeros(16).text(version).zeros(9).close();
  return test::image_of(w.take());
}

TEST(SavedByTest, HeaderNamesProductThenVersion) {
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", "12.5.1")), "Pro Tools HD|12.5.1|12");
  EXPECT_EQ(saved_text(with_header("Pro Tools Ultimate", "2023.12")), "Pro Tools Ultimate|2023.12|2023");
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", "99999999999.1")), "Pro Tools HD|99999999999.1|100000000");
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", "Release")), "||-1");
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", ".5")), "||-1");
  EXPECT_EQ(saved_text(with_header("Pro Tools", "12.5")), "||-1") << "nine characters are no product here";
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", "12.5.1", 1000)), "||-1") << "behind the first kilobyte";
  EXPECT_EQ(saved_text(with_header("Pro Tools HD", "12.5.1", 980)), "Pro Tools HD||-1") << "cut behind the product";
}

TEST(SavedByTest, ProductBlockWhereTheHeaderSaysNothing) {
  EXPECT_EQ(saved_text(with_product_block("Pro Tools", "10.3.8")), "Pro Tools|10.3.8|10");
  EXPECT_EQ(saved_text(with_product_block("Pro Tools", "Release")), "Pro Tools||-1");
  EXPECT_EQ(saved_text(with_product_block("Logic", "10.3.8")), "||-1");
  EXPECT_EQ(saved_text(with_product_block("Pro Tools" + std::string(56, 'x'), "10.3.8")), "||-1");
  Bytes both = with_header("Pro Tools HD", "12.5");
  const Bytes block = with_product_block("Pro Tools", "10.3.8");
  both.insert(both.end(), block.begin() + 20, block.end());
  EXPECT_EQ(saved_text(both), "Pro Tools HD|12.5|12");
}

// ---- damage ----

struct Damage {
  std::string text;
  DamageResult result;
};

Damage damage_of(const Bytes& image, bool check_only) {
  test::Console console;
  const SessionImage session(ByteView(image.data(), image.size()));
  const DamageResult result = measure_damage(session);
  report_damage(result, session.size(), check_only);
  return {console.take(), result};
}

TEST(DamageTest, ASoundSessionSaysNothing) {
  EXPECT_EQ(damage_of(small_session(), false).text, "");
  EXPECT_EQ(damage_of(small_session(), true).text, "damage none\n");
  EXPECT_EQ(damage_of({}, true).text, "damage none\n");
  EXPECT_EQ(damage_of(Bytes(500, 0), true).text, "damage none\n") << "no block at all";
}

TEST(DamageTest, BytesBehindTheLastBlockOrABreakBeforeIt) {
  Bytes image = small_session();
  image.resize(image.size() + 3);
  const std::string text = damage_of(image, true).text;
  EXPECT_TRUE(
      text.starts_with("damage incomplete\n  *** THIS SESSION FILE LOOKS INCOMPLETE ***\n      3 byte(s) after"))
      << text;
  EXPECT_EQ("damage incomplete\n" + damage_of(image, false).text, text);

  BlockWriter w;
  version_root(w, 12);
  const std::size_t at = 20 + w.size();
  w.zeros(1);
  rate_root(w, 48000);
  image = test::image_of(w.take());
  const Damage damage = damage_of(image, true);
  EXPECT_EQ(damage.result.break_pos, at);
  EXPECT_TRUE(damage.text.starts_with("damage damaged\n  *** THIS SESSION FILE IS DAMAGED ***\n")) << damage.text;
  const std::string percent =
      format_text("byte %zu, %.0f%% of", at, static_cast<double>(at) * 100.0 / static_cast<double>(image.size()));
  EXPECT_NE(damage.text.find(percent), std::string::npos) << damage.text;
}

TEST(DamageTest, TheWalkReachesBlocksInTheLastBytes) {
  // A root, then a root of one byte, too late to be looked for but not to be walked; inside the first one a false
  // block that seems to end with the image.
  BlockWriter w;
  w.open(0x0001).zeros(3);
  w.u8('Z').u16(1).u32(2 + 10 + 8).zeros(2 + 10).close();
  w.u8('Z').u16(1).u32(1).u8(7);
  const Damage damage = damage_of(test::image_of(w.take()), true);
  EXPECT_EQ(damage.text, "damage none\n");
  EXPECT_TRUE(damage.result.walked);
}

}  // namespace
}  // namespace frt

// From a path to a usable session: decryption, what is refused and in which words, who saved it, what is damaged.
#include "stages/intake.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "image/damage.h"
#include "support/console.h"
#include "support/tables.h"

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
  std::string refusal(const std::string& path) {
    test::Console console;
    PTFFormat ptf;
    const int result = load_session(ptf, path);
    accepted = accept_session(path, ptf, result, false, problem);
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
    const Damage damage = measure_damage(SessionImage(ptf.image()));
    // A cut between two roots can't be seen.
    EXPECT_EQ(damage.last_end == n && damage.walked && damage.break_pos == n, root_ends.contains(n)) << n;
  }
}

// ---- refusals ----

TEST_F(Intake, OlderSessionsAreToldByNameOrByTheirBytes) {
  Bytes older = small_session();
  older[18] = 1;
  for (const std::string& path :
       {put("older.ptx", older), put("SHOUTED.PTS", small_session()), folder.put("empty.ptf", "")}) {
    EXPECT_TRUE(refusal(path).starts_with("\n  Could not convert: " + path + "\n  Reason: this is an OLDER")) << path;
    EXPECT_FALSE(accepted);
  }
  EXPECT_EQ(problem.kind, "");
}

TEST_F(Intake, UnreadableFilesAreDiagnosedAndTheFirstProblemStays) {
  BlockWriter w;
  version_root(w, 12);
  w.raw("..ProTools Session, forty characters are shown and no more").zeros(4);
  const std::string text = refusal(put("norate.ptx", test::image_of(w.take())));
  EXPECT_NE(text.find("\n  Header text: ProTools Session, forty characters are s\n"), std::string::npos) << text;
  EXPECT_EQ(problem.kind, "unreadable");
  EXPECT_NE(refusal(put("v0.ptx", small_session(0))).find("has no readable version marker.  (code -2)"),
            std::string::npos);
  EXPECT_EQ(problem.detail, "the session was decrypted but the contents could not be parsed (code -4)");
  EXPECT_NE(refusal(folder.path().string()).find("Decryption: FAILED"), std::string::npos);
  EXPECT_EQ(refusal(put("sound.ptx", small_session(12, 96000))), "");
  EXPECT_TRUE(accepted);
}

// ---- who saved it ----

std::string saved_by(const Bytes& image) {
  const std::string row = test::tables_of(image).rows("session");
  const std::size_t at = row.find("saved by ") + 9;
  return row.substr(at, row.find('\n') - at);
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

TEST(SavedBy, TheHeaderNamesProductThenVersionElseTheProductBlock) {
  Bytes both = with_header("Pro Tools HD", "12.5");
  const Bytes block = with_product_block("Pro Tools", "10.3.8");
  both.insert(both.end(), block.begin() + 20, block.end());
  const struct {
    const char* what;
    Bytes image;
    const char* read;
  } cases[] = {
      {"header", with_header("Pro Tools HD", "12.5.1"), "\"Pro Tools HD\" \"12.5.1\""},
      {"no version", with_header("Pro Tools HD", "Release"), "\"\" \"\""},
      {"a dot first", with_header("Pro Tools HD", ".5"), "\"\" \"\""},
      {"nine characters are no product here", with_header("Pro Tools", "12.5"), "\"\" \"\""},
      {"behind the first kilobyte", with_header("Pro Tools HD", "12.5.1", 1000), "\"\" \"\""},
      {"cut behind the product", with_header("Pro Tools HD", "12.5.1", 980), "\"Pro Tools HD\" \"\""},
      {"block", block, "\"Pro Tools\" \"10.3.8\""},
      {"block without a version", with_product_block("Pro Tools", "Release"), "\"Pro Tools\" \"\""},
      {"another product", with_product_block("Logic", "10.3.8"), "\"\" \"\""},
      {"too long", with_product_block("Pro Tools" + std::string(56, 'x'), "10.3.8"), "\"\" \"\""},
      {"both", both, "\"Pro Tools HD\" \"12.5\""},
  };
  for (const auto& one : cases) EXPECT_EQ(saved_by(one.image), one.read) << one.what;
  const Bytes huge = with_header("Pro Tools HD", "99999999999.1");
  EXPECT_EQ(read_saved_by(SessionImage(ByteView(huge.data(), huge.size()))).version_major, 100000000);
}

// ---- damage ----

TEST(DamageTest, BytesBehindTheLastBlockOrABreakBeforeIt) {
  const auto damage_of = [](const Bytes& image) {
    test::Console console;
    const Damage damage = measure_damage(SessionImage(ByteView(image.data(), image.size())));
    report_damage(damage, true);
    return std::pair(console.take(), damage.break_pos);
  };
  for (const Bytes& sound : {small_session(), Bytes{}, Bytes(500, 0)})
    EXPECT_EQ(damage_of(sound).first, "damage none\n");
  Bytes longer = small_session();
  longer.resize(longer.size() + 3);
  EXPECT_TRUE(damage_of(longer).first.starts_with(
      "damage incomplete\n  *** THIS SESSION FILE LOOKS INCOMPLETE ***\n      3 byte(s) after"));

  BlockWriter w;
  version_root(w, 12);
  const std::size_t at = 20 + w.size();
  w.zeros(1);
  rate_root(w, 48000);
  EXPECT_EQ(damage_of(test::image_of(w.take())).second, at);
  // A root, then a root of one byte, too late to be looked for but not to be walked; inside the first one a false
  // block that seems to end with the image.
  w.open(0x0001).zeros(3).u8('Z').u16(1).u32(2 + 10 + 8).zeros(2 + 10).close();
  w.u8('Z').u16(1).u32(1).u8(7);
  EXPECT_EQ(damage_of(test::image_of(w.take())).first, "damage none\n");
}

}  // namespace
}  // namespace frt

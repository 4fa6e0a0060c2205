// Files: reading whole ones, and writing so that a failure costs nothing that was there.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "base/file.h"
#include "support/temp_folder.h"

namespace frt {
namespace {

namespace fs = std::filesystem;
using test::read_text;
using test::TempFolder;

bool write_file(const std::string& path, std::string_view text) {
  OutputFile file;
  return file.open(path) && file.write(text) && file.commit();
}

unsigned mode_of(const std::string& path) {
  struct stat info {};
  ::stat(path.c_str(), &info);
  return info.st_mode & 0777u;
}

// Writes beyond n bytes fail while it lives, as on a full disc.
class FullDisc {
 public:
  explicit FullDisc(rlim_t n) : handler_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{n, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisc() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST(OutputFile, ANewFileGetsTheUsualModeAndAReplacedOneKeepsIts) {
  const TempFolder folder;
  const std::string path = folder.at("song.rpp");
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(write_file(path, "old and longer"));
  ::umask(mask);
  EXPECT_EQ(mode_of(path), 0640u);

  ::chmod(path.c_str(), 0604);
  EXPECT_TRUE(write_file(path, "new"));
  EXPECT_EQ(read_text(path), "new");
  EXPECT_EQ(mode_of(path), 0604u);
  EXPECT_EQ(folder.count(), 1u);
}

TEST(OutputFile, ALinkStaysALink) {
  const TempFolder folder;
  fs::create_directory(folder.path() / "real");
  folder.put("real/song.rpp", "old");
  fs::create_symlink("real/song.rpp", folder.at("link.rpp"));
  fs::create_symlink("real/later.rpp", folder.at("dangling.rpp"));
  fs::create_symlink("circle.rpp", folder.at("circle.rpp"));

  EXPECT_TRUE(write_file(folder.at("link.rpp"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.at("link.rpp")));
  EXPECT_EQ(read_text(folder.at("real/song.rpp")), "new");

  EXPECT_TRUE(write_file(folder.at("dangling.rpp"), "made"));
  EXPECT_TRUE(fs::is_symlink(folder.at("dangling.rpp")));
  EXPECT_EQ(read_text(folder.at("real/later.rpp")), "made");

  EXPECT_FALSE(write_file(folder.at("circle.rpp"), "never"));
}

TEST(OutputFile, AWriteErrorOrNoCommitLeavesWhatStoodThere) {
  const TempFolder folder;
  const std::string path = folder.put("song.rpp", "old");
  EXPECT_TRUE(OutputFile().open(path)) << "and never committed";
  OutputFile file;
  ASSERT_TRUE(file.open(path));
  {
    const FullDisc disc(4096);
    EXPECT_TRUE(file.write(std::string(4096, 'a')));
    EXPECT_FALSE(file.write("one too many"));
  }
  EXPECT_FALSE(file.write("room again")) << "a failure must not be forgotten";
  EXPECT_FALSE(file.commit());
  EXPECT_EQ(read_text(path), "old");
  EXPECT_EQ(folder.count(), 1u);
}

TEST(OutputFile, DevicesArePassedThrough) {
  EXPECT_TRUE(write_file("/dev/null", "gone"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(OutputFile, RefusesWhereNoFileCanBe) {
  const TempFolder folder;
  folder.put("file", "x");
  OutputFile file;
  for (const std::string& path : {std::string(), folder.path().string(), folder.at("missing/song.rpp"),
                                  folder.at("song.rpp/"), folder.at("file/song.rpp")}) {
    EXPECT_FALSE(file.open(path)) << path;
  }
  EXPECT_FALSE(file.commit());
  EXPECT_EQ(folder.count(), 1u);
}

// As a user who may not do everything: in a process of its own, since tests may run as root.
template <typename Do>
bool without_rights(Do what) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool nobody = ::geteuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
    ::_exit(nobody && what() ? 0 : 1);
  }
  int status = 1;
  ::waitpid(child, &status, 0);
  return status == 0;
}

// Nothing could be kept safe in a folder where no second file can stand, or under a name that may not be replaced.
TEST(OutputFile, WhatMayNotBeWrittenIsRefused) {
  const TempFolder folder;
  const std::string locked = folder.put("locked.rpp", "old"), kept = folder.at("closed/kept.rpp");
  ::chmod(folder.path().c_str(), 0777);
  ::chmod(locked.c_str(), 0444);
  fs::create_directory(folder.at("closed"));
  folder.put("closed/kept.rpp", "old");
  ::chmod(kept.c_str(), 0666);
  ::chmod(folder.at("closed").c_str(), 0555);
  EXPECT_TRUE(without_rights([&] { return write_file(folder.at("new.rpp"), "new"); }));
  EXPECT_FALSE(without_rights([&] { return write_file(kept, "new"); }));
  EXPECT_FALSE(without_rights([&] { return write_file(locked, "new"); }));
  EXPECT_EQ(read_text(kept), "old");
  EXPECT_EQ(read_text(locked), "old");
  ::chmod(folder.at("closed").c_str(), 0755);
}

TEST(ReadFile, GivesEveryByteInPieces) {
  const TempFolder folder;
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kReadPiece - 1, kReadPiece, kReadPiece + 1,
                                 3 * kReadPiece, std::size_t{9} << 20}) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i * 31 + i / 4096);
    const std::string path = folder.put("bytes", content);
    std::uint64_t next = 0;
    const auto bytes = read_file(path, [&](std::uint8_t* piece, std::size_t n, std::uint64_t at) {
      EXPECT_EQ(at, next);
      EXPECT_EQ(std::string_view(reinterpret_cast<char*>(piece), n), std::string_view(content).substr(at, n));
      next += n;
      return true;
    });
    ASSERT_TRUE(bytes) << size;
    EXPECT_EQ(next, size);
    EXPECT_TRUE(bytes->view().text(0, size) == content && bytes->size() == size) << size;
  }
}

TEST(ReadFile, SaysNoForWhatIsNoFile) {
  const TempFolder folder;
  EXPECT_FALSE(read_file(folder.at("missing")));
  EXPECT_FALSE(read_file(folder.path().string()));
  EXPECT_FALSE(read_file(folder.put("x", "x"), [](auto...) { return false; }));

  EXPECT_TRUE(is_empty_file(folder.put("empty", "")));
  EXPECT_FALSE(is_empty_file(folder.path().string()));
  EXPECT_FALSE(is_empty_file(folder.at("missing")));

  EXPECT_EQ(read_head(folder.put("long", "0123456789"), 4), "0123");
  EXPECT_EQ(read_head(folder.path().string(), 4), "");
}

}  // namespace
}  // namespace frt

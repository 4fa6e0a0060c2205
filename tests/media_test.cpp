// Where a file is found, and how the project names it: places and their order, namesakes, and what is never opened.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <map>

#include "base/path.h"
#include "mix/audio_header.h"
#include "mix/media_files.h"
#include "support/session_builder.h"
#include "support/temp_folder.h"

namespace frt::test {
namespace {

namespace fs = std::filesystem;

TEST(Path, FilesAsTheProjectNamesThem) {
  struct Row {
    std::string output, path, file;
  };
  const Row rows[] = {
      {"S.rpp", "./Audio Files/x.wav", "./Audio Files/x.wav"},
      {"./S.rpp", "./Audio Files/x.wav", "./Audio Files/x.wav"},
      {"x/../S.rpp", "./Audio Files/x.wav", "./Audio Files/x.wav"},
      {"Album/S.rpp", "Album/Audio Files/x.wav", "Audio Files/x.wav"},
      {"x/out.rpp", "./Audio Files/x.wav", "../Audio Files/x.wav"},
      {"x/y/out.rpp", "./Audio Files/x.wav", "../../Audio Files/x.wav"},
      {"a/./b/S.rpp", "a/b/../Audio/x.wav", "../Audio/x.wav"},
      {"Album/S.rpp", "Album/x.wav", "x.wav"},
      {"../out/S.rpp", "../Audio Files/x.wav", "../Audio Files/x.wav"},
      {"../out/S.rpp", "./Audio Files/x.wav", "/home/me/Audio Files/x.wav"},
      {"/out/S.rpp", "./Audio Files/x.wav", "/home/me/Audio Files/x.wav"},
      {"/out/S.rpp", "../Audio Files/x.wav", "/home/Audio Files/x.wav"},
      {"C:\\out\\S.rpp", "./Audio Files/x.wav", "/home/me/Audio Files/x.wav"},
      {"Album/S.rpp", "/audio/x.wav", "/audio/x.wav"},
      {"Album/S.rpp", "C:\\m/x.wav", "C:\\m/x.wav"},
      {"Album/S.rpp", "x.wav", "x.wav"},
      {"Album\\S.rpp", "Album\\Audio Files/x.wav", "Audio Files/x.wav"},
  };
  for (const Row& row : rows) {
    const std::size_t end = row.output.find_last_of("/\\");
    const std::string folder = end == row.output.npos ? "." : row.output.substr(0, end);
    EXPECT_EQ(path_from_project(row.path, folder, "/home/me"), row.file) << row.output << " and " << row.path;
  }
  EXPECT_EQ(path_from_project("a/x.wav", "/out", ""), "a/x.wav");
  EXPECT_EQ(folder_from_project("Album", "Album", "/home/me"), ".");
  EXPECT_EQ(folder_from_project("./Audio Files", ".", "/home/me"), "./Audio Files");
}

// ---- headers ----

std::string le(std::uint64_t value, int bytes) {
  std::string out;
  for (int i = 0; i < bytes; ++i) out += i < 8 ? static_cast<char>(value >> (8 * i)) : '\0';
  return out;
}
std::string be32(std::uint32_t value) {
  std::string out = le(value, 4);
  return {out.rbegin(), out.rend()};
}
std::string chunk(const std::string& name, std::uint64_t size, const std::string& content) {
  return name + le(size, 4) + content;
}
std::string format_chunk(unsigned form, unsigned block_align) {
  return chunk("fmt ", 16, le(form, 2) + le(2, 2) + le(48000, 4) + le(0, 4) + le(block_align, 2) + le(24, 2));
}
std::string wav(std::uint64_t frames, unsigned block_align = 6) {
  return "RIFF" + le(0, 4) + "WAVE" + format_chunk(1, block_align) + chunk("data", frames * block_align, "");
}

std::optional<std::uint64_t> frames_of(const std::string& bytes) {
  const TempFolder folder;
  const auto file = RegularFile::open(folder.put("x", bytes));
  return stated_frames(*file);
}

TEST(AudioHeader, FramesByKind) {
  const std::string head = "RIFF" + le(0, 4) + "WAVE", data = chunk("data", 600, "");
  std::string many;
  for (int i = 0; i < 300; ++i) many += chunk("junk", 0, "");
  struct Row {
    std::string what, bytes;
    std::optional<std::uint64_t> frames;
  };
  const Row rows[] = {
      {"plain", wav(100), 100},
      {"floats", head + format_chunk(3, 8) + data, 75},
      {"told further behind", head + format_chunk(0xFFFE, 6) + data, 100},
      {"an odd chunk is padded", head + chunk("bext", 3, std::string("abc\0", 4)) + format_chunk(1, 6) + data, 100},
      {"the sound first", head + chunk("data", 12, std::string(12, 'x')) + format_chunk(1, 6), 2},
      {"long",
       "RF64" + le(0, 4) + "WAVE" + chunk("ds64", 28, le(0, 8) + le(6'000'000'000, 8) + le(0, 12)) +
           format_chunk(1, 6) + chunk("data", 0xFFFFFFFF, ""),
       1'000'000'000},
      {"long, but not told", head + format_chunk(1, 6) + chunk("data", 0xFFFFFFFF, ""), std::nullopt},
      {"a size of 0", wav(0), 0},
      {"compressed", head + format_chunk(2, 6) + data, std::nullopt},
      {"no block align", head + format_chunk(1, 0) + data, std::nullopt},
      {"too many chunks ahead", head + many + format_chunk(1, 6) + data, std::nullopt},
      {"nothing", "", std::nullopt},
      {"another file", std::string(100, 'x'), std::nullopt},
  };
  for (const Row& row : rows) EXPECT_EQ(frames_of(row.bytes), row.frames) << row.what;
  const std::string channels("\0\2", 2);
  EXPECT_EQ(frames_of("FORM" + le(0, 4) + "AIFC" + "COMM" + be32(18) + channels + be32(77) + std::string(12, 'x')),
            77u);
  // Whatever is cut off, no other number comes out.
  const std::string whole = wav(100);
  for (std::size_t n = 0; n < whole.size(); ++n) EXPECT_EQ(frames_of(whole.substr(0, n)), std::nullopt) << n;
}

// ---- places ----

// A session that lay in Disk/Music/Album/Song, now in a folder of that name, with an album and a disc around it.
struct Lay {
  SessionBuilder session;
  TempFolder disk;
  ConversionOptions options;

  Lay() {
    session.lies_in({"Disk", "Music", "Album", "Song"});
    fs::create_directories(disk.at("Music/Album/Song/Audio Files"));
    options.session_path = disk.at("Music/Album/Song/Song.ptx");
  }
  std::string put(const std::string& path, const std::string& content = wav(100)) const {
    fs::create_directories(fs::path(disk.at(path)).parent_path());
    return disk.put(path, content);
  }
  // What each file of the session's list was found as, in order: its path below the disc, and what is said of it.
  std::vector<std::string> found(MediaCounts* counts = nullptr) {
    const std::vector<std::uint8_t> image = session.image();
    SessionImage blocks(ByteView(image.data(), image.size()));
    const std::string file = disk.put("Song.ptx", session.file_bytes());
    PTFFormat ptf;
    ptf.load(file, 48000);
    const Session read =
        read_session(blocks, {12, 48000, ptf.audio_files(), ptf.audio_file_lengths(), ptf.audio_file_facts()}, {});
    MediaFiles media(media_places(options, options.session_path), read.media);
    std::vector<std::string> lines;
    for (const AudioFileEntry& entry : read.media.files) {
      MediaFile& one = media.resolve(entry.name, entry.index);
      ++one.clips;
      std::string path = one.path;
      if (path.starts_with(disk.path().string())) path = path.substr(disk.path().string().size() + 1);
      lines.push_back(path + (one.found ? "" : " missing") + (one.outside ? " outside" : "") +
                      (one.differs ? " differs" : ""));
    }
    const MediaCounts checked = media.check();
    if (counts) *counts = checked;
    return lines;
  }
};
using Lines = std::vector<std::string>;

TEST(MediaFiles, EachPlaceInItsTurn) {
  Lay lay;
  for (const char* name : {"here.wav", "sub.wav", "bounced.wav", "deep.wav", "album.wav", "gone.wav", "lost.wav"}) {
    const std::string file = name;
    const std::string folder = file == "sub.wav"     ? "Takes"
                               : file == "deep.wav"  ? "Disk/Music/Album/Song/Audio Files/Deep"
                               : file == "album.wav" ? "Disk/Music/Album/Other/Audio Files"
                               : file == "lost.wav"  ? "Disk/Elsewhere"
                                                     : "Audio Files";
    lay.session.audio_file(file, 100, folder);
  }
  lay.put("Music/Album/Song/Audio Files/here.wav");
  lay.put("Music/Album/Song/Takes/sub.wav");
  lay.put("Music/Album/Song/Bounced Files/bounced.wav");
  lay.put("Music/Album/Song/Audio Files/Deep/deep.wav");
  lay.put("Music/Album/Other/Audio Files/album.wav");
  MediaCounts counts;
  const std::string song = "Music/Album/Song/";
  EXPECT_EQ(lay.found(&counts),
            (Lines{song + "Audio Files/here.wav", song + "Takes/sub.wav", song + "Bounced Files/bounced.wav",
                   song + "Audio Files/Deep/deep.wav", "Music/Album/Other/Audio Files/album.wav outside",
                   song + "Audio Files/gone.wav missing", "/Volumes/Disk/Elsewhere/lost.wav missing outside"}));
  EXPECT_EQ(counts.sibling_hits, 2);
  EXPECT_EQ(counts.found_outside, 1);  // the deep one lies inside
  EXPECT_EQ(counts.missing_files, (Lines{"gone.wav", "lost.wav"}));
  EXPECT_EQ(counts.missing_outside, 1);
}

TEST(MediaFiles, ANamesakeOfAnotherLengthIsPassedOver) {
  Lay lay;
  lay.session.audio_file("a.wav", 100);                     // another in the media folder, its own among the bounces
  lay.session.audio_file("b.wav", 100);                     // another only
  lay.session.audio_file("c.wav", 100, "Disk/Else/Where");  // another only, and its own lay outside
  lay.session.audio_file("d.wav", 100);                     // one whose header says nothing
  lay.put("Music/Album/Song/Audio Files/a.wav", wav(99));
  lay.put("Music/Album/Song/Bounced Files/a.wav");
  lay.put("Music/Album/Song/Audio Files/b.wav", wav(101));
  lay.put("Music/Album/Song/Audio Files/c.wav", wav(101));
  lay.put("Music/Album/Song/Audio Files/d.wav", "mp3");
  MediaCounts counts;
  EXPECT_EQ(lay.found(&counts),
            (Lines{"Music/Album/Song/Bounced Files/a.wav", "Music/Album/Song/Audio Files/b.wav differs",
                   "/Volumes/Disk/Else/Where/c.wav missing outside", "Music/Album/Song/Audio Files/d.wav"}));
  EXPECT_EQ(counts.differing_files, Lines{"b.wav"});
}

TEST(MediaFiles, TwoOfOneNameGoByTheirNumbers) {
  Lay lay;
  lay.session.audio_file("x.wav", 100, "Takes");
  lay.session.audio_file("x.wav", 200, "Disk/Gone/Far");
  lay.session.audio_file("x.wav", 300, "Disk/Gone/Near");
  lay.put("Music/Album/Song/Takes/x.wav");
  MediaCounts counts;
  EXPECT_EQ(lay.found(&counts), (Lines{"Music/Album/Song/Takes/x.wav", "/Volumes/Disk/Gone/Far/x.wav missing outside",
                                       "/Volumes/Disk/Gone/Near/x.wav missing outside"}));
  EXPECT_EQ(counts.missing_files, (Lines{"x.wav (Gone/Far)", "x.wav (Gone/Near)"}));
}

TEST(MediaFiles, ABackupUsesTheAudioOfItsSession) {
  Lay lay;
  lay.session.audio_file("x.wav", 100);
  lay.put("Music/Album/Song/Audio Files/x.wav");
  fs::create_directories(lay.disk.at("Music/Album/Song/Session File Backups"));
  lay.options.session_path = lay.disk.at("Music/Album/Song/Session File Backups/Song.bak.001.ptx");
  EXPECT_EQ(lay.found(), Lines{"Music/Album/Song/Audio Files/x.wav"});
  fs::create_directories(lay.disk.at("Music/Album/Song/Session File Backups/Audio Files"));
  EXPECT_EQ(lay.found(), Lines{"Music/Album/Song/Session File Backups/Audio Files/x.wav missing"});
}

// A stranger's session can name anything.
TEST(MediaFiles, NoDevicePipeOrFolderIsTouched) {
  Lay lay;
  lay.session.audio_file("pipe.wav", 100);
  lay.session.audio_file("folder.wav", 100);
  lay.session.audio_file("..", 100);
  lay.session.audio_file("../../../../../../../etc/hostname", 100);
  lay.session.audio_file("a\\b.wav", 100);
  lay.session.audio_file(std::string("z\0.wav", 6), 100);
  lay.session.audio_file("up.wav", 100, "Disk/Music/../../etc");
  const std::string folder = "Music/Album/Song/Audio Files/";
  ::mkfifo(lay.disk.at(folder + "pipe.wav").c_str(), 0600);
  fs::create_directories(lay.disk.at(folder + "folder.wav"));
  lay.put(folder + "a\\b.wav");
  lay.put(folder + "z");
  const Lines found = lay.found();
  for (const std::string& line : found) EXPECT_NE(line.find(" missing"), line.npos) << line;
  EXPECT_EQ(found.back(), folder + "up.wav missing");  // no chain, so no place of its own
}

// One folder's long name stands in the path of each of its files.
TEST(MediaFiles, LongChainsOfManyFilesEnd) {
  Lay lay;
  const std::string folder(3000, 'f'), longer(5000, 'l');
  lay.session.audio_file("far.wav", 100, "Disk/" + longer);
  for (int i = 0; i < 8000; ++i) lay.session.audio_file(std::to_string(i), 100, "Disk/" + folder);
  const Lines found = lay.found();
  EXPECT_EQ(found[0], "Music/Album/Song/Audio Files/far.wav missing");
  EXPECT_EQ(found[1], "/Volumes/Disk/" + folder + "/0 missing outside");
  EXPECT_EQ(found.back(), "Music/Album/Song/Audio Files/7999 missing");
}

// How often each file of a folder was opened between two looks.
class Opens {
 public:
  explicit Opens(const std::string& folder) : watch_(::inotify_init1(IN_NONBLOCK)) {
    ::inotify_add_watch(watch_, folder.c_str(), IN_OPEN);
  }
  ~Opens() { ::close(watch_); }
  std::map<std::string, int> take() const {
    std::map<std::string, int> opens;
    alignas(inotify_event) char buffer[65536];
    for (ssize_t n; (n = ::read(watch_, buffer, sizeof buffer)) > 0;) {
      for (ssize_t at = 0; at < n;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
        if (event->len > 0) ++opens[event->name];
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    return opens;
  }

 private:
  int watch_;
};

TEST(MediaFiles, EachPlaceIsOpenedOnceAtMost) {
  Lay lay;
  lay.session.audio_file("a.wav", 100);
  lay.session.audio_file("b.wav", 100);
  const std::string folder = "Music/Album/Song/Audio Files/";
  lay.put(folder + "a.wav");
  lay.put(folder + "b.wav", wav(7));
  const Opens opens(lay.disk.at(folder));
  lay.found();
  EXPECT_EQ(opens.take(), (std::map<std::string, int>{{"a.wav", 1}, {"b.wav", 1}}));
}

}  // namespace
}  // namespace frt::test

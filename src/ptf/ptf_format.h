// The session library's place: a session file decrypted, with the few values that only the file's own reader knows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/file.h"

namespace frt {

// Rates in Hz: what a session without a readable one counts as, and what sessions may have.
inline constexpr std::int64_t kUsualRate = 48000;
constexpr bool is_session_rate(std::int64_t rate) { return rate >= 44100 && rate <= 192000; }

// One file of the session's audio file list.
struct AudioFileEntry {
  std::string_view name;  // without folder
  std::uint16_t index = 0;
};

// What the session knows of one file of that list.
struct AudioFileFacts {
  std::int64_t length = 0;    // samples, 0 if not told
  std::uint8_t channels = 0;  // 0 if not told
};

// What `load` answers; 0 is success.
namespace ptf_result {
constexpr int kLoaded = 0;
constexpr int kNotDecrypted = -1;    // missing, unreadable, empty, another kind of file
constexpr int kNoVersion = -2;       // no readable version marker
constexpr int kUnknownVersion = -3;  // a version outside 5 to 12, and allow_unknown_version is off
constexpr int kContentsUnread = -4;  // no session rate, or one outside 44100 to 192000 Hz
}  // namespace ptf_result

// One session file. Its decrypted bytes live as long as the object; everything it hands out is a view of them.
class PTFFormat {
 public:
  // Lets `load` take versions that it doesn't know, for the rest of the process.
  static bool allow_unknown_version;

  // Reads the file, decrypts it and takes out version, rate and audio files. `target_rate` (Hz) is the rate that
  // positions are wanted at; none is handed out, so every rate gives the same. A second load of the same path
  // judges the bytes that are there, and reads nothing again. The rate stays readable after kContentsUnread.
  int load(const std::string& path, std::int64_t target_rate);

  // Decrypts only: 0, or kNotDecrypted with an empty image. Version, rate and audio files stay at rest.
  int unxor(const std::string& path);

  // The decrypted file from its first byte on; empty unless decryption went well.
  ByteView image() const { return bytes_.view(); }
  std::int64_t session_rate() const { return rate_; }  // Hz, 0 until read
  std::uint8_t version() const { return version_; }    // 0 until read

  // The audio files in the order of the session's list, and their lengths in samples; a length that the session
  // doesn't tell is 0.
  const std::vector<AudioFileEntry>& audio_files() const { return audio_files_; }
  const std::vector<std::int64_t>& audio_file_lengths() const { return audio_file_lengths_; }
  // By file number: the blocks of the list, one a file. Where one of them is damaged, its file has no facts, while the
  // lengths above close up.
  const std::vector<AudioFileFacts>& audio_file_facts() const { return audio_file_facts_; }

 private:
  std::string path_;
  FileBytes bytes_;
  std::uint8_t version_ = 0;
  std::int64_t rate_ = 0;
  std::vector<AudioFileEntry> audio_files_;
  std::vector<std::int64_t> audio_file_lengths_;
  std::vector<AudioFileFacts> audio_file_facts_;
};

}  // namespace frt

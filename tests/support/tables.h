// Every table of a session as rows of text, for tests of its readers: what the program itself prints of its tables, and
// one table picked out of that.
//
//   EXPECT_EQ(tables_of(s).rows("meters"), "0: tick 0 bar 1 3/4");
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ptf/ptf_format.h"
#include "session/session.h"
#include "support/hand_image.h"
#include "support/session_builder.h"
#include "support/temp_folder.h"

namespace frt::test {

struct Tables {
  std::string text;  // all of them

  // The table with that heading, one line a row: what stands below a row follows it behind a bar. "" if the session has
  // no such table.
  std::string rows(std::string_view heading) const {
    std::string out;
    bool inside = false;
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
      end = text.find('\n', at);
      const std::string_view line = std::string_view(text).substr(at, end - at);
      const std::size_t indent = line.find_first_not_of(' ');
      if (indent == 0) inside = line.substr(0, line.find(" (")) == heading;
      if (indent > 0 && inside) (out += out.empty() ? "" : indent > 2 ? " | " : "\n") += line.substr(indent);
    }
    return out;
  }
  // How often the table says it.
  std::size_t count(std::string_view heading, std::string_view part) const {
    const std::string table = rows(heading);
    std::size_t count = 0;
    for (std::size_t at = table.find(part); at != table.npos; at = table.find(part, at + 1)) ++count;
    return count;
  }
};

// The image stands in memory of exactly its size: a read behind its end is caught.
inline Tables tables_of(ByteView image, const std::vector<AudioFileEntry>& files = {}, int version = 12,
                        std::int64_t rate = 48000, const std::vector<std::int64_t>& lengths = {},
                        const std::vector<AudioFileFacts>& facts = {}) {
  const auto exact = std::make_unique<std::uint8_t[]>(image.size());
  std::copy_n(image.data(), image.size(), exact.get());
  const SessionImage session(ByteView(exact.get(), image.size()));
  return {dump(read_session(session, {version, rate, files, lengths, facts}, {}))};
}
inline Tables tables_of(const std::vector<std::uint8_t>& image) { return tables_of({image.data(), image.size()}); }
inline Tables tables_of(BlockWriter& w, const std::vector<AudioFileEntry>& files = {}) {
  const Image image(w);
  return tables_of(image.session.bytes(), files);
}

// Of a session from its file, with the audio files that it lists.
inline Tables tables_of(const SessionBuilder& session) {
  const TempFolder folder;
  const std::vector<std::uint8_t> image = session.image();
  PTFFormat ptf;
  ptf.load(folder.put("Song.ptx", encrypt(image)), kUsualRate);
  return tables_of({image.data(), image.size()}, ptf.audio_files(), ptf.version(), ptf.session_rate(),
                   ptf.audio_file_lengths(), ptf.audio_file_facts());
}

}  // namespace frt::test

// The conventions that every line of the project text shares: strings, identifiers, numbers, and the stream.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/text.h"
#include "base/text_target.h"

namespace frt {

// A text value between delimiters: double quotes, else single quotes, else backticks, whichever the text does
// not hold; with all three in it double quotes, each of its own becoming "_". CR, LF, TAB and NUL become a blank.
std::string quote_rpp_string(std::string_view text);

// A GUID in braces from a seed: the same session gives the same project.
std::string make_guid(std::uint32_t seed);

// Seeds keep the namespaces of identifiers apart.
namespace guid_seed {
constexpr std::uint32_t kMarker = 0x4D41524B;       // + n, from 1
constexpr std::uint32_t kTrack = 1;                 // + i
constexpr std::uint32_t kTrackId = 9001;            // + i
constexpr std::uint32_t kCommentItem = 0x7C000000;  // + the track's seed
constexpr std::uint32_t kReturnTrack = 50001;       // + j
constexpr std::uint32_t kReturnTrackId = 60001;     // + j
constexpr std::uint32_t kSoloKeeper = 69999;
}  // namespace guid_seed

// The project's text, printed top to bottom through one buffer.
class ProjectText {
 public:
  explicit ProjectText(TextTarget& target);
  ~ProjectText();
  ProjectText(const ProjectText&) = delete;
  ProjectText& operator=(const ProjectText&) = delete;

  void print(const char* format, ...) FRT_PRINTF(2, 3);

  // For lines printed by the ten thousand: pieces without a format to parse.
  ProjectText& text(std::string_view piece);
  ProjectText& fixed(double value, int digits);        // as "%.<digits>f"
  ProjectText& general(double value, int digits = 6);  // as "%.<digits>g"
  ProjectText& integer(long long value);               // as "%lld"
  ProjectText& quoted(std::string_view value);         // quote_rpp_string

  // Hands over what is buffered; false if anything could not be written since the start.
  bool flush();

 private:
  char* room(std::size_t n);
  TextTarget& target_;
  std::string buffer_;
  std::size_t used_ = 0;
  bool good_ = true;
};

}  // namespace frt

#include "report/notes.h"

#include <algorithm>

#include "base/text.h"
#include "report/note_row.h"
#include "report/note_table.h"
#include "run/text_output.h"

namespace frt {

std::string joined_names(const std::vector<std::string>& names, NameList form) {
  std::string out;
  for (const std::string& name : names) {
    switch (form) {
      case NameList::kLines:
        out += "\n      " + name;
        break;
      case NameList::kBlanks:
        out += " " + name;
        break;
      case NameList::kQuoted:
        out += (out.empty() ? " \"" : ", \"") + name + "\"";
        break;
    }
  }
  return out;
}

void print_comma_list(const std::vector<std::string>& names) {
  const char* separator = "";
  for (const std::string& name : names) {
    print_text("%s %s", separator, name.c_str());
    separator = ",";
  }
}

void Note::print(const NotesInput& in) const {
  if (print_ != nullptr) {
    print_(in);
  } else if (switch_ != nullptr) {
    if (in.options.*switch_) print_text("%s", text_);
  } else if (names_ != nullptr) {
    const std::vector<std::string>& names = in.counters.*names_;
    if (!names.empty()) print_text(text_, static_cast<int>(names.size()), joined_names(names, form_).c_str());
  } else if (const int count = in.counters.*count_; count > 0) {
    print_text(text_, count);
  }
}

namespace {
void print_rows(std::span<const Note> rows, const NotesInput& in) {
  for (const Note& row : rows) row.print(in);
}
}  // namespace

void print_notes(const NotesInput& in) { print_rows(run_note_rows(), in); }
void print_media_notes(const NotesInput& in) { print_rows(media_note_rows(), in); }
void print_closing_notes(const NotesInput& in) { print_rows(closing_note_rows(), in); }

LongClips find_long_clips(std::span<const ClipRecord> clips, std::span<const std::int64_t> file_lengths,
                          std::int64_t rate) {
  const double per_minute = 60.0 * static_cast<double>(rate < 1 ? 48000 : rate);
  LongClips found;
  std::int64_t longest_clip = 0, longest_file = 0;
  for (const ClipRecord& clip : clips) {
    if (static_cast<double>(clip.length) > 10 * per_minute) ++found.count;
    longest_clip = std::max(longest_clip, clip.length);
  }
  for (const std::int64_t length : file_lengths) longest_file = std::max(longest_file, length);
  found.longest_clip = static_cast<double>(longest_clip) / per_minute;
  found.longest_file = static_cast<double>(longest_file) / per_minute;
  return found;
}

std::string timecode_text(std::uint32_t frames, std::uint32_t rate, bool drop) {
  if (rate == 0) return {};
  std::uint64_t nominal = frames;
  if (drop && rate >= 30 && rate % 30 == 0) {
    // Drop-frame numbering leaves out 2n numbers at every minute but each tenth.
    const std::uint64_t n = rate / 30;
    const std::uint64_t tens = frames / (17982 * n);
    const std::uint64_t rest = frames % (17982 * n);
    const std::uint64_t minutes = (rest < 2 * n ? 0 : rest - 2 * n) / (1798 * n);
    nominal += 18 * n * tens + 2 * n * minutes;
  }
  const std::uint64_t seconds = nominal / rate;
  const auto part = [](std::uint64_t value) { return static_cast<unsigned>(value); };
  const unsigned hour = part(seconds / 3600), minute = part(seconds / 60 % 60), second = part(seconds % 60);
  const unsigned frame = part(nominal % rate);
  const char separator = drop ? ';' : ':';
  return rate < 101 ? format_text("%02u:%02u:%02u%c%02u", hour, minute, second, separator, frame)
                    : format_text("%02u:%02u:%02u%c%03u", hour, minute, second, separator, frame);
}

}  // namespace frt

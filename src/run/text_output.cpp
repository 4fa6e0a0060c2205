#include "run/text_output.h"

#include <cstdio>
#include <memory>
#include <new>

namespace frt {

FrtSink* text_sink = nullptr;

void StdoutSink::write(const char* text) { std::fputs(text, stdout); }

void NullSink::write(const char* /*text*/) {}

namespace {

// One formatted text: on the stack as long as it is short, which nearly every text is.
class Formatted {
 public:
  Formatted(const char* format, std::va_list values) {
    int length = pass(short_, kShort, format, values);
    for (std::size_t room = kShort; length < 0 || static_cast<std::size_t>(length) >= room;) {
      room = length < 0 ? 2 * room : static_cast<std::size_t>(length) + 1;
      if (room > kLongest) {
        text_ = short_;  // what the first pass left, cut
        return;
      }
      long_.reset(new (std::nothrow) char[room]);
      if (!long_) {
        text_ = "";
        return;
      }
      text_ = long_.get();
      length = pass(long_.get(), room, format, values);
    }
  }
  Formatted(const Formatted&) = delete;
  Formatted& operator=(const Formatted&) = delete;

  const char* text() const { return text_; }

 private:
  static constexpr std::size_t kShort = 4096;
  static constexpr std::size_t kLongest = std::size_t{16} << 20;

  // The length that the text has, cut or not; below 0 if the formatter doesn't say.
  FRT_PRINTF(3, 0) static int pass(char* out, std::size_t room, const char* format, std::va_list values) {
    std::va_list again;
    va_copy(again, values);
    out[0] = '\0';
    const int length = std::vsnprintf(out, room, format, again);
    va_end(again);
    return length;
  }

  char short_[kShort];
  std::unique_ptr<char[]> long_;
  const char* text_ = short_;
};

}  // namespace

void print_text(const char* format, ...) {
  std::va_list values;
  va_start(values, format);
  const Formatted formatted(format, values);
  va_end(values);
  if (text_sink) {
    text_sink->write(formatted.text());
  } else {
    std::fputs(formatted.text(), stdout);
  }
}

void TextCapture::write(const char* text) {
  into_.append(text);
  if (before_) {
    before_->write(text);
  } else {
    std::fputs(text, stdout);
  }
}

void TextBuilder::print(const char* format, ...) {
  std::va_list values;
  va_start(values, format);
  const Formatted formatted(format, values);
  va_end(values);
  text_.append(formatted.text());
}

std::string json_quote(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 32) {
      out += format_text("\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      continue;
    }
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  out += '"';
  return out;
}

}  // namespace frt

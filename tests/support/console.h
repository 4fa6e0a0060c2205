// Catches the text output while it lives.
#pragma once

#include <string>
#include <utility>

#include "run/text_output.h"

namespace frt::test {

class Console {
 public:
  Console() : sink_before_(std::exchange(text_sink, &sink_)), capture_before_(std::exchange(text_capture, &text_)) {}
  ~Console() {
    text_sink = sink_before_;
    text_capture = capture_before_;
  }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // What was printed since the last call.
  std::string take() { return std::exchange(text_, {}); }

 private:
  NullSink sink_;
  std::string text_;
  FrtSink* sink_before_;
  std::string* capture_before_;
};

}  // namespace frt::test

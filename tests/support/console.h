// Catches the text output while it lives.
#pragma once

#include <string>
#include <utility>

#include "run/text_output.h"

namespace frt::test {

class Console {
 public:
  Console() : sink_before_(std::exchange(text_sink, &sink_)) {}
  ~Console() { text_sink = sink_before_; }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // What was printed since the last call.
  std::string take() { return std::exchange(sink_.text, {}); }

 private:
  struct Catch final : FrtSink {
    void write(const char* printed) override { text += printed; }
    std::string text;
  };
  Catch sink_;
  FrtSink* sink_before_;
};

}  // namespace frt::test

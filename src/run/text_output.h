// The text output: everything a person reads on the console passes here.
//
// The sink is one of the two process-wide things; the entry point sets it at start.
#pragma once

#include <string>
#include <utility>

#include "base/text.h"

namespace frt {

class FrtSink {
 public:
  virtual void write(const char* text) = 0;  // zero-terminated
  virtual ~FrtSink() = default;
};

// Puts the text on standard output, adding nothing.
class StdoutSink : public FrtSink {
 public:
  void write(const char* text) override;
};

class NullSink : public FrtSink {
 public:
  void write(const char* text) override;
};

extern FrtSink* text_sink;  // null: straight to standard output

// Formats the text and gives it to the sink. Up to 4095 characters no heap is touched; a text above 16 MiB arrives cut
// to its first 4095 characters.
void print_text(const char* format, ...) FRT_PRINTF(1, 2);

// Collects every text for as long as it lives, and hands it on to the sink that stood before it.
class TextCapture final : public FrtSink {
 public:
  explicit TextCapture(std::string& into) : into_(into), before_(text_sink) { text_sink = this; }
  ~TextCapture() override { text_sink = before_; }
  TextCapture(const TextCapture&) = delete;
  TextCapture& operator=(const TextCapture&) = delete;
  void write(const char* text) override;

 private:
  std::string& into_;
  FrtSink* before_;
};

// A text that grows by formatted pieces, each under the limits of print_text.
class TextBuilder {
 public:
  void print(const char* format, ...) FRT_PRINTF(2, 3);
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

// A text as quoted JSON. Bytes of 128 and above pass unchanged.
std::string json_quote(const std::string& text);

}  // namespace frt

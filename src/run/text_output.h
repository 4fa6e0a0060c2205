// The text output: everything a person reads on the console passes here.
//
// The sink is one of the two process-wide things (the entry point sets it at start). What a run captures for a
// ConversionResult is appended to `text_capture` while that is set.
#pragma once

#include <string>

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

extern FrtSink* text_sink;          // null: straight to standard output
extern std::string* text_capture;   // null: nothing is captured
extern std::string* report_target;  // the report under construction; null outside the report stage

// Formats the text, appends it to `text_capture` if set, then gives it to the sink. Up to 4095 characters no
// heap is touched; a text above 16 MiB arrives cut to its first 4095 characters.
void print_text(const char* format, ...) FRT_PRINTF(1, 2);

// Formats the text and appends it to `report_target`; does nothing when that is null.
void print_report(const char* format, ...) FRT_PRINTF(1, 2);

// A text as quoted JSON. Bytes of 128 and above pass unchanged.
std::string json_quote(const std::string& text);

}  // namespace frt

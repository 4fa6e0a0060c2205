// The text output: where texts go, and what happens to long ones.
#include "run/text_output.h"

#include <gtest/gtest.h>

#include "support/console.h"

namespace frt {
namespace {

class RecordingSink : public FrtSink {
 public:
  void write(const char* text) override { text_ += text; }
  std::string text_;
};

TEST(TextOutput, TextsArriveWholeUpTo16MiB) {
  test::Console console;
  for (const std::size_t length : {0u, 1u, 4094u, 4095u, 4096u, 4097u, 100000u, (16u << 20) - 1}) {
    const std::string text(length, 'x');
    print_text("%s", text.c_str());
    EXPECT_EQ(console.take(), text) << length;
  }
}

TEST(TextOutput, LongerTextsAreCut) {
  test::Console console;
  print_text("<%s>", std::string(16u << 20, 'x').c_str());
  EXPECT_EQ(console.take(), "<" + std::string(4094, 'x'));
}

TEST(TextOutput, SinkAndCaptureBothGetEveryText) {
  RecordingSink sink;
  std::string captured;
  text_sink = &sink;
  text_capture = &captured;
  print_text("%d tracks\n", 3);
  text_capture = nullptr;
  print_text("%s\n", "more");
  text_sink = nullptr;
  EXPECT_EQ(sink.text_, "3 tracks\nmore\n");
  EXPECT_EQ(captured, "3 tracks\n");
}

TEST(TextOutput, ReportTextGoesOnlyToAReport) {
  test::Console console;
  print_report("lost %d\n", 1);
  std::string report;
  report_target = &report;
  print_report("%s", std::string(5000, 'r').c_str());
  report_target = nullptr;
  EXPECT_EQ(report, std::string(5000, 'r'));
  EXPECT_EQ(console.take(), "");
}

TEST(JsonQuote, EscapesWhatWouldEndOrBreakTheText) {
  EXPECT_EQ(json_quote(""), "\"\"");
  EXPECT_EQ(json_quote("a\tb\x01"), "\"a\\u0009b\\u0001\"");
  EXPECT_EQ(json_quote("say \"hi\" \\ bye"), "\"say \\\"hi\\\" \\\\ bye\"");
  EXPECT_EQ(json_quote("gr\xC3\xBC\xC3\x9F\x7F"), "\"gr\xC3\xBC\xC3\x9F\x7F\"");
}

}  // namespace
}  // namespace frt

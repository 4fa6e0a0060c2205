// The text output: where texts go, and what happens to long ones.
#include "run/text_output.h"

#include <gtest/gtest.h>

#include <string>

#include "support/console.h"

namespace frt {
namespace {

TEST(TextOutput, TextsArriveWholeUpTo16MiBAndLongerOnesCut) {
  const test::Console silent;
  std::string captured;
  for (const std::size_t length : {0u, 1u, 4094u, 4095u, 4096u, 4097u, 100000u, (16u << 20) - 1, 16u << 20}) {
    const std::string text(length, 'x');
    captured.clear();
    {
      const TextCapture capture(captured);
      print_text("%s", text.c_str());
    }
    TextBuilder builder;
    builder.print("%s", text.c_str());
    EXPECT_TRUE(captured == (length < 16u << 20 ? text : text.substr(0, 4095))) << length << ": " << captured.size();
    EXPECT_TRUE(builder.take() == captured) << length;
  }
}

TEST(TextOutput, ACaptureHandsOnToTheSinkBeforeItAndPutsItBack) {
  test::Console outer;
  std::string inner;
  FrtSink* const before = text_sink;
  std::string innermost;
  {
    const TextCapture first(inner);
    print_text("%d tracks\n", 3);
    const TextCapture second(innermost);
    print_text("%s\n", "more");
  }
  EXPECT_EQ(text_sink, before);
  print_text("late");
  EXPECT_EQ(innermost, "more\n");
  EXPECT_EQ(inner, "3 tracks\nmore\n");
  EXPECT_EQ(outer.take(), inner + "late");
}

TEST(JsonQuote, EscapesWhatWouldEndOrBreakTheText) {
  EXPECT_EQ(json_quote("a\tb\x01"), "\"a\\u0009b\\u0001\"");
  EXPECT_EQ(json_quote("say \"hi\" \\ bye"), "\"say \\\"hi\\\" \\\\ bye\"");
  EXPECT_EQ(json_quote("gr\xC3\xBC\xC3\x9F\x7F"), "\"gr\xC3\xBC\xC3\x9F\x7F\"");
}

}  // namespace
}  // namespace frt

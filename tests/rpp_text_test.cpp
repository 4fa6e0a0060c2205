// The conventions of the project text: strings, identifiers, numbers, the stream; and the palette's colours.
#include "writer/rpp_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "model/palette.h"
#include "support/project_text.h"

namespace frt {
namespace {

using namespace std::string_view_literals;

TEST(Quoting, TheFirstFreeDelimiterIsTaken) {
  const struct {
    std::string_view text, quoted;
  } cases[] = {
      {"", R"("")"},
      {R"(12" floor)", R"('12" floor')"},
      {"Bob's", R"("Bob's")"},
      {R"(Bob's 12")", R"(`Bob's 12"`)"},
      {R"(`Bob's` 12")", R"("`Bob's` 12_")"},
      {"`", R"("`")"},
      {"a\rb\nc\td", R"("a b c d")"},
      {"a\0b"sv, R"("a b")"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(test::written_by([&](ProjectText& project) { project.quoted(one.text); }), one.quoted);
  }
}

std::string as_printf(const char* format, int digits, double value) {
  char text[1024];
  std::snprintf(text, sizeof text, format, digits, value);
  return text;
}

TEST(Numbers, PrintAsPrintfPrintsThem) {
  using Limits = std::numeric_limits<double>;
  std::vector<double> values;
  for (const double odd : {0.0, 0.5, 1.5, 2.5, 0.00005, 0.00015, 1e-7, 9.9999995, 999999.5, 999999.4999999999, 1e22,
                           Limits::max(), Limits::denorm_min(), Limits::infinity(), Limits::quiet_NaN()}) {
    values.push_back(odd);
    values.push_back(-odd);
  }
  std::mt19937_64 random(11);
  for (int i = 0; i < 3000; ++i) {
    const std::uint64_t bits = random();
    if (const auto any = std::bit_cast<double>(bits); !std::isnan(any)) values.push_back(any);
    // What projects hold: seconds, gains, tempos; halves of the last digit among them.
    values.push_back(static_cast<double>(bits % 100000000000) / 48000.0);
    values.push_back(static_cast<double>(bits % 2000001) / 2000000.0);
    // Ties of any size of part, and numbers around the size from which on another way prints them.
    values.push_back(static_cast<double>(bits % 2048) * std::exp2(-static_cast<double>(bits >> 58)));
    values.push_back(1.8e9 + static_cast<double>(static_cast<std::int64_t>(bits % 64) - 32) / 1024.0);
    values.push_back(std::bit_cast<double>((bits & 0x000fffffffffffff) | ((bits % 140 + 920) << 52)));
  }
  for (const int digits : {0, 4, 6, 9, 10, 14}) {
    std::string expected;
    for (const double value : values) {
      expected += as_printf("%.*f ", digits, value) + as_printf("%.*g\n", digits, value);
    }
    EXPECT_TRUE(test::written_by([&](ProjectText& out) {
                  for (const double value : values)
                    out.fixed(value, digits).text(" ").general(value, digits).text("\n");
                }) == expected)
        << digits;
  }
  EXPECT_EQ(test::written_by([](ProjectText& out) { out.integer(0).text(" ").integer(INT64_MAX).integer(INT64_MIN); }),
            "0 9223372036854775807-9223372036854775808");
}

TEST(ProjectStream, EveryPieceArrivesInOrderAcrossTheBuffersEnd) {
  const std::string huge(700000, 'h');
  for (const std::size_t lead : {std::size_t{0}, std::size_t{262000}, std::size_t{262143}, std::size_t{262144}}) {
    std::string expected(lead, '.');
    test::StringTarget out;
    ProjectText project(out);
    project.text(expected);
    for (int i = 0; i < 50; ++i) {
      project.print("%d %s;", i, "printed");
      project.text("text ").integer(i);
      project.fixed(1e300, 10).quoted("quoted");
      expected +=
          std::to_string(i) + " printed;text " + std::to_string(i) + as_printf("%.*f", 10, 1e300) + "\"quoted\"";
    }
    project.print("%s!", huge.c_str());
    project.text(huge).quoted(huge);
    expected += huge + "!" + huge + "\"" + huge.substr(0, 8192) + "\"";  // no name is longer
    EXPECT_TRUE(project.flush());
    EXPECT_TRUE(out.text == expected) << lead;
  }
}

struct LimitedTarget : TextTarget {
  bool write(const char* data, std::size_t n) override {
    if (text.size() + n > limit) return false;
    text.append(data, n);
    return true;
  }
  std::string text;
  std::size_t limit = 300000;
};

TEST(ProjectStream, SaysWhenItCouldNotWrite) {
  LimitedTarget out;
  ProjectText project(out);
  for (int i = 0; i < 20000; ++i) project.text("0123456789");
  EXPECT_TRUE(project.flush());
  for (int i = 0; i < 20000; ++i) project.text("0123456789");
  EXPECT_FALSE(project.flush());
  out.limit = SIZE_MAX;
  project.text("late");
  EXPECT_FALSE(project.flush());  // once lost, the text isn't whole again
  EXPECT_EQ(out.text.find("late"), std::string::npos);
}

TEST(Palette, ColorsByIndex) {
  const struct {
    std::int32_t index;
    std::uint32_t color;
    int kind;
  } rows[] = {
      {25, 0x1FC002C, 1},  // the first and last of each measured row
      {47, 0x1FC0019, 1},    {49, 0x1A3001E, 1},
      {71, 0x1A32314, 1},    {73, 0x15F0014, 1},
      {95, 0x15F2211, 1},    {1, 0x1ECB4BE, 1},  // a measured pale swatch; derived from the row below; off the grid
      {2, 0x1FD6699, 2},     {23, 0x1FD6675, 2},
      {0, 0x1282828, 3},     {24, 0x168D8C0, 3},
      {96, 0x1609030, 3},    {72, palette_color(-72).color, 3},
      {65535, 0x17D9B5F, 3}, {INT32_MIN, 0x1A8C090, 3},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(palette_color(row.index).color, row.color) << row.index;
    EXPECT_EQ(palette_color(row.index).kind, row.kind) << row.index;
  }
  // The mark by which REAPER takes a colour for one.
  for (std::int32_t index = -300; index < 300; ++index) EXPECT_EQ(palette_color(index).color >> 24, 1u) << index;
}

}  // namespace
}  // namespace frt

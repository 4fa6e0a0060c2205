// The conventions of the project text: strings, identifiers, numbers, the stream; and the palette's colours.
#include "writer/rpp_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
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
      {"Gtr", R"("Gtr")"},
      {R"(12" floor)", R"('12" floor')"},
      {"Bob's", R"("Bob's")"},
      {R"(Bob's 12")", R"(`Bob's 12"`)"},
      {R"(`Bob's` 12")", R"("`Bob's` 12_")"},
      {"`", R"("`")"},
      {R"(a\b)", R"("a\b")"},
      {"a\rb\nc\td", R"("a b c d")"},
      {"a\0b"sv, R"("a b")"},
      {"\xc3\xa9", "\"\xc3\xa9\""},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(quote_rpp_string(one.text), one.quoted);
    EXPECT_EQ(test::written_by([&](ProjectText& project) { project.quoted(one.text); }), one.quoted);
  }
}

std::string as_printf(const char* format, int digits, double value) {
  char text[1024];
  std::snprintf(text, sizeof text, format, digits, value);
  return text;
}

// One stream for all numbers of a test: its buffer is large.
class NumberCheck {
 public:
  void expect_like_printf(double value) {
    for (const int digits : {0, 4, 6, 9, 10, 14}) {
      out_.text.clear();
      project_.fixed(value, digits).text(" ").general(value, digits);
      project_.flush();
      EXPECT_EQ(out_.text, as_printf("%.*f", digits, value) + " " + as_printf("%.*g", digits, value)) << digits;
    }
  }

 private:
  test::StringTarget out_;
  ProjectText project_{out_};
};

TEST(Numbers, PrintAsPrintfPrintsThem) {
  using Limits = std::numeric_limits<double>;
  NumberCheck check;
  for (const double odd :
       {0.0, 0.5, 1.5, 2.5, 0.00005, 0.00015, 1e-7, 9.9999995, 999999.5, 999999.4999999999, 1e15, 123456789012345678.0,
        1e22, 1e300, Limits::max(), Limits::min(), Limits::denorm_min(), Limits::infinity(), Limits::quiet_NaN()}) {
    check.expect_like_printf(odd);
    check.expect_like_printf(-odd);
  }
  std::mt19937_64 random(11);
  for (int i = 0; i < 3000; ++i) {
    const std::uint64_t bits = random();
    double any;
    std::memcpy(&any, &bits, sizeof any);
    if (!std::isnan(any)) check.expect_like_printf(any);
    // What projects hold: seconds, gains, tempos; halves of the last digit among them.
    check.expect_like_printf(static_cast<double>(bits % 100000000000) / 48000.0);
    check.expect_like_printf(static_cast<double>(bits % 2000001) / 2000000.0);
  }
  EXPECT_EQ(test::written_by([](ProjectText& out) { out.integer(0).text(" ").integer(INT64_MAX).integer(INT64_MIN); }),
            "0 9223372036854775807-9223372036854775808");
}

TEST(Numbers, NoLocaleReachesTheProject) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const char* with_comma = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
    if (!with_comma) with_comma = std::setlocale(LC_ALL, name);
  }
  if (!with_comma) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  const std::string text = test::written_by([](ProjectText& project) {
    project.print("%.2f %g ", 1.25, 0.5);
    project.fixed(1.25, 2);
  });
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(text, "1.25 0.5 1.25");
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
    ++writes;
    return true;
  }
  std::string text;
  std::size_t limit = 300000;
  int writes = 0;
};

TEST(ProjectStream, WritesLittleAndSaysWhenItCouldNot) {
  LimitedTarget out;
  ProjectText project(out);
  for (int i = 0; i < 20000; ++i) project.text("0123456789");
  EXPECT_TRUE(project.flush());
  EXPECT_LE(out.writes, 2);
  for (int i = 0; i < 20000; ++i) project.text("0123456789");
  EXPECT_FALSE(project.flush());
  out.limit = SIZE_MAX;
  project.text("late");
  EXPECT_FALSE(project.flush());  // once lost, the text isn't whole again
  EXPECT_EQ(out.text.find("late"), std::string::npos);
}

TEST(Palette, ColorsByIndex) {
  struct Row {
    std::int32_t index;
    std::uint32_t color;
    int kind;
  };
  const std::vector<Row> rows = {
      {25, 0x1FC002C, 1},
      {47, 0x1FC0019, 1},  // the first and last of each measured row
      {49, 0x1A3001E, 1},
      {71, 0x1A32314, 1},
      {73, 0x15F0014, 1},
      {95, 0x15F2211, 1},
      {36, 0x114C5C0, 1},
      {1, 0x1ECB4BE, 1},
      {3, 0x1ECB4D2, 1},  // measured pale swatches
      {2, 0x1FD6699, 2},
      {4, 0x1FD66D8, 2},
      {23, 0x1FD6675, 2},  // derived from the row below
      {0, 0x1282828, 3},
      {24, 0x168D8C0, 3},
      {48, 0x1A8C090, 3},
      {96, 0x1609030, 3},  // off the grid
      {72, palette_color(-72).color, 3},
      {-2, 0x13E8ABA, 3},
      {65535, 0x17D9B5F, 3},
      {INT32_MIN, 0x1A8C090, 3},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(palette_color(row.index).color, row.color) << row.index;
    EXPECT_EQ(palette_color(row.index).kind, row.kind) << row.index;
  }
  // The mark by which REAPER takes a colour for one.
  for (std::int32_t index = -300; index < 300; ++index) EXPECT_EQ(palette_color(index).color >> 24, 1u) << index;
}

}  // namespace
}  // namespace frt

// What stands above the first track: colours of markers, and the grid at its limits.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "mix/header_page.h"
#include "support/project_text.h"
#include "writer/project_header.h"

namespace frt {
namespace {

using test::Lines;

TEST(Markers, ColorsAreMappedOrNamed) {
  const struct {
    std::int32_t palette, marker_color;
    std::int64_t rgb;
    std::uint32_t color;  // 0 for none
    bool unmapped = false;
  } rows[] = {
      {-2, -1, -1, 0},         {25, -1, -1, 0x1FC002C}, {95, -1, -1, 0x15F2211},      {24, -1, -1, 0},
      {96, -1, -1, 0},         {3, -1, -1, 0},          {-2, 7, 0x112233, 0x1332211}, {-2, 7, 0, 0x1000000},
      {-2, 7, 0xFFB300, 0},    {-2, -1, 0x112233, 0},   {-2, 2, -1, 0x1FE0066},       {-2, 3, -1, 0x1DD0292},
      {-2, 5, -1, 0x1D57CFE},  {-2, 11, -1, 0},         {-2, 12, -1, 0x100DFDF},      {-2, 13, -1, 0x102E78D},
      {-2, 17, -1, 0x132DA00}, {-2, 0, -1, 0, true},    {-2, 65535, -1, 0, true},
  };
  for (const auto& row : rows) {
    Session session;
    MemoryLocation& location = session.headers.locations.emplace_back();
    location.name = "M";
    location.kind = LocationKind::kMarker;
    location.palette = row.palette;
    location.marker_color = row.marker_color;
    location.stored_rgb = row.rgb;
    const Header header = make_header_page(session, {});
    EXPECT_EQ(header.page.markers.at(0).color, row.color) << row.color;
    EXPECT_EQ(header.counts.markers.colored, row.color != 0 ? 1 : 0) << row.color;
    EXPECT_EQ(header.counts.markers.unmapped_colors, row.unmapped ? Lines{"M"} : Lines{}) << row.color;
  }
}

TEST(Header, AGridOutsideItsLimitsIsNotWritten) {
  const std::pair<MusicalStep, Lines> rows[] = {
      {{0, 0, 0}, {}},
      {{250, 0, 0}, {}},  // 1000 quarters
      {{249, 3, 959}, {"3199 8 999.99895833333 8 1 0 0 0"}},
      {{0, 0, 320}, {"3199 8 0.33333333333333 8 1 0 0 0"}},
  };
  for (const auto& [step, lines] : rows) {
    Session session;
    session.headers.settings.grid.grid_read = true;
    session.headers.settings.grid.grid = step;
    const std::string text =
        test::written_by([&](ProjectText& out) { write_project_header(out, make_header_page(session, {}).page); });
    EXPECT_EQ(test::lines_of(text, "GRID"), lines);
  }
}

}  // namespace
}  // namespace frt

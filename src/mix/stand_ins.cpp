#include "mix/stand_ins.h"

#include <algorithm>
#include <array>

namespace frt {
namespace {

constexpr std::array<StandInRow, 0> kRows{};

bool fits(const StandInRow& row, const InsertRecord& insert, ByteView image) {
  if (insert.signature != row.signature) return false;
  if (row.fits) return row.fits(insert, image);
  return insert.kind == StateKind::kControls && insert.controls.size() == row.values;
}

}  // namespace

const StandInRow* stand_in_row(const InsertRecord& insert, ByteView image) {
  const auto row =
      std::find_if(kRows.begin(), kRows.end(), [&](const StandInRow& known) { return fits(known, insert, image); });
  return row == kRows.end() ? nullptr : &*row;
}

int StandInCounts::all() const {
  int sum = 0;
  for (const auto& [family, count] : written) sum += count;
  return sum;
}

}  // namespace frt

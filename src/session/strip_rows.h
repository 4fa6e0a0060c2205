// The mixer's rows: one block per strip, the names the track table gives them, which of the two makes the session's
// list of strips, which strips are inactive, and the rows of the edit window's track list.
#pragma once

#include <string_view>
#include <vector>

#include "session/blocks.h"
#include "session/tables.h"

namespace frt {

// One row per strip block (0x261b, 0x261d, 0x261f, 0x2620, 0x2621, 0x2623), in file order, without the audio rows
// nested in a master fader's. *names_aligned (optional) tells whether the names of the track table (0x251a) line
// up with the rows and became their current names.
std::vector<StripRow> read_strip_rows(const SessionImage& image, bool* names_aligned = nullptr);

// The session's track table: strip names in mixer order.
struct StripTable {
  std::vector<std::string_view> names;
  int name_scan_count = -1;  // how many names the name scan had found, if the rows' labels replaced them
};

// The name scan's list, or the rows' labels where every row has one and no two are equal. known_names are the track
// names of all placements, which tell the scan where the table begins.
StripTable choose_strip_table(const SessionImage& image, const std::vector<std::string_view>& known_names,
                              const std::vector<StripRow>& rows);

// Current and original names of the rows whose wrapper (0x261c) says that the strip is inactive, in file order;
// a name can repeat.
std::vector<std::string_view> read_inactive_names(const SessionImage& image, const std::vector<StripRow>& rows);

// The entries of the first track table (0x2519), up to where it comes round to its first entry. Empty if an entry
// is not understood.
std::vector<DisplayRow> read_display_rows(const SessionImage& image);

// Sets what the session tells of a row under the row's names: the current name always, the original name only if
// nothing stands there yet.
template <typename T>
void set_by_row_names(ByName<T>& map, const StripRow& row, const T& value) {
  if (!row.current_name.empty()) map.insert_or_assign(std::string(row.current_name), value);
  if (!row.original_name.empty()) map.try_emplace(std::string(row.original_name), value);
}

}  // namespace frt

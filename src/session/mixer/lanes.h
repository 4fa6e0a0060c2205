// Automation lanes: small blocks that don't say what they drive. Their place among their sisters and how
// many there are tell volume, mute, pan and trim apart.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "image/blocks.h"
#include "image/first_fit.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

// The lane whose block stands at the position; an empty lane if its size is too small or passes the image's end.
AutomationLane read_lane(ByteView image, std::uint64_t position);

// The positions of the lanes that stand in a range.
struct LaneSet {
  std::vector<std::uint64_t> flat;                 // all of them, in file order
  std::vector<std::uint64_t> free;                 // those in no group
  std::vector<std::vector<std::uint64_t>> groups;  // one list for each lane group, in file order
  bool grouped = false;                            // some group holds at least two

  // Groups are there, and none holds more than one lane.
  bool pans_by_group() const { return !grouped && !groups.empty(); }
  // The first lane of each group that holds any.
  std::vector<std::uint64_t> channel_pans() const;
};
LaneSet collect_lanes(const SessionImage& image, std::uint64_t start, std::uint64_t end);

// How wide the strip of a row is: 0 one channel, 1 two, 2 more. 1 where the row doesn't tell.
// `any_block` seeks any block of the image.
int strip_width_code(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end, FirstFit& any_block);

// Gives each strip with mixer data the lanes of its row: which drives what, whether the strip is stereo, its dual
// pan, and the resting fader, which the volume lane knows better than the level record.
void read_strip_lanes(const SessionImage& image, std::vector<StripRecord>& strips);

// The width code of one row, worked out once however many sends ask.
class RowWidth {
 public:
  RowWidth(const SessionImage& image, std::uint64_t row_start, std::uint64_t row_end, FirstFit& any_block)
      : image_(image), row_start_(row_start), row_end_(row_end), any_block_(any_block) {}
  int code() {
    if (!code_) code_ = strip_width_code(image_, row_start_, row_end_, any_block_);
    return *code_;
  }

 private:
  const SessionImage& image_;
  std::uint64_t row_start_, row_end_;
  FirstFit& any_block_;
  std::optional<int> code_;
};

// Gives a send the lanes of its mix, and its pans.
void read_send_lanes(const SessionImage& image, const FlatBlock& mix, RowWidth& row, SendRecord& send);

// The strips with mixer data whose lanes fit neither a mono nor a stereo strip, or which the edit window shows as
// wider. A strip without any lane tells nothing of its width and is not among them, nor is one of one side.
std::vector<UnusualStrip> strips_of_unusual_width(const std::vector<StripRecord>& strips,
                                                  const std::vector<DisplayRow>& display_rows,
                                                  const std::map<std::string_view, int>& one_sided);

// For FRT_DUMP_LANES: the lanes of each strip that has volume, mute or pan points, on standard error.
void dump_lanes(const std::vector<StripRecord>& strips);

}  // namespace frt

#include "standins/trim.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "base/byte_order.h"
#include "base/bytes.h"
#include "base/text.h"
#include "standins/js_slots.h"

namespace frt {
namespace {

// ---- what a Trim stores ----

// A channel's record, from the signature on; big-endian.
namespace trim_layout {
constexpr std::uint64_t kGain = 48;      // the control's position, signed
constexpr std::uint64_t kPolarity = 52;  // kInverted, or else not
constexpr std::uint64_t kLeast = 52;     // behind a record found
constexpr std::uint32_t kInverted = 0x7fffffff;
}  // namespace trim_layout

// Of its channels, in their order. A record that the block's end cuts may have a gain alone.
struct TrimRecords {
  std::vector<std::int32_t> gains;
  std::vector<bool> inverted;
};

TrimRecords read_records(ByteView block) {
  namespace at = trim_layout;
  TrimRecords records;
  const std::string_view bytes(reinterpret_cast<const char*>(block.data()), block.size());
  for (std::size_t p = bytes.find(kTrimSignature); p != std::string_view::npos;
       p = bytes.find(kTrimSignature, p + at::kLeast)) {
    const auto gain = u32_big(block, p + at::kGain);
    if (!gain) break;
    records.gains.push_back(static_cast<std::int32_t>(*gain));
    if (const auto polarity = u32_big(block, p + at::kPolarity)) records.inverted.push_back(*polarity == at::kInverted);
  }
  return records;
}

// ---- what it plays ----

void measure_gain(const InsertRecord& insert, const TrimRecords& records, Trims& trims) {
  if (records.gains.empty()) return;
  const std::int32_t first = records.gains.front();
  const TrimGain gain = trim_gain(first);
  trims.gain_db.emplace(&insert, gain.db);
  if (gain.below_range) ++trims.counts.gains_below_range;
  if (std::any_of(records.gains.begin(), records.gains.end(), [&](std::int32_t word) { return word != first; }))
    ++trims.counts.unlinked_gains;
}

void measure_polarity(const InsertRecord& insert, const TrimRecords& records, std::string_view strip, Trims& trims) {
  const std::vector<bool>& inverted = records.inverted;
  if (insert.bypassed || insert.inactive) {
    if (std::find(inverted.begin(), inverted.end(), true) != inverted.end()) ++trims.counts.off_and_inverting;
    return;
  }
  ++trims.counts.playing;
  InvertingTrims found;
  if (inverted.size() >= 2) {
    found = {.whole = 0, .left = inverted[0] ? 1 : 0, .right = inverted[1] ? 1 : 0};
    if (std::find(inverted.begin() + 2, inverted.end(), !inverted[0]) != inverted.end()) ++trims.counts.mixed_surround;
  } else if (inverted.size() == 1 && inverted[0]) {
    found.whole = 1;
  }
  if (found.on_left() == 0 && found.on_right() == 0) return;
  InvertingTrims& sum = trims.strips[strip];
  sum.whole += found.whole;
  sum.left += found.left;
  sum.right += found.right;
}

bool is_odd(int count) { return count % 2 != 0; }

}  // namespace

Trims measure_trims(const Inserts& inserts) {
  Trims trims;
  for (const auto& [strip, indices] : inserts.strips) {
    for (const std::uint32_t index : indices) {
      const InsertRecord& insert = inserts.records[index];
      if (!insert.signature.starts_with(kTrimSignature) || insert.end < insert.start) continue;
      const TrimRecords records = read_records(inserts.image.clamped(insert.start, insert.end - insert.start));
      measure_gain(insert, records, trims);
      measure_polarity(insert, records, strip, trims);
    }
  }
  for (const auto& [strip, trim] : trims.strips) {
    const int left = trim.on_left(), right = trim.on_right();
    if (!is_odd(left) && !is_odd(right) && std::max(left, right) >= 2) ++trims.counts.cancelling_strips;
  }
  return trims;
}

// The control's word at gains that were measured; straight between them. It has no formula that holds over its range.
TrimGain trim_gain(std::int32_t word) {
  struct Point {
    std::int32_t word;
    double db;
  };
  constexpr std::array<Point, 6> kCurve = {
      {{-161638556, -12}, {463923640, -6}, {778803940, -3}, {1093684240, 0}, {1635278356, 3}, {2147483646, 6}}};
  if (word >= kCurve.back().word) return {.db = kCurve.back().db};
  std::size_t upper = 1;
  while (kCurve[upper].word < word) ++upper;
  const Point &a = kCurve[upper - 1], &b = kCurve[upper];
  const double part = (static_cast<double>(word) - a.word) / (static_cast<double>(b.word) - a.word);
  return {.db = a.db + part * (b.db - a.db), .below_range = word < kCurve.front().word};
}

StandInSlot trim_gain_slot(const InsertRecord& insert, double gain_db) {
  return volume_slot(gain_db, {.label = stand_in_label("Trim", stock_names::kVolume),
                               .preset = format_text("Avid Trim %+.2f dB", gain_db),
                               .bypassed = insert.bypassed || insert.inactive,
                               .fxid_seed = static_cast<std::uint32_t>(insert.start)});
}

// ---- polarity ----

bool TrimPolarity::inverted(std::string_view strip, std::string_view name) {
  const auto find = [&](std::string_view asked) {
    const auto found = trims_.strips.find(asked);
    return found == trims_.strips.end() ? nullptr : &*found;
  };
  // A Trim of one record flips the strip whatever its width; the first name that has such a one decides.
  for (const std::string_view asked : {strip, name, name.substr(0, name.find(" [lane:"))}) {
    const auto* found = find(asked);
    if (found && found->second.whole > 0)
      return decide(found->first, found->second.on_left(), found->second.on_right());
  }
  for (const std::string_view asked : {strip, name}) {
    if (const auto* found = find(asked)) return decide(found->first, found->second.left, found->second.right);
  }
  return false;
}

// REAPER's switch flips both sides: where one alone is flipped, the track stays upright.
bool TrimPolarity::decide(std::string_view strip, int left, int right) {
  touched_.insert(strip);
  if (is_odd(left) == is_odd(right)) return is_odd(left);
  sides_[strip] = is_odd(left) ? Side::kLeft : Side::kRight;
  return false;
}

TrimPolarity::Side TrimPolarity::one_side(std::string_view strip) const {
  const auto found = sides_.find(strip);
  return found == sides_.end() ? Side::kNone : found->second;
}

TrimCounts TrimPolarity::counts() const {
  TrimCounts counts = trims_.counts;
  counts.one_sided_strips = static_cast<int>(sides_.size());
  for (const auto& [strip, trim] : trims_.strips) {
    const bool odd = is_odd(trim.on_left()) || is_odd(trim.on_right());
    if (odd && !touched_.contains(strip)) ++counts.strips_without_phase;
  }
  return counts;
}

StandInSlot trim_polarity_slot(std::string_view strip, TrimPolarity::Side side) {
  constexpr std::uint32_t kSeed = 0x504F4C00;
  const bool left = side == TrimPolarity::Side::kLeft;
  const std::uint32_t first = strip.empty() ? 0 : static_cast<std::uint8_t>(strip.front());
  const std::string_view what = left ? "Trim polarity, left channel" : "Trim polarity, right channel";
  return polarity_slot(left ? FlippedSides::kLeft : FlippedSides::kRight,
                       {.label = stand_in_label(what, stock_names::kPolarity),
                        .fxid_seed = (first << 16) ^ static_cast<std::uint32_t>(strip.size()) ^ kSeed});
}

}  // namespace frt

// Avid's Trim: its gain, and the polarity that it switches over, which REAPER has on the track.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>

#include "session/inserts/insert_tables.h"
#include "standins/slot.h"

namespace frt {

inline constexpr std::string_view kTrimSignature = "DigiTrim";

// The inverting Trims of a strip: those of both channels at once, and those of each side.
struct InvertingTrims {
  int whole = 0, left = 0, right = 0;

  int on_left() const { return left + whole; }
  int on_right() const { return right + whole; }
};

struct TrimCounts {
  int playing = 0;               // neither bypassed nor inactive
  int off_and_inverting = 0;     // bypassed or inactive with polarity on: they invert nothing
  int gains_below_range = 0;     // extended from the curve
  int unlinked_gains = 0;        // a gain a channel, of which the first is used
  int mixed_surround = 0;        // channels behind the second flip otherwise than the first
  int cancelling_strips = 0;     // an even number of inverting Trims
  int one_sided_strips = 0;      // left or right alone is flipped
  int strips_without_phase = 0;  // inverted, but no track took it
};

struct Trims {
  std::unordered_map<const InsertRecord*, double> gain_db;
  std::map<std::string_view, InvertingTrims> strips;  // of those with any
  TrimCounts counts;
};

// Of the Trims on strips. Points into `inserts`.
Trims measure_trims(const Inserts& inserts);

// A Trim's control word as dB.
struct TrimGain {
  double db = 0;
  bool below_range = false;
};
TrimGain trim_gain(std::int32_t word);

// The gain in the Trim's slot.
StandInSlot trim_gain_slot(const InsertRecord& insert, double gain_db);

// What the tracks take of the strips' polarity, one track after the other in the order in which they are written.
class TrimPolarity {
 public:
  // `trims` must outlive it.
  explicit TrimPolarity(const Trims& trims) : trims_(trims) {}

  // Whether the track is inverted. It asks for its strip, then for its own name, then, as an alternate playlist, for
  // the track it lies on.
  bool inverted(std::string_view strip, std::string_view name);

  enum class Side : std::uint8_t { kNone, kLeft, kRight };
  // The side that the tracks so far found flipped alone on the strip.
  Side one_side(std::string_view strip) const;

  // The counts of `trims` and those of the strips; to be called behind the last track.
  TrimCounts counts() const;

 private:
  bool decide(std::string_view strip, int left, int right);

  const Trims& trims_;
  std::map<std::string_view, Side> sides_;
  std::set<std::string_view> touched_;
};

// The flip of one side, ahead of a strip's other slots.
StandInSlot trim_polarity_slot(std::string_view strip, TrimPolarity::Side side);

}  // namespace frt

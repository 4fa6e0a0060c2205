// Avid's EQ3 as REAPER's ReaEQ, with the first-order filters behind it that ReaEQ lacks.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "session/inserts/insert_tables.h"
#include "standins/eq3_fit.h"
#include "standins/slot.h"

namespace frt {

// What an EQ3 is set to.
struct Eq3Settings {
  std::vector<EqFilter> filters;  // not yet realised
  double output_gain = 0;         // dB, of all stages
  bool inverts = false;
};

enum class Eq3Kind : std::uint8_t { kSevenBand, kOneBand };
std::optional<Eq3Kind> eq3_kind(std::string_view signature);
// How many values its control list has.
std::size_t eq3_control_count(Eq3Kind kind);
std::string_view eq3_name(Eq3Kind kind);

// A value that the list lacks, or that is no number that a control could have, counts as 0.
Eq3Settings eq3_settings(Eq3Kind kind, std::span<const float> controls);

struct Eq3Counts {
  int fitted_bands = 0, extra_bands = 0;
  double worst_error = 0;  // dB, of the fitted ones
  int first_order_slots = 0;
};

// The slots of an EQ3's insert, which `eq3_kind` knows. `fitter` is the session's, for its rate.
StandIn eq3_stand_in(const InsertRecord& insert, double sample_rate, EqFitter& fitter, Eq3Counts& counts);

}  // namespace frt

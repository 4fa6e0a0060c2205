#include "mix/stand_ins.h"

#include <algorithm>
#include <iterator>

#include "standins/channel_strip.h"
#include "standins/dyn3.h"
#include "standins/eq3.h"
#include "standins/js_slots.h"

namespace frt {
namespace {

bool is_channel_strip(const InsertRecord& insert, ByteView image) {
  return channel_strip_of_insert(named_controls(image, insert)).has_value();
}

StandIn make_channel_strip(const StandInSource& from) {
  const auto settings = channel_strip_of_insert(named_controls(from.image, from.insert));
  if (!settings) return {};
  const ChannelStripPlace place{.sample_rate = from.sample_rate,
                                .fxid_seed = first_slot_seed(from.insert.start),
                                .bypassed = from.insert.bypassed || from.insert.inactive,
                                .key_wired = from.keyed,
                                .key_pair = from.strip.key_pair};
  return channel_strip_chain(*settings, place).stand_in;
}

StandIn make_eq3(const StandInSource& from) {
  return eq3_stand_in(from.insert, from.sample_rate, from.fitter, from.eq3);
}

constexpr StandInRow kRows[] = {
    {.signature = "Digi47e3", .family = "EQ3 7-Band", .values = 38, .make = make_eq3},
    {.signature = "Digi1be3", .family = "EQ3 1-Band", .values = 8, .make = make_eq3},
    {.signature = "Digidn3c",
     .family = "Dyn3 Compressor/Limiter",
     .values = kDyn3CompressorControls,
     .make = [](const StandInSource& from) { return dyn3_compressor(from.insert, from.strip, from.keyed); }},
    {.signature = "Digidn3e",
     .family = "Dyn3 Expander/Gate",
     .values = kDyn3ExpanderGateControls,
     .make = [](const StandInSource& from) { return dyn3_expander_gate(from.insert, from.strip, from.keyed); }},
    {.signature = kChannelStripSignature,
     .family = "Channel Strip",
     .fits = is_channel_strip,
     .make = make_channel_strip},
};

bool fits(const StandInRow& row, const InsertRecord& insert, ByteView image) {
  if (insert.signature != row.signature) return false;
  if (row.fits) return row.fits(insert, image);
  return insert.kind == StateKind::kControls && insert.controls.size() == row.values;
}

}  // namespace

const StandInRow* stand_in_row(const InsertRecord& insert, ByteView image) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                 [&](const StandInRow& known) { return fits(known, insert, image); });
  return row == std::end(kRows) ? nullptr : row;
}

int StandInCounts::all() const {
  int sum = 0;
  for (const auto& [family, count] : written) sum += count;
  return sum;
}

}  // namespace frt

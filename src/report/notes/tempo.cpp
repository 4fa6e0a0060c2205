// Tempo map, drawn ramps and meters.
#include <algorithm>
#include <cstddef>

#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

constexpr double kMsPerSecond = 1000.0;
constexpr std::size_t kMostMeters = 8;  // named in one note

bool asks_for_ramps_of_a_map(const Told& told) {
  return told.options.tempo_ramps && told.mix.header.tempo.tempo_changes > 0;
}
bool found_no_ramps(const Told& told) {
  const TempoCounts& tempo = told.mix.header.tempo;
  return told.options.tempo_ramps && tempo.ramps_written <= 0 && tempo.ramps_left <= 0;
}

double rate(const Told& told) { return told.session.clock.rate; }
double point_error_ms(const Told& told) { return told.mix.header.tempo.ramp_point_error * kMsPerSecond; }
double point_error_samples(const Told& told) { return told.mix.header.tempo.ramp_point_error * rate(told); }
double inner_error_ms(const Told& told) { return told.mix.header.tempo.ramp_inner_error * kMsPerSecond; }

bool has_meter_map(const Told& told) { return !told.session.headers.meters.empty(); }
MeterEvent first(const Told& told) { return first_meter(told.session.headers.meters); }

void print_meter_changes(const Told& told) {
  const std::vector<MeterEvent> changes = sort_meter_events(told.session.headers.meters).changes;
  if (changes.empty()) return;
  print_text("  NOTE: this session has %d meter change(s) after the first,\n", static_cast<int>(changes.size()));
  const std::size_t shown = std::min(changes.size(), kMostMeters);
  for (std::size_t i = 0; i < shown; ++i) {
    print_text("      %u/%u at bar %u\n", changes[i].numerator, changes[i].denominator, changes[i].bar);
  }
  if (changes.size() > shown) {
    print_text("      ... and %d more\n", static_cast<int>(changes.size() - shown));
  }
}

void print_meter_repeats(const Told& told) {
  const std::vector<MeterEvent> repeats = sort_meter_events(told.session.headers.meters).repeats;
  if (repeats.empty()) return;
  print_text(
      "  %d meter event(s) repeat the meter already in force -- no bar line\n"
      "      moves, so there is nothing to carry:",
      static_cast<int>(repeats.size()));
  const std::size_t shown = std::min(repeats.size(), kMostMeters);
  for (std::size_t i = 0; i < shown; ++i) {
    print_text("%s %u/%u at bar %u", i == 0 ? "" : ",", repeats[i].numerator, repeats[i].denominator, repeats[i].bar);
  }
  if (repeats.size() > shown) {
    print_text(", ... and %d more", static_cast<int>(repeats.size() - shown));
  }
  print_text("\n");
}

constexpr Note kTempo[] = {
    {in<&TempoCounts::tempo_changes>, "  tempo map with %d changes\n"},
    {in<&TempoCounts::ramps_written>, asks_for_ramps_of_a_map,
     "      --tempo-ramps: %d drawn ramp(s) written as a REAPER ramp you can grab\n"
     "      and reshape, instead of the run of fixed steps Pro Tools stores.\n"
     "      PAST EACH RAMP NOTHING MOVES: each point's tempo is solved so the ramp\n"
     "      comes out on Pro Tools' own beat count -- %.4f ms here, %.2f sample(s)\n"
     "      at %g Hz -- so every bar line, tick-based item and MIDI note after it\n"
     "      lands where Pro Tools puts it, and sample-based audio never moves at all.\n"
     "      INSIDE a ramp the two differ by up to %.2f ms: Pro Tools holds each tempo\n"
     "      for a step and jumps, REAPER glides between points, and no line reproduces\n"
     "      a staircase. That difference returns to zero at every point. If you want\n"
     "      the steps themselves, leave this switch off -- the default is exact.\n",
     point_error_ms, point_error_samples, rate, inner_error_ms},
    {in<&TempoCounts::ramps_left>, asks_for_ramps_of_a_map,
     "      %d ramp(s) left as Pro Tools' steps: the tempos needed to come out on\n"
     "      Pro Tools' beat count were not tempos, so the run was left alone rather\n"
     "      than approximated\n"},
    {found_no_ramps, "      --tempo-ramps: no drawn ramp here; every tempo event is a plain step\n"},
};

constexpr Note kMeter[] = {
    {unless(has_meter_map), "  no meter map in this session: 4/4 throughout\n"},
    {has_meter_map, "  meter %d/%d, read from the session\n",
     [](const Told& told) { return static_cast<int>(first(told).numerator); },
     [](const Told& told) { return static_cast<int>(first(told).denominator); }},
    {print_meter_changes},
    {in<&TempoCounts::meter_changes>,
     "      All %d are written as REAPER time signature changes, at\n"
     "      the same bars. Worth one look at the ruler after opening.\n"},
    {print_meter_repeats},
};

}  // namespace

NoteGroup tempo() { return kTempo; }
NoteGroup meter() { return kMeter; }

}  // namespace frt::notes

// REAPER's own plug-ins in the place of Avid's.
#include <string>

#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

bool left_none_out(const Told& told) {
  return told.options.no_stand_ins && told.mix.fx.stand_ins.left_out <= 0 && told.one_sided_trims_lost() <= 0;
}
bool left_some_out(const Told& told) { return told.options.no_stand_ins && !left_none_out(told); }

constexpr Note kStandInsLeftOut[] = {
    {left_none_out, "  --no-stand-ins: on; no Avid plug-in in this session had a REAPER stand-in.\n"},
    {left_some_out,
     "  --no-stand-ins: %d Avid plug-in(s) left in their slot under their Pro\n"
     "      Tools name, switched off, instead of REAPER's own equivalent.\n",
     in<&StandInCounts::left_out>},
    {in<&Told::one_sided_trims_lost>,
     "      %d track(s) where a Trim flips one side only play both sides\n"
     "      upright: that flip is a REAPER plug-in, and the switch leaves it out.\n"},
};

// ---- Trim ----

bool has_trims(const Told& told) { return told.mix.trims.playing > 0; }

constexpr Note kTrims[] = {
    {in<&TrimCounts::cancelling_strips>,
     "  %d track(s) carry an EVEN number of inverting Trims, which cancel:\n"
     "      Pro Tools plays them in phase and so does the conversion.\n"},
    {in<&TrimCounts::playing>,
     "  %d Avid Trim instance(s). Trim is AAX only and cannot load in REAPER,\n"
     "      but POLARITY is a track control REAPER has, so an inverted track\n"
     "      arrives inverted (IPHASE) rather than silently back in phase.\n"},
    {in<&StandInCounts::trim_gains>, has_trims,
     "      %d of them sit in their slot as REAPER's Volume Adjustment with\n"
     "      Trim's gain (the slot's name says the value).\n"},
    {in<&TrimCounts::gains_below_range>, has_trims,
     "      %d Trim gain(s) are below -12 dB, beyond the measured range:\n"
     "      the value is extended from the curve above it. Check by ear.\n"},
    {in<&StandInCounts::wide_trims>, has_trims,
     "      %d Trim(s) on a track wider than stereo keep the Pro Tools-only\n"
     "      slot: their gain is not carried. Set it by hand.\n"},
    {in<&TrimCounts::unlinked_gains>, has_trims,
     "      %d unlinked Trim(s) have a different gain per channel; the\n"
     "      first channel's is used for both.\n"},
};

constexpr Note kOneSidedTrims[] = {
    {in<&Told::one_sided_trims_carried>,
     "  %d track(s) have Avid Trim polarity on ONE channel only (an unlinked\n"
     "      multi-mono Trim): REAPER's track polarity flips both, so the track is\n"
     "      left upright and REAPER's stock \"Channel Polarity Control\" flips\n"
     "      just that side, first in the chain.\n"},
    {in<&TrimCounts::mixed_surround>,
     "  %d surround Trim(s) flip polarity on some channels but not others:\n"
     "      only the first two channels are carried. Check those by hand.\n"},
};

constexpr Note kTrimsWithoutEffect[] = {
    {in<&TrimCounts::off_and_inverting>,
     "  %d Avid Trim(s) had polarity switched on but were BYPASSED or\n"
     "      INACTIVE, so Pro Tools did not invert anything and neither does\n"
     "      this project.\n"},
    {in<&TrimCounts::strips_without_phase>,
     "  %d strip(s) inverted by Avid Trim have no phase switch in REAPER\n"
     "      (the master is the usual one), so that inversion is NOT carried.\n"
     "      Insert a polarity flip there by hand.\n"},
};

// ---- what REAPER's own plug-ins stand in for ----

// "EQ3 7-Band 3, Channel Strip 1"
std::string stand_ins_by_family(const Told& told) {
  std::string list;
  for (const auto& [family, count] : told.mix.fx.stand_ins.written)
    list += (list.empty() ? "" : ", ") + family + " " + std::to_string(count);
  return list;
}

void print_losses(const Told& told) {
  const auto& notes = told.mix.fx.stand_ins.notes;
  if (notes.empty()) return;
  print_text("  Avid stand-ins approximated or left out:\n");
  for (const auto& [text, plugins] : notes) print_text("      %s (%d plug-in(s))\n", text.c_str(), plugins);
}

constexpr Note kStandIns[] = {
    {in<&StandInCounts::all>,
     "  %d Avid plug-in(s) arrive as REAPER's own equivalents, in the same\n"
     "      slot with the same settings (%s). No VST of these exists;\n"
     "      --no-stand-ins leaves them as named, switched-off slots instead.\n"
     "      The EQ is the same filter design; the dynamics are close, not\n"
     "      identical: REAPER's detectors are not Pro Tools'.\n",
     stand_ins_by_family},
    {in<&Eq3Counts::fitted_bands>,
     "      EQ3: %d band(s) fitted onto ReaEQ to follow Pro Tools' own curve to\n"
     "      20 kHz (%d extra ReaEQ band(s) for the top octave); the worst is\n"
     "      %.2f dB from it.\n",
     in<&Eq3Counts::extra_bands>, in<&Eq3Counts::worst_error>},
    {in<&Eq3Counts::first_order_slots>,
     "      EQ3: %d high-pass or low-pass filter(s) set to 6 or 18 dB/oct use\n"
     "      REAPER's Simple 1-Pole Filter for 6 dB/oct of the slope, in the slot\n"
     "      after the ReaEQ and named for the EQ3 filter: ReaEQ has no 6 dB/oct\n"
     "      filter.\n"},
    {print_losses},
};

}  // namespace

NoteGroup trims() { return kTrims; }
NoteGroup one_sided_trims() { return kOneSidedTrims; }
NoteGroup trims_without_effect() { return kTrimsWithoutEffect; }
NoteGroup stand_ins() { return kStandIns; }
NoteGroup stand_ins_left_out() { return kStandInsLeftOut; }

}  // namespace frt::notes

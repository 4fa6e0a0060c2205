// REAPER's own plug-ins in the place of Avid's.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

bool left_none_out(const Told& told) {
  return told.options.no_stand_ins && told.stand_ins_left_out <= 0 && told.one_sided_trims_lost <= 0;
}
bool left_some_out(const Told& told) { return told.options.no_stand_ins && !left_none_out(told); }

constexpr Note kStandInsLeftOut[] = {
    {left_none_out, "  --no-stand-ins: on; no Avid plug-in in this session had a REAPER stand-in.\n"},
    {left_some_out,
     "  --no-stand-ins: %d Avid plug-in(s) left in their slot under their Pro\n"
     "      Tools name, switched off, instead of REAPER's own equivalent.\n",
     in<&Told::stand_ins_left_out>},
    {in<&Told::one_sided_trims_lost>, in<&ConversionOptions::no_stand_ins>,
     "      %d track(s) where a Trim flips one side only play both sides\n"
     "      upright: that flip is a REAPER plug-in, and the switch leaves it out.\n"},
};

}  // namespace

NoteGroup stand_ins_left_out() { return kStandInsLeftOut; }

}  // namespace frt::notes

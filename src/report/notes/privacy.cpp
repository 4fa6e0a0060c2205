// What leaves this computer.
#include "report/notes/subjects.h"

namespace frt::notes {
namespace {

constexpr Note kPrivacy[] = {
    {in<&ConversionOptions::usage_shared>,
     "\n  PRIVACY: this program contains no network code. It wrote an\n"
     "      anonymous summary of this conversion (counts, and which plug-ins\n"
     "      converted how), which kestrel sends because usage summaries are on\n"
     "      in Help > App settings. The summary holds no track, clip or file\n"
     "      names, no paths and no audio. Nothing else about this session\n"
     "      left this computer. A report reaches kestrel only when it is\n"
     "      attached to an email and sent.\n"},
    {unless(in<&ConversionOptions::usage_shared>),
     "\n  PRIVACY: this program contains no network code. No information\n"
     "      about this session was transmitted from this computer: no\n"
     "      upload, no telemetry, no usage reporting. A report reaches\n"
     "      kestrel only when it is attached to an email and sent.\n"},
};

}  // namespace

NoteGroup privacy() { return kPrivacy; }

}  // namespace frt::notes

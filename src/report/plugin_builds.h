// Which builds of plug-ins were chosen, as the notes and the report say it.
#pragma once

#include <string>

#include "plugins/plugins.h"

namespace frt {

int inserts_kept_on_vst3(const Plugins& plugins);
// "Pro-Q 3 x2, Saturn 2 x1"
std::string plugins_kept_on_vst3(const Plugins& plugins);

// The Kontakt installed here, without its remarks in parentheses.
std::string kontakt_name(const Plugins& plugins);

}  // namespace frt

// Every line of the project above its first track.
#pragma once

#include "mix/header_page.h"
#include "writer/rpp_text.h"

namespace frt {

// Writes the header, leaving the project ready for its first track.
void write_project_header(ProjectText& project, const HeaderPage& page);

}  // namespace frt

// The text of --list: tempo, rate, tracks and buses of a session.
#pragma once

#include "session/session.h"

namespace frt {

// Prints tempo and rate, the session's track table, its buses, and the names that placements bear, marking those that
// the table does not hold.
void print_session_list(const Session& session);

}  // namespace frt

// What an insert's block holds of the plug-in's settings, and in which form.
//
// No length says where the settings lie. They are found by the marks of their makers first, as a list of control values
// next, by what they look like last; containers nest, so the order decides.
#pragma once

#include "base/bytes.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// Fills the fields of the insert's state. `start` and `end` are set.
void scan_state(ByteView image, InsertRecord& insert);

}  // namespace frt

// Base64 as the project text uses it: standard alphabet, "=" padding, one line.
#pragma once

#include <string>

#include "base/bytes.h"

namespace frt {

std::string base64(ByteView bytes);

}  // namespace frt

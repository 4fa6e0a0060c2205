// Numbers with a fixed count of digits behind the point, as printf's "%.<digits>f" gives them in the "C" locale.
#pragma once

#include <cstddef>

namespace frt {

// What put_fixed can need beside the digits behind the point: the sign, 309 digits, the point.
constexpr std::size_t kFixedRoom = 336;

// Writes the number at `out`, which has room for kFixedRoom + digits bytes, and gives the end of what it wrote.
char* put_fixed(char* out, double value, int digits);

}  // namespace frt

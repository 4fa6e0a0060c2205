#include "base/plain_numbers.h"

namespace frt {

PlainNumbers::PlainNumbers() {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
  before_ = uselocale(plain);
}

PlainNumbers::~PlainNumbers() { uselocale(before_); }

}  // namespace frt

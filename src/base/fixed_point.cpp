#include "base/fixed_point.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace frt {
namespace {

#if defined(__SIZEOF_INT128__)

constexpr std::uint64_t kPowers[] = {1,         10,         100,         1000,          10000,         100000,
                                     1'000'000, 10'000'000, 100'000'000, 1'000'000'000, 10'000'000'000};
constexpr int kMostDigits = 10;

constexpr char kPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546474849"
    "5051525354555657585960616263646566676869707172737475767778798081828384858687888990919293949596979899";

void put_pair(char* out, std::uint64_t number) { std::memcpy(out, kPairs + 2 * number, 2); }

// Writes the low digits of a number, zeros in front.
template <int kCount>
void put_digits(char* out, std::uint64_t number) {
  if constexpr (kCount > 4) {  // in halves, which don't wait for each other
    constexpr int kLow = kCount > 8 ? 4 : 2;
    put_digits<kCount - kLow>(out, number / kPowers[kLow]);
    put_digits<kLow>(out + kCount - kLow, number % kPowers[kLow]);
  } else if constexpr (kCount > 1) {
    put_pair(out + kCount - 2, number % 100);
    put_digits<kCount - 2>(out, number / 100);
  } else if constexpr (kCount == 1) {
    *out = static_cast<char>('0' + number);
  }
}

char* put_whole(char* out, std::uint64_t number) {
  char digits[kMostDigits + 2];
  char* first = digits + sizeof digits;
  for (; number >= 100; number /= 100) put_pair(first -= 2, number % 100);
  if (number >= 10) {
    put_pair(first -= 2, number);
  } else {
    *--first = static_cast<char>('0' + number);
  }
  const auto count = static_cast<std::size_t>(digits + sizeof digits - first);
  std::memcpy(out, first, count);
  return out + count;
}

// The number times a power of ten, rounded to a whole one, halves to even: exactly, since a double is a whole number of
// 53 bits over a power of two, and 10^10 takes 34 bits more. False where the result has no room or the number isn't
// one.
bool scale(double value, std::uint64_t power, std::uint64_t* scaled) {
  __extension__ typedef unsigned __int128 Wide;
  constexpr double kMost = 1.8e9;  // times 10^10 below 2^64
  if (!(value < kMost)) return false;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  constexpr std::uint64_t kFraction = (std::uint64_t{1} << 52) - 1;
  const int exponent = static_cast<int>(bits >> 52);
  const std::uint64_t whole = exponent == 0 ? bits & kFraction : (bits & kFraction) | (kFraction + 1);
  const int shift = 1075 - (exponent == 0 ? 1 : exponent);  // at least 22, by kMost
  *scaled = 0;
  if (shift > 100) return true;  // far below half of the last digit
  const Wide product = static_cast<Wide>(whole) * power;
  const Wide half = static_cast<Wide>(1) << (shift - 1);
  const Wide rest = product & ((half << 1) - 1);
  const auto down = static_cast<std::uint64_t>(product >> shift);
  *scaled = down + (rest > half || (rest == half && (down & 1) != 0) ? 1 : 0);
  return true;
}

// Some ten times as fast as std::to_chars, which is made for numbers of any size: with that, a million points of
// automation took five times as long as writing their text.
template <int kDigits>
bool put_quickly(char*& out, double value) {
  std::uint64_t scaled = 0;
  if (!scale(std::fabs(value), kPowers[kDigits], &scaled)) return false;
  if (std::signbit(value)) *out++ = '-';
  out = put_whole(out, scaled / kPowers[kDigits]);
  *out++ = '.';
  put_digits<kDigits>(out, scaled % kPowers[kDigits]);
  out += kDigits;
  return true;
}

// The counts of digits that projects hold.
bool put_quickly(char*& out, double value, int digits) {
  switch (digits) {
    case 6:
      return put_quickly<6>(out, value);
    case 9:
      return put_quickly<9>(out, value);
    case 10:
      return put_quickly<10>(out, value);
    default:
      return false;
  }
}

#else

bool put_quickly(char*&, double, int) { return false; }

#endif

}  // namespace

char* put_fixed(char* out, double value, int digits) {
  if (put_quickly(out, value, digits)) return out;
  const std::size_t room = kFixedRoom + static_cast<std::size_t>(digits > 0 ? digits : 0);
  return std::to_chars(out, out + room, value, std::chars_format::fixed, digits).ptr;
}

}  // namespace frt

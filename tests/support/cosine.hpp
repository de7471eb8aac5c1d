// SPDX-License-Identifier: MIT
// The cosine to almost all the bits of long double. Not every C library has that: some reduce arguments by a short pi.
#pragma once

#include <cmath>

namespace ovks::test {

inline long double cosineOf(long double x) {
  // pi / 2 in parts, all but the last so short that their products with the number of quarter turns are exact.
  constexpr long double kFirst = 0x1.921fb54442p+0L, kSecond = 0xd.18469898cp-44L, kLast = 0xc.51701b839a252049cp-84L;
  const long double quarters = std::nearbyint(x / kFirst);
  const long double rest = ((x - quarters * kFirst) - quarters * kSecond) - quarters * kLast;
  switch (static_cast<long long>(quarters) & 3) {
    case 0: return std::cos(rest);
    case 1: return -std::sin(rest);
    case 2: return -std::cos(rest);
    default: return std::sin(rest);
  }
}

}  // namespace ovks::test

// SPDX-License-Identifier: MIT
// The cosine to almost all the bits of long double. Not every C library has that: some reduce arguments by a short pi.
#pragma once

#include <cmath>

namespace ovks::test {

inline long double cosineOf(long double x) {
  // pi / 2 in two parts, the first so short that its product with the number of quarter turns is exact.
  constexpr long double kShort = 0x1.921fb54442p+0L, kRest = 0xd.18469898cc51701b8p-44L;
  const long double quarters = std::nearbyint(x / kShort), rest = (x - quarters * kShort) - quarters * kRest;
  switch (static_cast<long long>(quarters) & 3) {
    case 0: return std::cos(rest);
    case 1: return -std::sin(rest);
    case 2: return -std::cos(rest);
    default: return std::sin(rest);
  }
}

}  // namespace ovks::test

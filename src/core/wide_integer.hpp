// SPDX-License-Identifier: MIT
// Scaled 64-bit results that no lane holds exactly, one at a time.
#pragma once

#include <cstdint>

namespace ovks {

inline int64_t saturateLong(__int128 v) {
  return v > INT64_MAX ? INT64_MAX : v < INT64_MIN ? INT64_MIN : static_cast<int64_t>(v);
}

// v * 2^-scaleFactor for |v| <= 2^126, rounded to nearest with ties to even, saturated.
inline int64_t scaledLong(__int128 v, int scaleFactor) {
  if (scaleFactor <= 0) {
    if (scaleFactor < -63) scaleFactor = -63;
    return saturateLong(saturateLong(v) * (__int128{1} << -scaleFactor));
  }
  if (scaleFactor > 126) return 0;
  const __int128 half = __int128{1} << (scaleFactor - 1);
  const __int128 quotient = v >> scaleFactor, rest = v & (2 * half - 1);
  return saturateLong(quotient + (rest > half || (rest == half && (quotient & 1))));
}

// dividend / divisor to nearest, ties to even, saturated.
inline int64_t roundedQuotient(__int128 dividend, __int128 divisor) {
  const __int128 quotient = dividend / divisor, rest = dividend - quotient * divisor;
  const __int128 rest2 = 2 * (rest < 0 ? -rest : rest), size = divisor < 0 ? -divisor : divisor;
  const bool up = rest2 > size || (rest2 == size && (quotient & 1));
  return saturateLong(quotient + (!up ? 0 : (dividend < 0) == (divisor < 0) ? 1 : -1));
}

// dividend / divisor * 2^-scaleFactor likewise, saturated by its sign below factors of -30.
inline int64_t scaledQuotient(int64_t dividend, int64_t divisor, int scaleFactor) {
  if (scaleFactor >= 64 || dividend == 0) return 0;
  if (scaleFactor < -30) return (dividend < 0) == (divisor < 0) ? INT64_MAX : INT64_MIN;
  if (scaleFactor <= 0) return roundedQuotient(dividend * (__int128{1} << -scaleFactor), divisor);
  return roundedQuotient(dividend, divisor * (__int128{1} << scaleFactor));
}

}  // namespace ovks

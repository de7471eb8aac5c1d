// SPDX-License-Identifier: MIT
// The natural logarithm of positive normal 64f values, with an error below 1 ulp. The Gaussian generator keeps its own:
// a sequence, once published, stays.
#pragma once

#include "core/exp.hpp"

namespace ovks {

// x = 2^n m with sqrt(1/2) <= m < sqrt(2), f = m - 1, t = f / (2 + f), and ln m = 2 artanh t, a series in t^2. What is
// large is kept exact: ln m = f - (f^2 / 2 - t (f^2 / 2 + ...)).
template <class V>
OVKS_INLINE V logarithm(V x) {
  using I = Vec<int64_t, lanes<V>>;
  constexpr int64_t kRootHalf = 0x3fe6a09e667f3bcd, kOne = 0x3ff0000000000000, kMantissa = 0xfffffffffffff;
  const I shifted = bits<I>(x) + broadcast<I>(kOne - kRootHalf);
  const V m = bits<V>((shifted & broadcast<I>(kMantissa)) + broadcast<I>(kRootHalf));
  // The exponent as the lowest bits of 2^52.
  const I exponent = bits<I>(bits<Unsigned<I>>(shifted) >> 52) | broadcast<I>(0x4330000000000000);
  const V n = bits<V>(exponent) - broadcast<V>(0x1p52 + 1023);

  const V f = m - broadcast<V>(1), t = f / (f + broadcast<V>(2)), z = t * t, half = broadcast<V>(0.5) * f * f;
  // In short chains, which hide better behind each other.
  const V w = z * z;
  const V early = fma(w, polynomial(z, 0x1.2492492e0b70cp-2, 0x1.c71c62c42db88p-3),
                      polynomial(z, 0x1.5555555555558p-1, 0x1.99999999951f5p-2));
  const V late = polynomial(z, 0x1.7462be245eb1dp-3, 0x1.39fd25d62a4ffp-3, 0x1.2b6776a1c30c5p-3);
  const V series = z * fma(w * w, late, early);
  const V low = fma(n, broadcast<V>(0x1.ef35793c76730p-45), t * (half + series));
  return fma(n, broadcast<V>(0x1.62e42fefa3800p-1), f - (half - low));
}

}  // namespace ovks

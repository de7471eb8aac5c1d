// SPDX-License-Identifier: MIT
// The exponential of 64f vectors, with an error below 0.7 ulp (below 1 ulp where the result is denormal) in rounding to
// nearest.
//
// x = n ln 2 + r with |r| <= ln 2 / 2, and e^r = 1 + r + r^2 Q(r). The sum 1 + r is kept in two parts, so that nearly
// all of the error is the last rounding's.
#pragma once

#include "core/simd.hpp"

namespace ovks {

// Horner's scheme, constant first.
template <class V, class... C>
OVKS_INLINE V polynomial(V x, double first, C... higher) {
  if constexpr (sizeof...(C) == 0) return broadcast<V>(first);
  else return fma(polynomial(x, higher...), x, broadcast<V>(first));
}

// The same by pairs of terms, pairs of pairs and so on: a few more operations, but a shorter chain of them.
template <class V, class... C>
OVKS_INLINE V polynomialByPairs(V x, C... coefficients) {
  const double c[] = {static_cast<double>(coefficients)...};
  constexpr int n = sizeof...(C);
  V terms[(n + 1) / 2];
#pragma GCC unroll 16
  for (int i = 0; i < (n + 1) / 2; ++i) {
    const V even = broadcast<V>(c[2 * i]);
    terms[i] = 2 * i + 1 < n ? fma(broadcast<V>(c[2 * i + 1]), x, even) : even;
  }
#pragma GCC unroll 8
  for (int left = (n + 1) / 2; left > 1; left = (left + 1) / 2) {
    x = x * x;
#pragma GCC unroll 16
    for (int i = 0; i < (left + 1) / 2; ++i)
      terms[i] = 2 * i + 1 < left ? fma(terms[2 * i + 1], x, terms[2 * i]) : terms[2 * i];
  }
  return terms[0];
}

namespace detail {

// Adding it rounds to an integer, which then stands in the lowest bits.
inline constexpr double kRounder = 0x1.8p52;

// 2^n for an integral n in the exponent's range.
template <class V>
OVKS_INLINE V powerOfTwo(V n) {
  using I = Vec<uint64_t, lanes<V>>;
  return bits<V>((bits<I>(n + broadcast<V>(kRounder)) + broadcast<I>(1023)) << 52);
}

// e^(x - n ln 2).
template <class V>
OVKS_INLINE V expReduced(V x, V n) {
  const V r0 = fma(n, broadcast<V>(-0x1.62e42fefa39efp-1), x);  // exact
  const V low = broadcast<V>(-0x1.abc9e3b39803fp-56);
  const V r = fma(n, low, r0), rest = fma(n, low, r0 - r);
  const V q = polynomialByPairs(r, 0.5, 0x1.5555555555557p-3, 0x1.5555555555556p-5, 0x1.11111111100dbp-7,
                                0x1.6c16c16c162c7p-10, 0x1.a01a01abe815dp-13, 0x1.a01a01a6de2bfp-16, 0x1.71de02314a9afp-19,
                                0x1.27e4db5551b76p-22, 0x1.af4dea19a7a62p-26, 0x1.1f731f4154ff3p-29);
  const V one = broadcast<V>(1), high = one + r;
  return high + (((one - high) + r) + fma(r * r, q, rest));
}

template <class V>
OVKS_INLINE V expExponent(V x) {
  const V rounder = broadcast<V>(kRounder);
  return fma(x, broadcast<V>(0x1.71547652b82fep+0), rounder) - rounder;
}

}  // namespace detail

// e^x for |x| <= 700.
template <class V>
OVKS_INLINE V expBounded(V x) {
  const V n = detail::expExponent(x);
  return detail::expReduced(x, n) * detail::powerOfTwo(n);
}

// e^x for every x; NaN stays NaN.
template <class V>
OVKS_INLINE V exp(V x) {
  const V high = broadcast<V>(710), low = broadcast<V>(-750), rounder = broadcast<V>(detail::kRounder);
  x = x > high ? high : x;
  x = x < low ? low : x;
  const V n = detail::expExponent(x);
  const V half = fma(n, broadcast<V>(0.5), rounder) - rounder;
  return detail::expReduced(x, n) * detail::powerOfTwo(half) * detail::powerOfTwo(n - half);
}

}  // namespace ovks

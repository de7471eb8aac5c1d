// SPDX-License-Identifier: MIT
// Polynomials in vectors, by schemes that differ in what waits for what; constants first.
#pragma once

#include "core/simd.hpp"

namespace ovks {

// Adding it to a double rounds that to an integer, which then stands in the lowest bits.
inline constexpr double kRounder = 0x1.8p52;

// Horner's scheme.
template <class V, class... C>
OVKS_INLINE V polynomial(V x, double first, C... higher) {
  if constexpr (sizeof...(C) == 0) return broadcast<V>(first);
  else return fma(polynomial(x, higher...), x, broadcast<V>(first));
}

// The same of some vectors side by side, since a chain's steps wait for each other.
template <class V, int n, class... C>
OVKS_INLINE void polynomials(V (&values)[n], const V (&x)[n], double first, C... higher) {
  if constexpr (sizeof...(C) == 0) {
    for (V& v : values) v = broadcast<V>(first);
  } else {
    polynomials(values, x, higher...);
    for (int i = 0; i < n; ++i) values[i] = fma(values[i], x[i], broadcast<V>(first));
  }
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

}  // namespace ovks

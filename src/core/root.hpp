// SPDX-License-Identifier: MIT
// Square roots of vectors: correctly rounded, or nearly.
#pragma once

#include "core/simd.hpp"

namespace ovks {

template <class V>
OVKS_INLINE V squareRoot(V v) {
  constexpr bool single = sizeof(Lane<V>) == 4;
  if constexpr (sizeof(V) == 64) {
    if constexpr (single) return _mm512_sqrt_ps(v);
    else return _mm512_sqrt_pd(v);
  } else if constexpr (sizeof(V) == 32) {
    if constexpr (single) return _mm256_sqrt_ps(v);
    else return _mm256_sqrt_pd(v);
  } else {
    if constexpr (single) return _mm_sqrt_ps(v);
    else return _mm_sqrt_pd(v);
  }
}

// Within 0.8 ulp, of doubles in AVX-512 registers without the divider's help: an estimate of 14 bits, refined twice. Of
// denormals it tells fewer digits.
template <class V>
OVKS_INLINE V refinedRoot(V v) {
  if constexpr (kAvx512 && sizeof(V) == 64) {
    const V half = broadcast<V>(0.5), estimate = _mm512_rsqrt14_pd(v), root = v * estimate, inverse = half * estimate;
    const V error = _mm512_fnmadd_pd(root, inverse, half), nearer = fma(root, error, root);
    const V rest = _mm512_fnmadd_pd(nearer, nearer, v);
    constexpr int kZeroInfinityNan = 0x9f;  // are their own roots
    return _mm512_mask_mov_pd(fma(rest, fma(inverse, error, inverse), nearer),
                              _mm512_fpclass_pd_mask(v, kZeroInfinityNan), v);
  } else {
    return squareRoot(v);
  }
}

// 1 / sqrt(v) within 1.4 ulp for normal v, some vectors side by side; without the divider's help as above.
template <class V, int n>
OVKS_INLINE void inverseRoots(V (&roots)[n], const V (&v)[n]) {
  const V one = broadcast<V>(1);
  if constexpr (kAvx512 && sizeof(V) == 64) {
    V estimate[n], error[n], series[n];
    for (int i = 0; i < n; ++i) estimate[i] = _mm512_rsqrt14_pd(v[i]);
    for (int i = 0; i < n; ++i) error[i] = v[i] * estimate[i];
    for (int i = 0; i < n; ++i) error[i] = _mm512_fnmadd_pd(error[i], estimate[i], one);
    for (int i = 0; i < n; ++i) series[i] = fma(error[i], broadcast<V>(0.3125), broadcast<V>(0.375));
    for (int i = 0; i < n; ++i) series[i] = fma(series[i], error[i], broadcast<V>(0.5));
    for (int i = 0; i < n; ++i) error[i] *= estimate[i];
    for (int i = 0; i < n; ++i) roots[i] = fma(error[i], series[i], estimate[i]);
  } else {
    for (int i = 0; i < n; ++i) roots[i] = squareRoot(one / v[i]);
  }
}

}  // namespace ovks

// SPDX-License-Identifier: MIT
// The correctly rounded square root of vectors.
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

}  // namespace ovks

// SPDX-License-Identifier: MIT
// Vectors woven together.
#pragma once

#include "core/simd.hpp"

namespace ovks {

// The first or the last half of a0, b0, a1, b1, ...
template <int half, class V>
OVKS_INLINE V interleaved(V a, V b) {
  constexpr int n = lanes<V>;
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, (half * n / 2 + static_cast<int>(i / 2 + i % 2 * n))...);
  }
  (std::make_index_sequence<n>{});
}

// As many rows as lanes: log2 of that many times the first half of the rows is interleaved with the last.
template <class V>
OVKS_INLINE void transpose(V* rows) {
  constexpr int n = lanes<V>;
#pragma GCC unroll 8
  for (int distance = 1; distance < n; distance *= 2) {
    V woven[n];
#pragma GCC unroll 8
    for (int i = 0; i < n / 2; ++i) {
      woven[2 * i] = interleaved<0>(rows[i], rows[i + n / 2]);
      woven[2 * i + 1] = interleaved<1>(rows[i], rows[i + n / 2]);
    }
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) rows[i] = woven[i];
  }
}

}  // namespace ovks

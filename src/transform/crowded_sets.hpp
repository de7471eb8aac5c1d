// SPDX-License-Identifier: MIT
// Two arrays that lie alike within memory pages: what is read or written of them at a time crowds sets of the first
// cache.
#pragma once

#include "transform/points.hpp"

namespace ovks::fft {

// Whether L places m points apart, a vector at a time, crowd the sets of the first cache: they are memory pages apart,
// or half of one, and both arrays share their offset within pages. Lines then leave before all of them has been used.
template <class V>
bool crowdSets(Interleaved<Lane<V>>, std::ptrdiff_t) {
  return false;
}
template <class V>
bool crowdSets(Split<Lane<V>> points, std::ptrdiff_t m) {
  return m * std::ptrdiff_t{2 * sizeof(V)} >= 16 * kPageBytes && sharePageOffset(points);
}

// A run of W vectors.
template <int W, class V>
OVKS_INLINE void copyRun(const Lane<V>* from, Lane<V>* to) {
  unroll<W>([&](auto t) __attribute__((always_inline)) { store(to + t * lanes<V>, load<V>(from + t * lanes<V>)); });
}
// n of them that have been held back, to places a step apart.
template <int n, int W, class V>
OVKS_INLINE void release(Lane<V>* to, std::ptrdiff_t step, const Lane<V>* held) {
  for (int i = 0; i < n; ++i) copyRun<W, V>(held + i * W * lanes<V>, to + i * step);
}

}  // namespace ovks::fft

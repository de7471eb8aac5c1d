// SPDX-License-Identifier: MIT
// The opening pass, which does the closing pass's work first: points transformed across L runs of them, turned and
// transposed into rows.
//
// For each k of M = N / L, the transform of x[k + M r] over r, its point l turned by exp(-2 pi i l k / N), goes into
// lane l of row k. Columns of these rows transformed leave X[l + L j] in row j, lane l, which are rows of points in
// natural order. The twiddles are those of the closing pass.
#pragma once

#include "transform/closing_pass.hpp"

namespace ovks::fft {

// A tile: in(Index<r>) yields points of L neighbouring k at step r, turn(Index<l>, x) turns point l of all, and
// put(Index<i>, x) takes row i, points standing in both as Order says.
template <Direction D, class Order, class V, class In, class Turn, class Put>
OVKS_INLINE void openTile(In in, Turn turn, Put put) {
  constexpr int L = lanes<V>;
  Complex<V> points[L];
  butterfly<D, L>(
      in, [&](auto l, Complex<V> x) __attribute__((always_inline)) {
        if constexpr (decltype(l)::value == 0) points[l] = x;
        else points[l] = turn(l, x);
      });
  transposed<Order, V>(
      [&](auto l, auto s) __attribute__((always_inline)) {
        const Complex<V> a = points[Order::template lane<V>(l)], b = points[Order::template lane<V>(s)];
        return ComplexHalves<V>{halvesOf(a.re, b.re), halvesOf(a.im, b.im)};
      },
      [&](auto row) __attribute__((always_inline)) {
        unroll<L>([&](auto i) __attribute__((always_inline)) { put(i, row(i)); });
      });
}

// n tiles from the first of them on; their points stand m apart from step to step.
template <Direction D, class V, class Points, class Twiddles>
OVKS_INLINE void openTiles(Points src, std::ptrdiff_t m, Rows<V> rows, std::ptrdiff_t first, std::ptrdiff_t n,
                           Twiddles twiddles) {
  constexpr int L = lanes<V>;
  for (std::ptrdiff_t g = first; g < first + n; ++g, src = src.from(L)) {
    const Strided<L, Points> steps(src, m);
    openTile<D, typename Points::Order, V>(
        [&](auto r) __attribute__((always_inline)) { return steps(r).template get<V>(0); },
        [&](auto l, Complex<V> x)
            __attribute__((always_inline)) { return twiddles.template turn<D, decltype(l)::value>(g, x); },
        [&](auto i, Complex<V> x) __attribute__((always_inline)) { rows.put(g * L + i, x); });
  }
}

// From two arrays that crowd sets, by way of runs side by side.
template <Direction D, class V, class Twiddles>
[[gnu::noinline]] void openingPassFromRuns(Split<Lane<V>> src, Rows<V> rows, std::ptrdiff_t m, Twiddles twiddles) {
  constexpr int L = lanes<V>, kTiles = 8, kRun = kTiles * L;
  alignas(64) Lane<V> re[L * kRun], im[L * kRun];
  for (std::ptrdiff_t g = 0; g < m / L; g += kTiles, src = src.from(kRun)) {
    for (int r = 0; r < L; ++r) {
      copyRun<kTiles, V>(src.re + r * m, re + r * kRun);
      copyRun<kTiles, V>(src.im + r * m, im + r * kRun);
    }
    openTiles<D>(Split<Lane<V>>{re, im}, kRun, rows, g, kTiles, twiddles);
  }
}

// Into m rows.
template <Direction D, class V, class Points, class Twiddles>
[[gnu::noinline]] void openingPass(Points src, Rows<V> rows, std::ptrdiff_t m, Twiddles twiddles) {
  constexpr int L = lanes<V>;
  // A set has room for four lines of each array.
  if constexpr (L > 4 && std::is_same_v<Points, Split<Lane<V>>>)
    if (crowdSets<V>(src, m)) return openingPassFromRuns<D>(src, rows, m, twiddles);
  openTiles<D>(src, m, rows, 0, m / L, twiddles);
}

}  // namespace ovks::fft

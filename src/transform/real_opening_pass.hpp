// SPDX-License-Identifier: MIT
// The way back from a real signal's spectrum to its pairs: the split and the inverse of the closing pass in one.
//
// Rows k and M - k of the columns' spectrum come from Z[k + M r] and conj Z[h - k - M r], transformed across the steps.
// They then stand in natural order, which the passes over columns reverse, so that the last of them leaves points.
#pragma once

#include "transform/opening_pass.hpp"
#include "transform/real_pairs.hpp"

namespace ovks::fft {

// Z[k + M r] and the conjugate of its mirror image for n tiles and all r, from k = 1 + first on.
template <class V>
OVKS_INLINE void splitTiles(Interleaved<const Lane<V>> src, std::ptrdiff_t first, int n, std::ptrdiff_t m,
                            SplitTwiddles<V> twiddles, SpectrumPairs<V>& spectra) {
  constexpr int L = lanes<V>;
  const std::ptrdiff_t h = m * L;
  forSteps(
      first, n, m,
      twiddles, [&](auto upper, int step, int i, std::ptrdiff_t at, Complex<V> t) __attribute__((always_inline)) {
        const Complex<V> x = src.template get<V>(at + 1), y = src.template getReversed<V>(h - at - L);
        const Complex<V> a = part<false>(x, y, PlainSum{});
        const Complex<V> tb = turnPart<Direction::inverse, upper>(part<true>(x, y, PlainSum{}), t);
        spectra.template put<false>(step, i, a + tb);
        spectra.template put<true>(step, i, conjDifference(a, tb));
      });
}

// Rows 1 + g L ... (g + 1) L and those they mirror.
template <class V, class Twiddles>
OVKS_INLINE void openPair(SpectrumPairs<V>& spectra, int tile, std::ptrdiff_t g, Twiddles twiddles, Rows<V> rows,
                          std::ptrdiff_t m) {
  unroll<2>([&](auto mirrored) __attribute__((always_inline)) {
    // The inverse of a conjugate's transform is the conjugate of the other direction.
    constexpr Direction D = mirrored ? Direction::forward : Direction::inverse;
    openTile<D, ByChunks, V>(
        [&](auto r) __attribute__((always_inline)) { return spectra.template get<mirrored>(r, tile); },
        [&](auto l, Complex<V> x)
            __attribute__((always_inline)) { return twiddles.template turn<D, decltype(l)::value>(g, x); },
        [&](auto i, Complex<V> x) __attribute__((always_inline)) {
          const std::ptrdiff_t k = 1 + g * lanes<V> + i;
          rows.put(mirrored ? m - k : k, x);
        });
  });
}

// Row 0, from the spectrum at multiples of M.
template <class V, class T = Lane<V>>
[[gnu::noinline]] void openFirstRow(Interleaved<const T> src, Ends<T> ends, std::ptrdiff_t m, Rows<V> row) {
  constexpr int L = lanes<V>;
  Complex<T> z[L];
  z[0] = {ends.zero + ends.half, ends.zero - ends.half};
  unroll<L / 2>([&](auto i) __attribute__((always_inline)) {
    constexpr int r = decltype(i)::value + 1;
    const Complex<T> x = src.at(r * m), y = src.at((L - r) * m);
    const Complex<T> a = part<false>(x, y, PlainSum{}), b = part<true>(x, y, PlainSum{});
    const Complex<T> tb = turnPart<Direction::inverse, false>(b, kStepTwiddle<V, r>);
    z[r] = a + tb;
    z[L - r] = conjDifference(a, tb);
  });
  butterfly<Direction::inverse, L>(
      [&](auto r) __attribute__((always_inline)) { return z[r]; },
      [&](auto l, Complex<T> x) __attribute__((always_inline)) {
        constexpr int lane = ByChunks::template place<V>(l);
        row.p[lane] = x.re;
        row.p[L + lane] = x.im;
      });
}

// From a spectrum but for its ends, which are given, to m rows.
template <class V, class Twiddles>
[[gnu::noinline]] void openingPassOfReals(Interleaved<const Lane<V>> src, Ends<Lane<V>> ends, Rows<V> rows,
                                          std::ptrdiff_t m, Twiddles tiles, SplitTwiddles<V> split) {
  constexpr int L = lanes<V>;
  SpectrumPairs<V> spectra;
  const int n = static_cast<int>(std::min<std::ptrdiff_t>(m / L / 2, spectra.kTiles));
  for (std::ptrdiff_t g = 0; g < m / L / 2; g += n) {
    splitTiles(src, g * L, n, m, split, spectra);
    for (int i = 0; i < n; ++i) openPair(spectra, i, g + i, tiles, rows, m);
  }
  openFirstRow<V>(src, ends, m, rows);
}

}  // namespace ovks::fft

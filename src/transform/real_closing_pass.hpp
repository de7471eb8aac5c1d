// SPDX-License-Identifier: MIT
// The closing pass of a real signal's pairs and the split of their spectrum in one.
//
// The sum and the difference of row k and the conjugate of row M - k, transformed across their lanes, are A[k + M r]
// and B[k + M r]. So nothing in between goes to the destination and comes back.
#pragma once

#include "transform/closing_pass.hpp"
#include "transform/real_pairs.hpp"

namespace ovks::fft {

// Rows k = 1 + g L + l for l = 0 ... L - 1, and rows M - k.
template <class V>
class RowPairs {
 public:
  OVKS_INLINE RowPairs(Rows<V> rows, std::ptrdiff_t m, const int32_t* bitReversal, std::ptrdiff_t g)
      : tile_(rows.from(reverseTile<V>(bitReversal, g))),
        next_(rows.from(reverseTile<V>(bitReversal, g + 1))),
        partner_(rows.from(m / L - 1 - reverseTile<V>(bitReversal, g))),
        step_(m / L) {}

  // The halves of two rows, and of their partners.
  template <int l, int s>
  OVKS_INLINE ComplexHalves<V> halves() const {
    return row<l>().halves(row<s>());
  }
  template <int l, int s>
  OVKS_INLINE ComplexHalves<V> partnerHalves() const {
    return partner<l>().halves(partner<s>());
  }

 private:
  static constexpr int L = lanes<V>, kBits = log2OfPower(L);

  template <int l>
  OVKS_INLINE Rows<V> row() const {
    if constexpr (l == L - 1) return next_;
    else return tile_.from(bitReversed(l + 1, kBits) * step_);
  }
  template <int l>
  OVKS_INLINE Rows<V> partner() const {
    return partner_.from(bitReversed(L - 1 - l, kBits) * step_);
  }

  Rows<V> tile_, next_, partner_;
  std::ptrdiff_t step_;
};

// Of both halves.
template <bool odd, class V>
OVKS_INLINE ComplexHalves<V> part(ComplexHalves<V> x, ComplexHalves<V> y, ScaledSum<V> sum) {
  const Complex<V> low = part<odd>(Complex<V>{x.re.low, x.im.low}, Complex<V>{y.re.low, y.im.low}, sum);
  const Complex<V> high = part<odd>(Complex<V>{x.re.high, x.im.high}, Complex<V>{y.re.high, y.im.high}, sum);
  return {{low.re, high.re}, {low.im, high.im}};
}

// The spectra of even and odd elements of a tile.
template <class V, class Twiddles>
OVKS_INLINE void closePairs(RowPairs<V> rows, std::ptrdiff_t g, Twiddles twiddles, ScaledSum<V> sum,
                            SpectrumPairs<V>& parts, int tile) {
  using Order = ByChunks;
  ComplexHalves<V> odds[lanes<V>];
  unroll<2>([&](auto odd) __attribute__((always_inline)) {
    acrossLanes<Direction::forward, Order, V>(
        [&](auto r, auto s) __attribute__((always_inline)) {
          if constexpr (odd) {
            return odds[r];
          } else {
            constexpr int l = Order::template lane<V>(r), k = Order::template lane<V>(s);
            const ComplexHalves<V> x = rows.template halves<l, k>(), y = rows.template partnerHalves<l, k>();
            odds[r] = part<true>(x, y, sum);
            return part<false>(x, y, sum);
          }
        },
        [&](auto l, Complex<V> x) __attribute__((always_inline)) {
          return twiddles.template turn<Direction::forward, decltype(l)::value>(g, x);
        },
        [&](auto r, Complex<V> x) __attribute__((always_inline)) { parts.template put<odd>(r, tile, x); });
  });
}

// X[k + M r] and its mirror image for n tiles and all r, from k = 1 + first on.
template <class V>
OVKS_INLINE void joinParts(SpectrumPairs<V>& parts, std::ptrdiff_t first, int n, Interleaved<Lane<V>> dst,
                           std::ptrdiff_t m, SplitTwiddles<V> twiddles) {
  constexpr int L = lanes<V>;
  const std::ptrdiff_t h = m * L;
  forSteps(
      first, n, m,
      twiddles, [&](auto upper, int step, int i, std::ptrdiff_t at, Complex<V> t) __attribute__((always_inline)) {
        const Complex<V> a = parts.template get<false>(step, i);
        const Complex<V> tb = turnPart<Direction::forward, upper>(parts.template get<true>(step, i), t);
        dst.put(at + 1, a + tb);
        dst.putReversed(h - at - L, conjDifference(a, tb));
      });
}

// The spectrum at multiples of M, from row 0.
template <class V, class T = Lane<V>>
[[gnu::noinline]] Ends<T> closeFirstRow(Rows<V> row, Interleaved<T> dst, std::ptrdiff_t m, T factor) {
  constexpr int L = lanes<V>;
  Complex<T> z[L];
  butterfly<Direction::forward, L>(
      [&](auto l) __attribute__((always_inline)) {
        constexpr int lane = ByChunks::template place<V>(l);
        return Complex<T>{row.p[lane] * factor, row.p[L + lane] * factor};
      },
      [&](auto r, Complex<T> x) __attribute__((always_inline)) { z[r] = x; });
  unroll<L / 2>([&](auto i) __attribute__((always_inline)) {
    constexpr int r = decltype(i)::value + 1;
    const Complex<T> a = part<false>(z[r], z[L - r], PlainSum{}), b = part<true>(z[r], z[L - r], PlainSum{});
    const Complex<T> tb = turnPart<Direction::forward, false>(b, kStepTwiddle<V, r>);
    dst.set(r * m, a + tb);
    dst.set((L - r) * m, conjDifference(a, tb));
  });
  return {2 * (z[0].re + z[0].im), 2 * (z[0].re - z[0].im)};
}

// The spectrum, all but its ends, to dst. `factor` is half of what results are multiplied by.
template <class V, class Twiddles>
[[gnu::noinline]] Ends<Lane<V>> closingPassOfReals(Rows<V> rows, Interleaved<Lane<V>> dst, std::ptrdiff_t m,
                                                   Twiddles tiles, SplitTwiddles<V> split, const int32_t* bitReversal,
                                                   Lane<V> factor) {
  constexpr int L = lanes<V>;
  SpectrumPairs<V> parts;
  const ScaledSum<V> sum = {splat<V>(factor)};
  const int n = static_cast<int>(std::min<std::ptrdiff_t>(m / L / 2, parts.kTiles));
  for (std::ptrdiff_t g = 0; g < m / L / 2; g += n) {
    for (int i = 0; i < n; ++i) closePairs(RowPairs<V>(rows, m, bitReversal, g + i), g + i, tiles, sum, parts, i);
    joinParts(parts, g * L, n, dst, m, split);
  }
  return closeFirstRow<V>(rows, dst, m, factor);
}

}  // namespace ovks::fft

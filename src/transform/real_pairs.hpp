// SPDX-License-Identifier: MIT
// What the first and the last pass of real transforms that include the split have in common.
//
// In the terms of passes.hpp and real_split.hpp, X[k + M r] and its mirror image X[h - k - M r] have to do for all r
// with nothing but rows k and M - k of the columns' spectrum. The conjugate of row M - k, turned by the twiddles of row
// k and transformed across its lanes, is conj Z[h - k - M r]: both rows take the same twiddles. As T[m + h/2] is -i
// T[m], the first half of T will do.
#pragma once

#include "transform/closing_pass.hpp"
#include "transform/real_split.hpp"
#include "transform/small_transform.hpp"
#include "transform/spec.hpp"

namespace ovks::fft {

// While the pairs' rows are in the work buffer and specifications have room for the tables.
template <class T>
constexpr bool splitInPasses(int order) {
  return order - 1 >= kMinPairsPassesOrder<T> && !splitInTwoLevels<T>(order);
}

// Two spectra of some tiles each: every step of them is a run.
template <class V>
class SpectrumPairs {
 public:
  static constexpr int kTiles = 4;

  template <bool second>
  OVKS_INLINE Complex<V> get(int step, int tile) {
    return rows<second>(step, tile).get(0);
  }
  template <bool second>
  OVKS_INLINE void put(int step, int tile, Complex<V> x) {
    rows<second>(step, tile).put(0, x);
  }

 private:
  template <bool second>
  OVKS_INLINE Rows<V> rows(int step, int tile) {
    return Rows<V>{points_[second]}.from(step * kTiles + tile);
  }

  alignas(64) Lane<V> points_[2][lanes<V> * kTiles * 2 * lanes<V>];
};

// T b, or conj(T) b on the way back; T is t, or that of h/2 further on.
template <Direction D, bool upper, class V>
OVKS_INLINE Complex<V> turnPart(Complex<V> b, Complex<V> t) {
  const Complex<V> x = turn<D>(b, t.re, t.im);
  if constexpr (!upper) return x;
  else if constexpr (D == Direction::forward) return {x.im, -x.re};
  else return {-x.im, x.re};
}

// use(upper, step, i, at, t) for n tiles, each of L rows from k = 1 + first + i L on, and all their steps: X[at + 1] is
// the first point of a step; t is T there, or h/2 before where `upper` is one.
template <class V, class Use>
OVKS_INLINE void forSteps(std::ptrdiff_t first, int n, std::ptrdiff_t m, SplitTwiddles<V> twiddles, Use use) {
  constexpr int L = lanes<V>;
  for (int r = 0; r < L / 2; ++r) {
    for (int i = 0; i < n; ++i) {
      const std::ptrdiff_t at = first + i * L + r * m;
      const Complex<V> t = twiddles.at(at);
      use(Index<0>{}, r, i, at, t);
      use(Index<1>{}, r + L / 2, i, at + m * L / 2, t);
    }
  }
}

// T for the r-th multiple of M.
template <class V, int r>
inline constexpr Complex<Lane<V>> kStepTwiddle = {kTwiddle<Lane<V>, log2OfPower(2 * lanes<V>), r>.im,
                                                  -kTwiddle<Lane<V>, log2OfPower(2 * lanes<V>), r>.re};

// Those of the spectrum that are real.
template <class T>
struct Ends {
  T zero, half;
};

}  // namespace ovks::fft

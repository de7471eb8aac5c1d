// SPDX-License-Identifier: MIT
// The step between a real transform of N points and the complex one of its N/2 pairs.
//
// With h = N/2, z[m] = x[2m] + i x[2m + 1] and T = -i exp(-2 pi i m / N):
//   forward  X[m] = (A + T B) / 2,         conj X[h - m] = (A - T B) / 2,       A, B = Z[m] +- conj Z[h - m]
//   inverse  Z[m] = A + conj(T) B,         conj Z[h - m] = A - conj(T) B,       A, B = X[m] +- conj X[h - m]
// Both directions are one loop over pairs, differing in T's sign. The forward half is part of a short complex
// transform's factor, but of the split after a long one, which would take longer with a factor.
#pragma once

#include "transform/plan.hpp"
#include "transform/points.hpp"

namespace ovks::fft {

// Last lane first, which turns points in Interleaved's order about, too.
template <class V>
OVKS_INLINE Complex<V> reversed(Complex<V> x) {
  const auto last = [](int i) { return lanes<V> - 1 - i; };
  return {shuffle(x.re, last), shuffle(x.im, last)};
}

// Lanes of the split's vectors: pairs come in whole vectors.
template <class T>
constexpr int splitLanes(int order) {
  return (1 << order) / 4 >= kLanes<T> ? kLanes<T> : kLanes<T> / 2;
}

// T for m = 1 ... N/4, a vector of real parts and one of imaginary parts by turns, in Interleaved's order.
template <class V>
struct SplitTwiddles {
  const Lane<V>* table;

  OVKS_INLINE Complex<V> at(std::ptrdiff_t i) const {
    return {load<V>(table + 2 * i), load<V>(table + 2 * i + lanes<V>)};
  }
};

// The same for long transforms: T for m = 1 ... 1024, times exp(-2 pi i 1024 j / N) for the j-th 1024.
template <class V>
struct SplitTwiddleProducts {
  static constexpr std::ptrdiff_t kFine = 1024;
  const Lane<V>*fine, *coarse;

  OVKS_INLINE Complex<V> at(std::ptrdiff_t i) const {
    const Lane<V>* w = coarse + 2 * (i / kFine);
    const Complex<V> t = SplitTwiddles<V>{fine}.at(i % kFine);
    return turn<Direction::forward>(t, splat<V>(w[0]), splat<V>(w[1]));
  }
};

// p + q, and a multiple of it, which does not exceed the largest number where the sum would.
struct PlainSum {
  template <class V>
  OVKS_INLINE V operator()(V p, V q) const {
    return p + q;
  }
};
template <class V>
struct ScaledSum {
  V factor;

  OVKS_INLINE V operator()(V p, V q) const { return fma(q, factor, p * factor); }
};

// Of x and y, A = x + conj y, or B = x - conj y for odd elements.
template <bool odd, class V, class Sum>
OVKS_INLINE Complex<V> part(Complex<V> x, Complex<V> y, Sum sum) {
  if constexpr (odd) return {sum(x.re, -y.re), sum(x.im, y.im)};
  else return {sum(x.re, y.re), sum(x.im, -y.im)};
}
template <class V>
OVKS_INLINE Complex<V> conjDifference(Complex<V> a, Complex<V> b) {
  return {a.re - b.re, b.im - a.im};
}

// Pairs m and h - m for 1 <= m <= h / 2 from src to dst, which may be the same; the middle one is its own partner, and
// both of its results are the same.
template <Direction D, bool half, class V, class Twiddles>
[[gnu::noinline]] void splitPairs(const Lane<V>* src, Lane<V>* dst, std::ptrdiff_t h, Twiddles twiddles) {
  constexpr int L = lanes<V>;
  const Interleaved<const Lane<V>> from = {src};
  const Interleaved<Lane<V>> to = {dst};
  const auto sum = [] {
    if constexpr (half) return ScaledSum<V>{splat<V>(Lane<V>(0.5))};
    else return PlainSum{};
  }();
  for (std::ptrdiff_t i = 0; i < h / 2; i += L) {
    const std::ptrdiff_t m = 1 + i, mirrored = h - i - L;
    const Complex<V> x = from.template get<V>(m), y = reversed(from.template get<V>(mirrored));
    const Complex<V> a = part<false>(x, y, sum), b = part<true>(x, y, sum);
    const Complex<V> t = twiddles.at(i), tb = turn<D>(b, t.re, t.im);
    to.put(m, a + tb);
    to.put(mirrored, reversed(conjDifference(a, tb)));
  }
}

}  // namespace ovks::fft

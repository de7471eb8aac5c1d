// SPDX-License-Identifier: MIT
// The step between a real transform of N points and the complex one of its N/2 pairs.
//
// With h = N/2, z[m] = x[2m] + i x[2m + 1] and T = -i exp(-2 pi i m / N):
//   forward  X[m] = (A + T B) / 2,         conj X[h - m] = (A - T B) / 2,       A, B = Z[m] +- conj Z[h - m]
//   inverse  Z[m] = A + conj(T) B,         conj Z[h - m] = A - conj(T) B,       A, B = X[m] +- conj X[h - m]
// The forward half is part of the complex transform's factor. Both are one loop over pairs, differing in T's sign.
#pragma once

#include "transform/access.hpp"
#include "transform/plan.hpp"

namespace ovks::fft {

namespace detail {

struct ReversedEven {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * (lanes<V> - 1 - i);
  }
};
struct ReversedOdd {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * (lanes<V> - 1 - i) + 1;
  }
};
struct ReversedFirst {
  template <class V>
  static constexpr int lane(int i) {
    return lanes<V> - 1 - i / 2 + i % 2 * lanes<V>;
  }
};
struct ReversedLast {
  template <class V>
  static constexpr int lane(int i) {
    return lanes<V> / 2 - 1 - i / 2 + i % 2 * lanes<V>;
  }
};

}  // namespace detail

// Interleaved points i ... i + L - 1, last first.
template <class V>
OVKS_INLINE Complex<V> getReversed(const Lane<V>* p, std::ptrdiff_t i) {
  const V a = load<V>(p + 2 * i), b = load<V>(p + 2 * i + lanes<V>);
  return {shuffle2<detail::ReversedEven>(a, b), shuffle2<detail::ReversedOdd>(a, b)};
}
template <class V>
OVKS_INLINE void putReversed(Lane<V>* p, std::ptrdiff_t i, Complex<V> x) {
  store(p + 2 * i, shuffle2<detail::ReversedFirst>(x.re, x.im));
  store(p + 2 * i + lanes<V>, shuffle2<detail::ReversedLast>(x.re, x.im));
}

// Lanes of the split's vectors: pairs come in whole vectors.
template <class T>
constexpr int splitLanes(int order) {
  return (1 << order) / 4 >= kLanes<T> ? kLanes<T> : kLanes<T> / 2;
}

// T for m = 1 ... N/4, a vector of real parts and one of imaginary parts by turns.
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

// Pairs m and h - m for 1 <= m <= h / 2 from src to dst, which may be the same; the middle one is its own partner, and
// both of its results are the same.
template <Direction D, class V, class Twiddles>
[[gnu::noinline]] void splitPairs(const Lane<V>* src, Lane<V>* dst, std::ptrdiff_t h, Twiddles twiddles) {
  constexpr int L = lanes<V>;
  for (std::ptrdiff_t i = 0; i < h / 2; i += L) {
    const std::ptrdiff_t m = 1 + i, mirrored = h - i - L;
    const Complex<V> x = Interleaved<const Lane<V>>{src}.template get<V>(m), y = getReversed<V>(src, mirrored);
    const Complex<V> a = {x.re + y.re, x.im - y.im}, b = {x.re - y.re, x.im + y.im};
    const Complex<V> t = twiddles.at(i), tb = turn<D>(b, t.re, t.im);
    Interleaved<Lane<V>>{dst}.put(m, a + tb);
    putReversed(dst, mirrored, Complex<V>{a.re - tb.re, tb.im - a.im});
  }
}

}  // namespace ovks::fft

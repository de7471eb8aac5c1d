// SPDX-License-Identifier: MIT
// From what the accumulators hold to the result that a caller gets.
#pragma once

#include "core/float_to_integer.hpp"
#include "core/fold.hpp"
#include "core/root.hpp"
#include "core/wide_integer.hpp"

namespace ovks {

// A total by parts; a real one has only the first.
template <class X>
struct Parts {
  X re, im;

  OVKS_INLINE void operator+=(Parts o) {
    re += o.re;
    im += o.im;
  }
};

// The sum of the lanes, which hold elements of type T, in 64 bits.
template <class T, class V>
OVKS_INLINE auto sumOfLanes(V v) {
  using X = std::conditional_t<std::is_floating_point_v<Lane<V>>, double, int64_t>;
  if constexpr (isComplex<T>) {
    const auto two = foldLanes(v, kPlus);
    return Parts<X>{two[0], two[1]};
  } else {
    return Parts<X>{foldAll(v, kPlus), 0};
  }
}

// What accumulators of type A hold in the end. Those that can only take so many elements, kBlock, are read and cleared
// in between.
template <class A, class... S>
OVKS_INLINE auto total(std::ptrdiff_t n, const S*... src) {
  if constexpr (requires { A::kBlock; }) {
    auto sum = decltype(A().parts()){};
    for (std::ptrdiff_t i = 0; i < n; i += A::kBlock)
      sum += fold(A(), n - i < A::kBlock ? n - i : A::kBlock, src + i...).parts();
    return sum;
  } else {
    return fold(A(), n, src...).parts();
  }
}

// A result of type D, each part of it f of the total's.
template <class D, class X, class F>
OVKS_INLINE D settle(Parts<X> total, F f) {
  if constexpr (isComplex<D>) return {static_cast<Real<D>>(f(total.re)), static_cast<Real<D>>(f(total.im))};
  else return static_cast<D>(f(total.re));
}

template <class D>
D saturate(int64_t v) {
  using L = std::numeric_limits<D>;
  return static_cast<D>(v > L::max() ? L::max() : v < L::min() ? L::min() : v);
}

// v * 2^-scaleFactor, rounded once. Zero stays zero at every factor.
template <class D>
D scaled(__int128 v, int scaleFactor) {
  return saturate<D>(scaledLong(v, scaleFactor));
}

// sum / n * 2^-scaleFactor, rounded once, for |sum| < 2^62. Beyond 63 every quotient vanishes or saturates.
template <class D>
D scaledMean(int64_t sum, int n, int scaleFactor) {
  const int s = scaleFactor < -63 ? -63 : scaleFactor > 63 ? 63 : scaleFactor;
  const __int128 up = __int128{1} << (s < 0 ? -s : 0), down = __int128{1} << (s > 0 ? s : 0);
  return saturate<D>(roundedQuotient(sum * up, n * down));
}

// sqrt(numerator / denominator) * 2^-scaleFactor, rounded, whatever the caller's floating-point control.
template <class D>
D scaledRoot(__int128 numerator, int64_t denominator, int scaleFactor) {
  using V = Vec<double, 4>;
  const DefaultFloatControl control;
  // Arithmetic in registers alone would not heed the control's begin and end.
  asm volatile("" : "+m"(numerator), "+m"(denominator));
  const double square = static_cast<double>(numerator) / static_cast<double>(denominator);
  const V root = squareRoot(broadcast<V>(square));
  int32_t result = toInteger<int32_t, RoundNear>(PowerOfTwo<V>(scaleFactor)(root))[0];
  asm volatile("" : "+m"(result));
  return saturate<D>(result);
}

template <class F>
OVKS_INLINE F root(F v) {
  return squareRoot(broadcast<Vec<F, 16 / sizeof(F)>>(v))[0];
}

}  // namespace ovks

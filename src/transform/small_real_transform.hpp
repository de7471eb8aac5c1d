// SPDX-License-Identifier: MIT
// The real transforms of up to 16 points: one straight-line kernel each.
#pragma once

#include "transform/packed_layout.hpp"
#include "transform/small_transform.hpp"

namespace ovks::fft {

// -i exp(-2 pi i m / 2^order)
template <class T, int order, int m>
inline constexpr Complex<T> kSplitTwiddle = [] {
  const Complex<T> w = UnitCircle<T>(kQuarterWave<T>.sine, kConstantOrder, order)(m);
  return Complex<T>{w.im, -w.re};
}();

// Pairs z of h points become the other side's: see real_split.hpp.
template <Direction D, int order, class T>
OVKS_INLINE void splitSmall(Complex<T>* z) {
  constexpr int h = 1 << (order - 1);
  unroll<h / 2>([&](auto i) __attribute__((always_inline)) {
    constexpr int m = decltype(i)::value + 1;
    constexpr Complex<T> t = kSplitTwiddle<T, order, m>;
    const Complex<T> x = z[m], y = z[h - m];
    const Complex<T> a = {x.re + y.re, x.im - y.im}, b = {x.re - y.re, x.im + y.im}, tb = turn<D>(b, t.re, t.im);
    z[m] = a + tb;
    z[h - m] = {a.re - tb.re, tb.im - a.im};
  });
}

template <class Layout, int order, bool scale, class T>
void realForwardShort(const T* src, T* dst, [[maybe_unused]] T factor) {
  constexpr int n = 1 << order, h = n / 2;
  const auto scaled = [&](T x) { return scale ? x * factor : x; };
  if constexpr (order == 0) {
    dst[0] = scaled(src[0]);
    if constexpr (std::is_same_v<Layout, CcsLayout>) dst[1] = 0;
  } else {
    Complex<T> z[h];
    const Interleaved<const T> pairs = {src};
    transformPoints<Direction::forward, order - 1>(
        [&](auto j) __attribute__((always_inline)) { return pairs.at(j); }, [&](auto k, Complex<T> x) __attribute__((
                                                                                always_inline)) { z[k] = x; });
    splitSmall<Direction::forward, order>(z);
    const T half = static_cast<T>(0.5);
    dst[0] = scaled(z[0].re + z[0].im);
    dst[Layout::half(n)] = scaled(z[0].re - z[0].im);
    unroll<h - 1>([&](auto i) __attribute__((always_inline)) {
      constexpr int k = decltype(i)::value + 1;
      dst[2 * k + Layout::kShift] = scaled(z[k].re * half);
      dst[2 * k + Layout::kShift + 1] = scaled(z[k].im * half);
    });
    if constexpr (std::is_same_v<Layout, CcsLayout>) dst[1] = dst[n + 1] = 0;
  }
}

template <class Layout, int order, bool scale, class T>
void realInverseShort(const T* src, T* dst, [[maybe_unused]] T factor) {
  constexpr int n = 1 << order, h = n / 2;
  const auto scaled = [&](T x) { return scale ? x * factor : x; };
  if constexpr (order == 0) {
    dst[0] = scaled(src[0]);
  } else {
    const T a = src[0], b = src[Layout::half(n)];
    Complex<T> z[h];
    z[0] = {a + b, a - b};
    unroll<h - 1>([&](auto i) __attribute__((always_inline)) {
      constexpr int k = decltype(i)::value + 1;
      z[k] = {src[2 * k + Layout::kShift], src[2 * k + Layout::kShift + 1]};
    });
    splitSmall<Direction::inverse, order>(z);
    transformPoints<Direction::inverse, order - 1>(
        [&](auto j) __attribute__((always_inline)) { return z[j]; },
        [&](auto k, Complex<T> x) __attribute__((always_inline)) {
          Interleaved<T>{dst}.set(k, {scaled(x.re), scaled(x.im)});
        });
  }
}

template <class Layout, bool scale, class T>
struct ShortRealTransforms {
  using Kernel = void (*)(const T*, T*, T);
  static constexpr Kernel kForward[] = {realForwardShort<Layout, 0, scale, T>, realForwardShort<Layout, 1, scale, T>,
                                        realForwardShort<Layout, 2, scale, T>, realForwardShort<Layout, 3, scale, T>,
                                        realForwardShort<Layout, 4, scale, T>};
  static constexpr Kernel kInverse[] = {realInverseShort<Layout, 0, scale, T>, realInverseShort<Layout, 1, scale, T>,
                                        realInverseShort<Layout, 2, scale, T>, realInverseShort<Layout, 3, scale, T>,
                                        realInverseShort<Layout, 4, scale, T>};
};

}  // namespace ovks::fft

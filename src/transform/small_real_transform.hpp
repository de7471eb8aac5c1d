// SPDX-License-Identifier: MIT
// The real transforms of up to 16 points: one straight-line kernel each.
#pragma once

#include "transform/packed_layout.hpp"
#include "transform/small_transform.hpp"

namespace ovks::fft {

// Points 0 ... n/2 of the spectrum of n = 2^order reals a step apart, from the spectra of the even and the odd ones.
template <int order, int step, class T>
OVKS_INLINE void realSpectrum(const T* src, Complex<T>* spectrum) {
  constexpr int n = 1 << order, quarter = n / 4;
  if constexpr (order == 0) {
    spectrum[0] = {src[0], 0};
  } else if constexpr (order == 1) {
    spectrum[0] = {src[0] + src[step], 0};
    spectrum[1] = {src[0] - src[step], 0};
  } else {
    Complex<T> even[quarter + 1], odd[quarter + 1];
    realSpectrum<order - 1, 2 * step>(src, even);
    realSpectrum<order - 1, 2 * step>(src + step, odd);
    spectrum[0] = {even[0].re + odd[0].re, 0};
    spectrum[n / 2] = {even[0].re - odd[0].re, 0};
    spectrum[quarter] = {even[quarter].re, -odd[quarter].re};
    unroll<quarter - 1>([&](auto i) __attribute__((always_inline)) {
      constexpr int k = decltype(i)::value + 1;
      constexpr Complex<T> w = kTwiddle<T, order, k>;
      const Complex<T> a = even[k], b = turn<Direction::forward>(odd[k], w.re, w.im);
      spectrum[k] = a + b;
      spectrum[n / 2 - k] = {a.re - b.re, b.im - a.im};
    });
  }
}

// Back, unscaled.
template <int order, int step, class T>
OVKS_INLINE void realPoints(const Complex<T>* spectrum, T* dst) {
  constexpr int n = 1 << order, quarter = n / 4;
  if constexpr (order == 0) {
    dst[0] = spectrum[0].re;
  } else if constexpr (order == 1) {
    dst[0] = spectrum[0].re + spectrum[1].re;
    dst[step] = spectrum[0].re - spectrum[1].re;
  } else {
    Complex<T> even[quarter + 1], odd[quarter + 1];
    even[0] = {spectrum[0].re + spectrum[n / 2].re, 0};
    odd[0] = {spectrum[0].re - spectrum[n / 2].re, 0};
    even[quarter] = {2 * spectrum[quarter].re, 0};
    odd[quarter] = {-2 * spectrum[quarter].im, 0};
    unroll<quarter - 1>([&](auto i) __attribute__((always_inline)) {
      constexpr int k = decltype(i)::value + 1;
      constexpr Complex<T> w = kTwiddle<T, order, k>;
      const Complex<T> a = spectrum[k], b = spectrum[n / 2 - k];
      even[k] = {a.re + b.re, a.im - b.im};
      odd[k] = turn<Direction::inverse>(Complex<T>{a.re - b.re, a.im + b.im}, w.re, w.im);
    });
    realPoints<order - 1, 2 * step>(even, dst);
    realPoints<order - 1, 2 * step>(odd, dst + step);
  }
}

template <class Layout, int order, bool scale, class T>
void realForwardShort(const T* src, T* dst, [[maybe_unused]] T factor) {
  constexpr int n = 1 << order;
  const auto scaled = [&](T x) { return scale ? x * factor : x; };
  Complex<T> spectrum[n / 2 + 1];
  realSpectrum<order, 1>(src, spectrum);
  dst[0] = scaled(spectrum[0].re);
  if constexpr (order > 0) dst[Layout::half(n)] = scaled(spectrum[n / 2].re);
  unroll<(n - 1) / 2>([&](auto i) __attribute__((always_inline)) {
    constexpr int k = decltype(i)::value + 1;
    dst[2 * k + Layout::kShift] = scaled(spectrum[k].re);
    dst[2 * k + Layout::kShift + 1] = scaled(spectrum[k].im);
  });
  if constexpr (std::is_same_v<Layout, CcsLayout>) {
    dst[1] = 0;
    if constexpr (order > 0) dst[n + 1] = 0;
  }
}

template <class Layout, int order, bool scale, class T>
void realInverseShort(const T* src, T* dst, [[maybe_unused]] T factor) {
  constexpr int n = 1 << order;
  Complex<T> spectrum[n / 2 + 1];
  spectrum[0] = {src[0], 0};
  if constexpr (order > 0) spectrum[n / 2] = {src[Layout::half(n)], 0};
  unroll<(n - 1) / 2>([&](auto i) __attribute__((always_inline)) {
    constexpr int k = decltype(i)::value + 1;
    spectrum[k] = {src[2 * k + Layout::kShift], src[2 * k + Layout::kShift + 1]};
  });
  T points[n];
  realPoints<order, 1>(spectrum, points);
  unroll<n>([&](auto j) __attribute__((always_inline)) { dst[j] = scale ? points[j] * factor : points[j]; });
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

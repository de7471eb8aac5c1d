// SPDX-License-Identifier: MIT
// Numbers to compute expected results with.
#pragma once

#include <climits>
#include <cmath>
#include <limits>
#include <type_traits>

#include "ovks/types.h"

namespace ovks::test {

template <class T>
concept ComplexElement = requires(T z) {
  z.re;
};

// numerator / denominator * 2^exponent, exactly. Sums and products are of integers.
struct Exact {
  __int128 numerator = 0, denominator = 1;
  long long exponent = 0;
  int leastFactor = INT_MIN;  // below it, scaling saturates by the sign

  Exact() = default;
  template <class T>
  requires std::is_integral_v<T> || std::is_same_v<T, __int128>
  constexpr Exact(T x) : numerator(x) {}
  // NaN counts as 0.
  template <std::floating_point T>
  explicit Exact(T x) {
    if (std::isnan(x)) return;
    if (std::isinf(x)) {
      *this = infinite(x > 0 ? 1 : -1);
    } else {
      int e;
      numerator = static_cast<__int128>(std::ldexp(std::frexp(x, &e), 64));
      exponent = e - 64;
    }
  }
  // Saturates by the sign, whatever the scale factor; 0 stays 0.
  static Exact infinite(Exact sign) {
    sign.exponent = 1LL << 40;
    return sign;
  }

  friend Exact operator+(Exact a, Exact b) { return a.numerator + b.numerator; }
  friend Exact operator-(Exact a, Exact b) { return a.numerator - b.numerator; }
  friend Exact operator*(Exact a, Exact b) { return a.numerator * b.numerator; }
  bool operator==(int zero) const { return numerator == zero; }

  // Times 2^-scaleFactor, rounded to an integer, saturated.
  template <class T>
  T rounded(int scaleFactor, RoundMode mode) const {
    // Nothing is left of a signed 16-bit quotient from factors of 16 on, not even a tie.
    const auto magnitude = [](__int128 x) { return x < 0 ? -x : x; };
    const bool isShort = std::is_same_v<T, std::int16_t> && magnitude(numerator) <= 32768 * magnitude(denominator);
    if (leastFactor != INT_MIN && isShort && scaleFactor >= 16) return 0;
    const __int128 r = rounded(scaleFactor, mode);
    using L = std::numeric_limits<T>;
    return r > L::max() ? L::max() : r < L::min() ? L::min() : static_cast<T>(r);
  }

 private:
  __int128 rounded(int scaleFactor, RoundMode mode) const {
    using U = unsigned __int128;
    U n = static_cast<U>(numerator < 0 ? -numerator : numerator);
    U d = static_cast<U>(denominator < 0 ? -denominator : denominator);
    long long shift = scaleFactor < leastFactor && n != 0 ? 1 << 10 : exponent - scaleFactor;
    // From 2^64 on all results saturate, and below 1/2 all vanish.
    for (; shift > 0 && n != 0 && n >> 64 < d; --shift) n *= 2;
    for (; shift < 0 && d <= n; ++shift) d *= 2;
    if (shift < 0) return 0;
    U whole = n / d;
    const U rest = n % d;
    if (mode == RoundNear) whole += 2 * rest > d || (2 * rest == d && whole % 2);
    else if (mode != RoundZero) whole += 2 * rest >= d;
    const auto magnitude = static_cast<__int128>(whole);
    return (numerator < 0) != (denominator < 0) ? -magnitude : magnitude;
  }
};

// A value known to a bound; a bound of infinity accepts everything. NaN and infinity stand for themselves.
struct Near {
  long double value, bound;
};

template <class T>
struct Complex {
  T re, im;

  friend Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
  friend Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
  friend Complex operator*(Complex a, Complex b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
  friend Complex operator*(T a, Complex b) { return {a * b.re, a * b.im}; }
  bool operator==(int zero) const { return re == zero && im == zero; }
};

// A result that makes the call return a status; an error makes it write nothing.
template <class R>
struct WithStatus {
  R value;
  Status status;
};

}  // namespace ovks::test

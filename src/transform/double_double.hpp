// SPDX-License-Identifier: MIT
// Twice the precision of double as an unevaluated sum, for numbers and vectors, at run time and at compile time.
#pragma once

#include "transform/butterfly.hpp"

namespace ovks::fft {

template <class V>
struct DoubleDouble {
  V hi, lo;
};

// a + b where |a| >= |b|.
template <class V>
constexpr DoubleDouble<V> quickSum(V a, V b) {
  const V s = a + b;
  return {s, b - (s - a)};
}

template <class V>
constexpr DoubleDouble<V> exactProduct(V a, V b) {
  const V p = a * b;
  if constexpr (!std::is_arithmetic_v<V>) {
    return {p, fma(a, b, -p)};
  } else {  // fma is no constant expression: split the factors at half their bits
    constexpr double kSplit = 0x1p27 + 1;
    const V ca = kSplit * a, ah = ca - (ca - a), al = a - ah;
    const V cb = kSplit * b, bh = cb - (cb - b), bl = b - bh;
    return {p, ((ah * bh - p) + ah * bl + al * bh) + al * bl};
  }
}

// a * b + c, at run time with one rounding.
template <class V>
constexpr V multiplyAdd(V a, V b, double c) {
  if constexpr (std::is_arithmetic_v<V>) return a * b + c;
  else return fma(a, b, V{} + c);
}

// The parts of the product may overlap.
template <class V>
constexpr DoubleDouble<V> operator*(DoubleDouble<V> a, DoubleDouble<V> b) {
  const DoubleDouble<V> p = exactProduct(a.hi, b.hi);
  return {p.hi, p.lo + (a.hi * b.lo + a.lo * b.hi)};
}

constexpr DoubleDouble<double> operator/(DoubleDouble<double> a, double b) {
  const double q = a.hi / b;
  const DoubleDouble<double> p = exactProduct(q, b);
  return quickSum(q, ((a.hi - p.hi) - p.lo + a.lo) / b);
}

// c + a where |c| >= |a|.
template <class V>
constexpr DoubleDouble<V> plus(DoubleDouble<double> c, DoubleDouble<V> a) {
  const DoubleDouble<V> s = quickSum(V{} + c.hi, a.hi);
  return quickSum(s.hi, s.lo + (a.lo + c.lo));
}

// Series of the sine, odd, and the cosine, even, on 0 ... pi/4: sum of (-1)^j x^(2j + odd) / (2j + odd)!, the first
// `exact` terms in twice the precision. Five leave an error of 2^-80, none of 2^-51.
template <bool odd, int exact, class V>
constexpr DoubleDouble<V> sineSeries(DoubleDouble<V> x) {
  constexpr int kTerms = exact == 0 ? 9 : 13;
  struct Coefficients {
    DoubleDouble<double> c[kTerms];
    constexpr Coefficients() : c{} {
      c[0] = {1, 0};
      for (int j = 1; j < kTerms; ++j) c[j] = c[j - 1] / -((2.0 * j + odd) * (2 * j - 1 + odd));
    }
  };
  constexpr Coefficients k;
  const DoubleDouble<V> x2 = exact == 0 ? DoubleDouble<V>{x.hi * x.hi, V{}} : x * x;
  V tail = V{} + k.c[kTerms - 1].hi;
  for (int j = kTerms - 2; j >= exact; --j) tail = multiplyAdd(tail, x2.hi, k.c[j].hi);
  if constexpr (exact == 0) return {odd ? tail * x.hi : tail, V{}};
  DoubleDouble<V> r = {tail, V{}};
  for (int j = exact - 1; j >= 0; --j) r = plus(k.c[j], r * x2);
  if constexpr (odd) return r * x;
  else return r;
}

// sin(pi/2 t), 0 <= t <= 1, where every lane of t lies on the same side of 1/2 or on it; to be rounded to T.
template <class T, class V>
constexpr V sineOfQuarter(V t, bool upper) {
  constexpr DoubleDouble<double> kHalfPi = {0x1.921fb54442d18p0, 0x1.1a62633145c07p-54};
  constexpr int kExact = sizeof(T) == 4 ? 0 : 5;
  if (upper) t = 1.0 - t;
  const DoubleDouble<V> halfPi = {V{} + kHalfPi.hi, V{} + kHalfPi.lo};
  const DoubleDouble<V> p = exactProduct(t, halfPi.hi);
  const DoubleDouble<V> x = quickSum(p.hi, p.lo + t * halfPi.lo);
  const DoubleDouble<V> sine = upper ? sineSeries<false, kExact>(x) : sineSeries<true, kExact>(x);
  return sine.hi + sine.lo;
}

}  // namespace ovks::fft

// SPDX-License-Identifier: MIT
// The natural logarithm of vectors.
//
// Within 0.9 ulp for both float and double, to nearest. Zero gives -infinity, a negative operand or NaN a NaN,
// infinity itself; denormals are operands like any other.
#pragma once

#include <limits>

#include "core/simd.hpp"

namespace ovks {

namespace detail {

template <class F>
struct LogTraits;

template <>
struct LogTraits<double> {
  using I = int64_t;
  static constexpr int kMantissa = 52, kBias = 1023;
  static constexpr I kRootHalf = 0x3fe6a09e667f3bcd;
  // ln 2, its first part short enough for exact products with exponents.
  static constexpr double kLn2High = 0x1.62e42feep-1, kLn2Low = 0x1.a39ef35793c76p-33;
  // (2 atanh(s) / s - 2) / s^2 in powers of s^2, for |s| <= (sqrt 2 - 1) / (sqrt 2 + 1), within 2^-52.5.
  static constexpr double kSeries[] = {0x1.5555555555558p-1, 0x1.99999999952abp-2, 0x1.2492492df7663p-2,
                                       0x1.c71c62ddb431bp-3, 0x1.7462b6e311a89p-3, 0x1.39fe16ad885a7p-3,
                                       0x1.2b5bd9a316a24p-3};
};

template <>
struct LogTraits<float> {
  using I = int32_t;
  static constexpr int kMantissa = 23, kBias = 127;
  static constexpr I kRootHalf = 0x3f3504f3;
  static constexpr float kLn2High = 0x1.62e4p-1f, kLn2Low = 0x1.7f7d1cp-20f;
  static constexpr float kSeries[] = {0x1.555556p-1f, 0x1.9999ecp-2f, 0x1.245c36p-2f, 0x1.ddd1d8p-3f};
};

}  // namespace detail

// Vectors of a floating-point type taken apart: v = mantissa * 2^exponent, the mantissa from sqrt(1/2) to sqrt(2), for
// normal v > 0.
template <class V>
struct Scientific {
  using Traits = detail::LogTraits<Lane<V>>;
  using I = Vec<typename Traits::I, lanes<V>>;
  using U = Unsigned<I>;
  V mantissa;
  U biased;  // exponent + bias

  OVKS_INLINE explicit Scientific(V v) {
    constexpr auto one = typename Traits::I{Traits::kBias} << Traits::kMantissa;
    const U shifted = bits<U>(v) + broadcast<U>(one - Traits::kRootHalf);
    biased = shifted >> Traits::kMantissa;
    const U rest = shifted & broadcast<U>((typename Traits::I{1} << Traits::kMantissa) - 1);
    mantissa = bits<V>(rest + broadcast<U>(Traits::kRootHalf));
  }

  // In floating point, by way of the mantissa of a number that has room for it.
  OVKS_INLINE V exponent() const {
    using F = Lane<V>;
    constexpr F room = static_cast<F>(typename Traits::I{1} << Traits::kMantissa);
    const I held = bits<I>(biased) | bits<I>(broadcast<V>(room));
    return bits<V>(held) - broadcast<V>(room + Traits::kBias);
  }
};

// ln(mantissa 2^exponent), mantissa from sqrt(1/2) to sqrt(2). With s = f / (2 + f), ln(1 + f) = 2 atanh(s), whose
// first term f - s f is exact but for the last bits.
template <class V>
OVKS_INLINE V logOfParts(V mantissa, V exponent) {
  using Traits = detail::LogTraits<Lane<V>>;
  constexpr int terms = sizeof(Traits::kSeries) / sizeof(Lane<V>);
  const V f = mantissa - broadcast<V>(1), s = f / (f + broadcast<V>(2)), z = s * s;
  V series = broadcast<V>(Traits::kSeries[terms - 1]);
  for (int i = terms - 2; i >= 0; --i) series = fma(series, z, broadcast<V>(Traits::kSeries[i]));
  const V halfSquare = f * (f * broadcast<V>(0.5f));
  const V rest = fma(s, fma(z, series, halfSquare), exponent * broadcast<V>(Traits::kLn2Low));
  return fma(exponent, broadcast<V>(Traits::kLn2High), f - (halfSquare - rest));
}

template <class V>
OVKS_INLINE V log(V v) {
  using F = Lane<V>;
  using L = std::numeric_limits<F>;
  constexpr F up = sizeof(F) == 8 ? 0x1p54f : 0x1p25f, upExponent = sizeof(F) == 8 ? 54 : 25;
  const auto tiny = v < broadcast<V>(L::min());
  const Scientific<V> parts(tiny ? v * broadcast<V>(up) : v);
  const V exponent = parts.exponent() - (tiny ? broadcast<V>(upExponent) : V{});
  const V inside = logOfParts(parts.mantissa, exponent);
  const V infinity = broadcast<V>(L::infinity());
  const V outside = v == V{} ? -infinity : v < V{} ? broadcast<V>(L::quiet_NaN()) : v;
  return ((v > V{}) & (v < infinity)) ? inside : outside;
}

}  // namespace ovks

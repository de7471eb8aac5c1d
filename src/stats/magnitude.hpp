// SPDX-License-Identifier: MIT
// Accumulators of magnitudes, of one source or of the difference of two.
#pragma once

#include "core/complex.hpp"
#include "core/root.hpp"
#include "stats/sum.hpp"
#include "stats/wide_sum.hpp"

namespace ovks {

template <class V>
OVKS_INLINE V magnitude(V v) {
  using T = Lane<V>;
  if constexpr (std::is_floating_point_v<T>) {
    using I = decltype(v == v);
    return bits<V>(bits<I>(v) & broadcast<I>(std::numeric_limits<Lane<I>>::max()));
  } else {
    return v < 0 ? -v : v;
  }
}

// A source, or the difference of two, in lanes of F.
template <class F, class V>
OVKS_INLINE auto difference(V a) {
  return convert<F>(a);
}
template <class F, class V>
OVKS_INLINE auto difference(V a, V b) {
  return convert<F>(a) - convert<F>(b);
}

// The type that magnitudes of T have room in, and that of their sums.
template <class T>
using Roomy = std::conditional_t<isInteger<T>, int32_t, double>;

// The largest magnitude, compared as an integer: there NaN lies above infinity and comes through.
template <class T>
struct LargestMagnitude {
  using F = std::conditional_t<isInteger<T>, int32_t, T>;
  static constexpr int kElements = kVectorBytes / int{sizeof(F)}, kChains = 8;
  using I = Vec<std::conditional_t<sizeof(F) == 4, int32_t, int64_t>, kElements>;
  I largest{};

  template <class... V>
  OVKS_INLINE void add(V... v) {
    largest = kMax(largest, bits<I>(magnitude(difference<F>(v...))));
  }
  OVKS_INLINE void merge(const LargestMagnitude& o) { largest = kMax(largest, o.largest); }
  OVKS_INLINE F value() const {
    const auto two = foldLanes(largest, kMax);
    return bits<F>(kMax(two[0], two[1]));
  }
};

// In blocks that 32 bits have room for: |a - b| < 2^16.
template <class T>
struct SumOfMagnitudes {
  using F = Roomy<T>;
  static constexpr int kElements = kTaken<F>, kChains = 8;
  static constexpr std::ptrdiff_t kBlock = isInteger<T> ? (std::ptrdiff_t{1} << 14) * kElements : PTRDIFF_MAX;
  using V = Vec<F, kElements>;
  V sum{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    const V x = magnitude(difference<F>(v...));
    if constexpr (isInteger<T>) sum += x;
    else sum = plusWidened(sum, x);
  }
  OVKS_INLINE void merge(const SumOfMagnitudes& o) { sum += o.sum; }
  OVKS_INLINE auto parts() const {
    if constexpr (isInteger<T>) return Parts<int64_t>{laneTotal(sum), 0};
    else return partsOf<F>(foldLanes(sum, kPlus));
  }
};

// Magnitudes of floats, widened by shifts, which leave the adders more time than conversions do: three places down in 64
// bits, those of a float are a double 2^-896 times as large, exactly and with its denormals. Infinity and NaN come out as
// numbers from 2^128 on, so that a sum below has none of them.
struct SumOfShiftedMagnitudes {
  static constexpr int kElements = kVectorBytes / 4, kChains = 4;
  static constexpr double kLimit = 0x1p128;
  using V = Vec<double>;
  using U = Vec<uint64_t>;
  V even{}, odd{};

  OVKS_INLINE void add(Vec<float> v) {
    const U both = inRegister(bits<U>(v));
    const U low = both & broadcast<U>(0x7fffffff), high = both & broadcast<U>(uint64_t{0x7fffffff} << 32);
    even = fma(bits<V>(low << 29), broadcast<V>(0x1p896), even);
    odd = fma(bits<V>(high >> 3), broadcast<V>(0x1p896), odd);
  }
  OVKS_INLINE void merge(const SumOfShiftedMagnitudes& o) {
    even += o.even;
    odd += o.odd;
  }
  OVKS_INLINE Parts<double> parts() const { return partsOf<double>(foldLanes(even + odd, kPlus)); }
};

// Squares of 16-bit integers, or of their differences.
template <int sources>
struct ShortSquares {
  static constexpr int kElements = kVectorBytes / (sources == 1 ? 2 : 4), kChains = 4;
  static constexpr std::ptrdiff_t kBlock = WideSum<Vec<int32_t>>::kSteps * kElements;
  using V = Vec<int16_t, kElements>;
  std::conditional_t<sources == 1, WideSum<Vec<int32_t>>, LongProducts<Vec<int32_t>>> sum;

  OVKS_INLINE void add(V v) { sum.add(detail::multiplyNeighbours(v, v)); }
  OVKS_INLINE void add(V a, V b) {
    const auto x = difference<int32_t>(a, b);
    sum.add(x, x);
  }
  OVKS_INLINE void merge(const ShortSquares& o) { sum.merge(o.sum); }
  OVKS_INLINE Parts<int64_t> parts() const { return {static_cast<int64_t>(sum.total()), 0}; }
};

// Squares leave the range of doubles for elements beyond 2^511 or below 2^-511. Those of doubles are summed as they are
// at first, and once more, rescaled by a power of two, in the rare case that the result shows it.
template <bool rescaled>
struct Scale {
  double factor;

  template <class V>
  OVKS_INLINE V operator()(V v) const {
    if constexpr (rescaled) return v * broadcast<V>(factor);
    else return v;
  }
};

// finish(sum(scale)), where a sum below least may have lost digits.
template <class F, class Sum, class Finish>
OVKS_INLINE double inRange(double least, Sum sum, Finish finish) {
  const double v = sum(Scale<false>{1});
  if constexpr (sizeof(F) == 8) {
    if (v < least || v > std::numeric_limits<double>::max()) [[unlikely]] {
      const double factor = v < 1 ? 0x1p600 : 0x1p-600;
      return finish(sum(Scale<true>{factor})) / factor;
    }
  }
  return finish(v);
}

template <class F, class Scaling>
struct SumOfSquares {
  static constexpr int kElements = kTaken<double>, kChains = 8;
  using V = Vec<double, kElements>;
  Scaling scale;
  V sum{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    const V x = scale(difference<double>(v...));
    sum = fma(x, x, sum);
  }
  OVKS_INLINE void merge(const SumOfSquares& o) { sum += o.sum; }
  OVKS_INLINE double value() const { return partsOf<double>(foldLanes(sum, kPlus)).re; }
};

// Squares of moduli in double precision, in any order: real and imaginary parts go to lanes of their own.
template <class Scaling, class... S>
OVKS_INLINE auto squaredModuli(Scaling scale, S... v) {
  const auto square = [](auto re, auto im) { return fma(re, re, im * im); };
  if constexpr ((std::is_same_v<Lane<S>, float> && ...)) {
    const auto x = difference<double>(halves(v).first...), y = difference<double>(halves(v).second...);
    return square(unpackLow(x, y), unpackHigh(x, y));
  } else {
    return square(scale(difference<double>(realLanes(v)...)), scale(difference<double>(imagLanes(v)...)));
  }
}

// The square of the largest modulus, compared as LargestMagnitude does.
template <class T, class Scaling>
struct LargestModulus {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 8;
  using I = Vec<int64_t, kElements>;
  Scaling scale;
  I largest{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    largest = kMax(largest, bits<I>(squaredModuli(scale, v...)));
  }
  OVKS_INLINE void merge(const LargestModulus& o) { largest = kMax(largest, o.largest); }
  OVKS_INLINE double value() const {
    const auto two = foldLanes(largest, kMax);
    return bits<double>(kMax(two[0], two[1]));
  }
};

template <class T, class Scaling>
struct SumOfModuli {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 4;
  Scaling scale;
  Vec<double, kElements> sum{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    sum += quickRoot(squaredModuli(scale, v...));
  }
  OVKS_INLINE void merge(const SumOfModuli& o) { sum += o.sum; }
  OVKS_INLINE double value() const { return partsOf<double>(foldLanes(sum, kPlus)).re; }
};

}  // namespace ovks

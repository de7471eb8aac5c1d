// SPDX-License-Identifier: MIT
// Accumulators of magnitudes, of one source or of the difference of two.
#pragma once

#include "core/complex.hpp"
#include "core/root.hpp"
#include "stats/sum.hpp"
#include "stats/wide_sum.hpp"

namespace ovks {

// |v| of floating point.
template <class V>
OVKS_INLINE V magnitude(V v) {
  using I = decltype(v == v);
  return bits<V>(bits<I>(v) & broadcast<I>(std::numeric_limits<Lane<I>>::max()));
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

// |v| and |a - b| of 16-bit integers.
template <class V>
OVKS_INLINE Unsigned<V> shortMagnitude(V v) {
  return bits<Unsigned<V>>(larger(v, bits<V>(-bits<Unsigned<V>>(v))));
}
template <class V>
OVKS_INLINE Unsigned<V> shortMagnitude(V a, V b) {
  return bits<Unsigned<V>>(larger(a, b)) - bits<Unsigned<V>>(smaller(a, b));
}

// The largest magnitude, compared as an integer: there NaN lies above infinity and comes through.
template <class T>
struct LargestMagnitude {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 8;
  using V = Vec<T, kElements>;
  using I = std::conditional_t<isInteger<T>, Unsigned<Vec<int16_t>>, decltype(V{} == V{})>;
  I largest{};

  OVKS_INLINE void add(V v) { take(v); }
  OVKS_INLINE void add(V a, V b) { take(a, b); }
  OVKS_INLINE void merge(const LargestMagnitude& o) { largest = kMax(largest, o.largest); }
  OVKS_INLINE auto value() const {
    if constexpr (isInteger<T>) {
      const auto p = widen(largest);
      return static_cast<int>(foldAll(kMax(p.first, p.second), kMax));
    } else {
      return bits<T>(foldAll(largest, kMax));
    }
  }

 private:
  template <class... S>
  OVKS_INLINE void take(S... v) {
    if constexpr (isInteger<T>) largest = kMax(largest, shortMagnitude(v...));
    else largest = kMax(largest, bits<I>(magnitude(difference<T>(v...))));
  }
};

// Magnitudes of 16-bit integers, two to each lane of the sum.
struct SumOfShortMagnitudes {
  static constexpr int kElements = kVectorBytes / 2, kChains = 4;
  // Each step adds less than 2^17 to a lane.
  static constexpr std::ptrdiff_t kBlock = (std::ptrdiff_t{1} << 13) * kElements;
  using V = Vec<int16_t>;
  using W = Vec<int32_t>;
  W sum{};

  OVKS_INLINE void add(V v) { sum += detail::multiplyNeighbours(v, v >> 15 | broadcast<V>(1)); }
  OVKS_INLINE void add(V a, V b) {
    using U = Unsigned<W>;
    const U both = bits<U>(shortMagnitude(a, b));
    sum += bits<W>((both & broadcast<U>(0xffff)) + (both >> 16));
  }
  OVKS_INLINE void merge(const SumOfShortMagnitudes& o) { sum += o.sum; }
  OVKS_INLINE Parts<int64_t> parts() const { return {laneTotal(sum), 0}; }
};

// Magnitudes of floats and doubles.
template <class T>
struct SumOfMagnitudes {
  static constexpr int kElements = kTaken<double>, kChains = 8;
  using V = Vec<double>;
  V sum{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    sum = plusWidened(sum, magnitude(difference<double>(v...)));
  }
  OVKS_INLINE void merge(const SumOfMagnitudes& o) { sum += o.sum; }
  OVKS_INLINE Parts<double> parts() const { return sumOfLanes<double>(sum); }
};

// Magnitudes of floats, widened by shifts, which leave the adders more time than conversions do: three places down in
// 64 bits, those of a float are a double 2^-896 times as large, exactly and with its denormals. Infinity and NaN come
// out as numbers from 2^128 on, so that a sum below has none of them.
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
  OVKS_INLINE Parts<double> parts() const { return sumOfLanes<double>(even + odd); }
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
  OVKS_INLINE double value() const { return foldAll(sum, kPlus); }
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

// The square of the largest modulus, compared as LargestMagnitude does; NaN may have a sign here.
template <class T, class Scaling>
struct LargestModulus {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 8;
  using I = Vec<int64_t, kElements>;
  Scaling scale;
  I largest{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    largest = kMax(largest, bits<I>(magnitude(squaredModuli(scale, v...))));
  }
  OVKS_INLINE void merge(const LargestModulus& o) { largest = kMax(largest, o.largest); }
  OVKS_INLINE double value() const { return bits<double>(foldAll(largest, kMax)); }
};

// The same in single precision: within 2^-23, from kLeast to kGreatest.
struct LargestModulus32 {
  static constexpr int kElements = kVectorBytes / 8, kChains = 4;
  static constexpr float kLeast = 0x1p-100f, kGreatest = std::numeric_limits<float>::max();
  using U = Vec<uint32_t>;
  U largest{};

  OVKS_INLINE void add(Vec<float> v) { addTwo(v, v); }
  OVKS_INLINE void addTwo(Vec<float> v, Vec<float> w) {
    v = inRegister(v);
    w = inRegister(w);
    const Vec<float> re = realLanes(v, w), im = imagLanes(v, w);
    largest = kMax(largest, bits<U>(fma(re, re, im * im)));
  }
  OVKS_INLINE void merge(const LargestModulus32& o) { largest = kMax(largest, o.largest); }
  OVKS_INLINE float value() const { return bits<float>(foldAll(largest, kMax)); }
};

template <class T, class Scaling>
struct SumOfModuli {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 4;
  Scaling scale;
  Vec<double, kElements> sum{};

  template <class... S>
  OVKS_INLINE void add(S... v) {
    sum += squareRoot(squaredModuli(scale, v...));
  }
  // The divider takes as long for one root as the multipliers for another.
  template <class... S>
  OVKS_INLINE void addOdd(S... v) {
    sum += refinedRoot(squaredModuli(scale, v...));
  }
  OVKS_INLINE void merge(const SumOfModuli& o) { sum += o.sum; }
  OVKS_INLINE double value() const { return foldAll(sum, kPlus); }
};

}  // namespace ovks

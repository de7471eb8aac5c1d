// SPDX-License-Identifier: MIT
// Accumulators of magnitudes, of one source or of the difference of two.
#pragma once

#include "stats/sum.hpp"

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
template <class T, int sources>
struct SumOfMagnitudes {
  static constexpr int kElements = kTaken<double>, kChains = kWidenedChains<T, sources>;
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

}  // namespace ovks

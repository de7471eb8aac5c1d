// SPDX-License-Identifier: MIT
// Accumulators of the moduli of complex floating point, of one source or of the difference of two.
#pragma once

#include "core/complex.hpp"
#include "core/root.hpp"
#include "stats/square.hpp"

namespace ovks {

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

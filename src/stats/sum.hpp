// SPDX-License-Identifier: MIT
// Accumulators of sums.
#pragma once

#include "core/product.hpp"
#include "stats/total.hpp"

namespace ovks {

// What single-precision lanes add before double precision takes over.
inline constexpr std::ptrdiff_t kFastBlock = 8192;

// Elements that accumulators of W take at once: a register of them, once they are widened.
template <class W>
inline constexpr int kTaken = kVectorBytes / int{sizeof(W)};

// How many chains hide an addition's latency. Widening two sources takes as long as four additions do.
template <class T, int sources>
inline constexpr int kWidenedChains = sources == 2 && sizeof(T) == 4 ? 4 : 8;

// An accumulator that is read and cleared after every kFastBlock elements.
template <class A>
struct Fast : A {
  static constexpr std::ptrdiff_t kBlock = kFastBlock;
};

// total + x, by the multiplier where the adder is busy converting.
template <class V, class X>
OVKS_INLINE V plusWidened(V total, X x) {
  using F = Lane<V>;
  if constexpr (std::is_floating_point_v<F> && !std::is_same_v<V, X>) return fma(convert<F>(x), broadcast<V>(1), total);
  else return total + convert<F>(x);
}

// Elements of T in lanes of W's.
template <class T, class W>
struct LaneSum {
  static constexpr int kElements = kTaken<W>, kChains = 8;
  Elements<W, kElements> sum{};

  OVKS_INLINE void add(Elements<T, kElements> v) { sum = plusWidened(sum, v); }
  OVKS_INLINE void merge(const LaneSum& o) { sum += o.sum; }
  OVKS_INLINE auto parts() const { return sumOfLanes<T>(sum); }
};

// Floats widened by shifts, which leave the adders more time than conversions do: three places down in 64 bits, and
// the three below the sign set, a float is a double 2^896 times as large; infinity and NaN are what they were. Zeros
// and denormals alone gain or lose up to 2^-127, and a sum may overflow from 2^127 on.
struct ShiftedSum {
  static constexpr int kElements = kVectorBytes / 4, kChains = 4;
  // Shorter sums take no less time than by conversions, and longer ones wait for memory.
  static constexpr std::ptrdiff_t kLeastLength = 1024, kGreatestLength = 1 << 20;
  using V = Vec<double>;
  using I = Vec<int64_t>;
  V even{}, odd{};

  OVKS_INLINE void add(Vec<float> v) {
    const I both = bits<I>(v), set = broadcast<I>(int64_t{7} << 60);
    const I low = detail::multiplyEven(bits<Vec<int32_t>>(v), bits<Vec<int32_t>>(broadcast<I>(1 << 29)));
    even += bits<V>(low | set);
    odd += bits<V>((both >> 3 & ~broadcast<I>((1 << 29) - 1)) | set);
  }
  OVKS_INLINE void merge(const ShiftedSum& o) {
    even += o.even;
    odd += o.odd;
  }
  OVKS_INLINE double value() const { return foldAll(even + odd, kPlus) * 0x1p-896; }
  // Whether that is as near as a sum of conversions of n floats: what zeros may have brought is 2^-60 of it at most.
  OVKS_INLINE static bool holds(double value, std::ptrdiff_t n) {
    const double size = value < 0 ? -value : value;
    return size >= static_cast<double>(n) * 0x1p-67 && size <= std::numeric_limits<float>::max();
  }
};

// A sum of 32-bit lanes.
template <class V>
OVKS_INLINE int64_t laneTotal(V v) {
  const auto p = widen(v);
  return foldAll(p.first + p.second, kPlus);
}

// 16-bit integers in 32-bit lanes.
template <class T>
struct ShortSum {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = kAvx512 ? 8 : 4;
  // Each step adds at most 2^16 to a lane.
  static constexpr std::ptrdiff_t kBlock = (std::ptrdiff_t{1} << 14) * kElements;
  using V = Elements<T, kElements>;
  WideVec<V> re{}, im{};

  OVKS_INLINE void add(V v) {
    if constexpr (isComplex<T>) {
      re += bits<WideVec<V>>(v) << 16 >> 16;
      im += bits<WideVec<V>>(v) >> 16;
    } else {
      re += detail::multiplyNeighbours(v, broadcast<V>(1));
    }
  }
  OVKS_INLINE void merge(const ShortSum& o) {
    re += o.re;
    if constexpr (isComplex<T>) im += o.im;
  }
  OVKS_INLINE Parts<int64_t> parts() const { return {laneTotal(re), isComplex<T> ? laneTotal(im) : 0}; }
};

template <class T>
OVKS_INLINE auto sumOf(const T* src, std::ptrdiff_t n, [[maybe_unused]] AlgHint hint = AlgHintNone) {
  if constexpr (sizeof(Real<T>) == 2) {
    return total<ShortSum<T>>(n, src);
  } else if constexpr (isInteger<T>) {
    return total<LaneSum<T, int64_t>>(n, src);
  } else {
    using W = std::conditional_t<isComplex<T>, Complex64f, double>;
    if (sizeof(Real<T>) == 4 && hint == AlgHintFast) return total<Fast<LaneSum<T, T>>>(n, src);
    if constexpr (kAvx512 && std::is_same_v<T, float>) {
      if (n >= ShiftedSum::kLeastLength && n <= ShiftedSum::kGreatestLength) {
        const double sum = fold(ShiftedSum(), n, src).value();
        if (ShiftedSum::holds(sum, n)) [[likely]]
          return Parts<double>{sum, 0};
      }
    }
    return total<LaneSum<T, W>>(n, src);
  }
}

}  // namespace ovks

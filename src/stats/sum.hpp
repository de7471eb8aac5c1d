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
    return total<LaneSum<T, W>>(n, src);
  }
}

}  // namespace ovks

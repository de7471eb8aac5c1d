// SPDX-License-Identifier: MIT
// Accumulators of squares, of one source or of the difference of two.
#pragma once

#include "stats/magnitude.hpp"
#include "stats/wide_sum.hpp"

namespace ovks {

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

template <class F, class Scaling, int sources>
struct SumOfSquares {
  static constexpr int kElements = kTaken<double>, kChains = kWidenedChains<F, sources>;
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

}  // namespace ovks

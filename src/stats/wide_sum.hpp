// SPDX-License-Identifier: MIT
// Exact sums of integers as wide as their lanes.
#pragma once

#include "core/product.hpp"
#include "stats/total.hpp"

namespace ovks {

// Sums of signed lanes of type W, twice as wide or more. The low part wraps; the high part sums the upper halves of the
// addends, so that it falls short of the sum by less than the low part's range, and the two together tell it.
template <class W>
struct WideSum {
  using U = Unsigned<W>;
  static constexpr int kHalf = 4 * sizeof(Lane<W>);
  // So many addends at most, or any number where lanes have 64 bits.
  static constexpr std::ptrdiff_t kSteps = 1 << 14;
  U low{};
  W high{};

  // Of 32-bit addends the lowest value stands for 2^31: no sum of two products of 16 bits is as low, but one is as
  // high.
  OVKS_INLINE void add(W p) {
    low += bits<U>(p);
    if constexpr (sizeof(Lane<W>) == 4) p = bits<W>(bits<U>(p) - broadcast<U>(1));
    high += p >> kHalf;
  }
  OVKS_INLINE void merge(const WideSum& o) {
    low += o.low;
    high += o.high;
  }

  OVKS_INLINE auto total() const {
    const U rest = low - bits<U>(high << kHalf);
    if constexpr (sizeof(Lane<W>) == 4) {
      using Q = Vec<int64_t, lanes<W> / 2>;
      const auto h = widen(high);
      const Q even = bits<Q>(rest) & broadcast<Q>(0xffffffff), odd = bits<Q>(bits<Unsigned<Q>>(rest) >> 32);
      return foldAll((h.first << kHalf) + (h.second << kHalf) + even + odd, kPlus);
    } else {
      __int128 sum = 0;
      for (int i = 0; i < lanes<W>; ++i) sum += high[i] * (__int128{1} << kHalf) + rest[i];
      return sum;
    }
  }
};

// Sums of 64-bit products of 32-bit integers.
template <class V>
struct LongProducts {
  WideSum<WideVec<V>> sum;

  OVKS_INLINE void add(V a, V b) {
    sum.add(detail::multiplyEven(a, b));
    sum.add(detail::multiplyEven(detail::oddDown(a), detail::oddDown(b)));
  }
  OVKS_INLINE void merge(const LongProducts& o) { sum.merge(o.sum); }
  OVKS_INLINE __int128 total() const { return sum.total(); }
};

}  // namespace ovks

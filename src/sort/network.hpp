// SPDX-License-Identifier: MIT
// Sorting networks over R rows of L lanes held in registers.
//
// The columns are sorted first, which moves no lane. Then neighbouring columns merge pairwise, as bitonic sequences,
// until one is left: its rank c * R + r lies in row r, lane c, and a transposition brings the ranks into memory order.
// A row is a vector of keys, or any type with the same three functions.
#pragma once

#include "core/simd.hpp"

namespace ovks::sort {

namespace detail {
template <class F, int... i>
OVKS_INLINE void unrollOver([[maybe_unused]] F f, std::integer_sequence<int, i...>) {
  (f(std::integral_constant<int, i>{}), ...);
}
template <class V, class F, int... i>
OVKS_INLINE V pickLanes(V a, V b, F, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(a, b, F{}(i)...);
}
}  // namespace detail

// f(0), f(1) ... f(n - 1) with constant arguments: the rows must stay in registers.
template <int n, class F>
OVKS_INLINE void unroll(F f) {
  detail::unrollOver(f, std::make_integer_sequence<int, n>{});
}

// Lane i of the result is lane f(i) of a followed by b.
template <class V, class F>
OVKS_INLINE V pick(V a, V b, F f) {
  return detail::pickLanes(a, b, f, std::make_integer_sequence<int, lanes<V>>{});
}

// a keeps the smaller, b the larger keys.
template <class V>
OVKS_INLINE void exchange(V& a, V& b) {
  const V low = a < b ? a : b, high = a < b ? b : a;
  a = low;
  b = high;
}

// The same where the lane's number has `bit` clear, and the other way round where it is set.
template <int bit, class V>
OVKS_INLINE void exchangeAcross(V& a, V& b) {
  const V low = a < b ? a : b, high = a < b ? b : a;
  a = pick(low, high, [](int i) { return i & bit ? i + lanes<V> : i; });
  b = pick(high, low, [](int i) { return i & bit ? i + lanes<V> : i; });
}

template <int mask, class V>
OVKS_INLINE V swapLanes(V v) {
  return shuffle(v, [](int i) { return i ^ mask; });
}

// Each lane with the one at its number ^ mask: the smaller key goes where `bit` is clear.
template <int mask, int bit, class V>
OVKS_INLINE V exchangeLanes(V v) {
  V partner = swapLanes<mask>(v);
  exchange(v, partner);
  return pick(v, partner, [](int i) { return i & bit ? i + lanes<V> : i; });
}

// Sorts the lanes of a bitonic sequence.
template <class V>
OVKS_INLINE void mergeLanes(V& v) {
  unroll<__builtin_ctz(lanes<V>)>([&](auto k) __attribute__((always_inline)) {
    constexpr int distance = lanes<V> >> (k + 1);
    v = exchangeLanes<distance, distance>(v);
  });
}

// Sorts the lanes of each vector for itself, as bitonic sequences of twice the length each time.
template <class V, int count>
OVKS_INLINE void sortLanes(V (&v)[count]) {
  unroll<__builtin_ctz(lanes<V>)>([&](auto k) __attribute__((always_inline)) {
    constexpr int width = 1 << k;
    for (V& one : v) one = exchangeLanes<2 * width - 1, width>(one);
    unroll<k>([&](auto j) __attribute__((always_inline)) {
      constexpr int distance = width >> (j + 1);
      for (V& one : v) one = exchangeLanes<distance, distance>(one);
    });
  });
}

// Two vectors with sorted lanes become one sequence.
template <class V>
OVKS_INLINE void mergePair(V& a, V& b) {
  b = swapLanes<lanes<V> - 1>(b);
  exchange(a, b);
  mergeLanes(a);
  mergeLanes(b);
}

namespace detail {

// Batcher's odd-even merge sort of n values, as pairs in order.
template <int n>
struct Columns {
  struct Pair {
    unsigned char low, high;
  } pairs[n * 4] = {};
  int count = 0;

  constexpr Columns() {
    for (int p = 1; p < n; p *= 2) {
      for (int k = p; k > 0; k /= 2) {
        for (int j = k % p; j + k < n; j += 2 * k) {
          for (int i = j; i < j + k && i + k < n; ++i) {
            if (i / (2 * p) == (i + k) / (2 * p))
              pairs[count++] = {static_cast<unsigned char>(i), static_cast<unsigned char>(i + k)};
          }
        }
      }
    }
  }
};
template <int n>
inline constexpr Columns<n> columns{};

template <int R, class W>
OVKS_INLINE void sortColumns(W (&v)[R]) {
  unroll<columns<R>.count>([&](auto i) __attribute__((always_inline)) {
    constexpr auto pair = columns<R>.pairs[i];
    exchange(v[pair.low], v[pair.high]);
  });
}

// Two sorted groups of `width` columns become one.
template <int width, int R, class W>
OVKS_INLINE void mergeColumns(W (&v)[R]) {
  unroll<R / 2>([&](auto r) __attribute__((always_inline)) {
    W mirrored = swapLanes<2 * width - 1>(v[R - 1 - r]);
    exchangeAcross<width>(v[r], mirrored);
    v[R - 1 - r] = swapLanes<2 * width - 1>(mirrored);
  });
  if constexpr (width > 1) {
    unroll<R>([&](auto r) __attribute__((always_inline)) {
      unroll<__builtin_ctz(width)>([&](auto k) __attribute__((always_inline)) {
        constexpr int distance = width >> (k + 1);
        W partner = swapLanes<distance>(v[r]);
        exchangeAcross<distance>(v[r], partner);
      });
    });
  }
  unroll<__builtin_ctz(R)>([&](auto k) __attribute__((always_inline)) {
    constexpr int distance = R >> (k + 1);
    unroll<R / 2>([&](auto i) __attribute__((always_inline)) {
      constexpr int r = i / distance * 2 * distance + i % distance;
      exchange(v[r], v[r + distance]);
    });
  });
}

// One step of a transposition: swaps the lanes of a that have `bit` set with the lanes of b that have it clear.
template <int bit, class V>
OVKS_INLINE void swapBlocks(V& a, V& b) {
  const V low = pick(a, b, [](int i) { return i & bit ? lanes<V> + i - bit : i; });
  b = pick(a, b, [](int i) { return i & bit ? lanes<V> + i : i + bit; });
  a = low;
}

// Transposes each block of L rows.
template <int L, int R, class W>
OVKS_INLINE void transpose(W (&v)[R]) {
  unroll<__builtin_ctz(L)>([&](auto k) __attribute__((always_inline)) {
    constexpr int distance = 1 << k;
    unroll<R / 2>([&](auto i) __attribute__((always_inline)) {
      constexpr int r = i / distance * 2 * distance + i % distance;
      swapBlocks<distance>(v[r], v[r + distance]);
    });
  });
}

}  // namespace detail

// Sorts all R * L keys. Afterwards row i holds the ranks from rankOf<R, L>(i) on.
template <int L, int R, class W>
OVKS_INLINE void sortRows(W (&v)[R]) {
  static_assert(R % L == 0);
  detail::sortColumns(v);
  unroll<__builtin_ctz(L)>([&](auto k) __attribute__((always_inline)) { detail::mergeColumns<(1 << k)>(v); });
  detail::transpose<L>(v);
}
template <int R, int L>
constexpr int rankOf(int row) {
  return row % L * R + row / L * L;
}

}  // namespace ovks::sort

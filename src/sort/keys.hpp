// SPDX-License-Identifier: MIT
// Elements to keys in place, with the bounds that a sort of them needs.
#pragma once

#include "core/part.hpp"
#include "sort/sort.hpp"

namespace ovks::sort {

// Lanes of another width. gcc takes detours where one instruction does.
template <class To, class From>
OVKS_INLINE To resize(From v) {
  constexpr int to = sizeof(Lane<To>), from = sizeof(Lane<From>);
  if constexpr (!kAvx512 || (sizeof(To) < 64 && sizeof(From) < 64)) return __builtin_convertvector(v, To);
  else if constexpr (from == 4 && to == 8) return bits<To>(_mm512_cvtepi32_epi64(bits<__m256i>(v)));
  else if constexpr (from == 8 && to == 4) return bits<To>(_mm512_cvtepi64_epi32(bits<__m512i>(v)));
  else if constexpr (from == 2 && to == 4) return bits<To>(_mm512_cvtepi16_epi32(bits<__m256i>(v)));
  else if constexpr (from == 4 && to == 2) return bits<To>(_mm512_cvtepi32_epi16(bits<__m512i>(v)));
  else return __builtin_convertvector(v, To);
}

template <class K>
struct Extremes {
  using V = Vec<K>;
  V low, high;

  OVKS_INLINE explicit Extremes(V key) : low(key), high(key) {}
  OVKS_INLINE void see(V key) {
    low = key < low ? key : low;
    high = key > high ? key : high;
  }
  Bounds<K> bounds() const {
    Bounds<K> b{low[0], high[0]};
    for (int i = 1; i < lanes<V>; ++i) b = {low[i] < b.low ? low[i] : b.low, high[i] > b.high ? high[i] : b.high};
    return b;
  }
};

// Writes the keys of src to dst, which may be the same; n is a vector or more.
template <class K>
Bounds<K> mapKeys(K* dst, const K* src, std::ptrdiff_t n, const Order<K>& order) {
  using V = Vec<K>;
  constexpr std::ptrdiff_t L = lanes<V>;
  const V last = order.key(load<V>(src + n - L));
  Extremes<K> even(last), odd(last);
  std::ptrdiff_t i = 0;
  for (; i + 2 * L <= n; i += 2 * L) {
    const V a = order.key(load<V>(src + i)), b = order.key(load<V>(src + i + L));
    even.see(a);
    odd.see(b);
    store(dst + i, a);
    store(dst + i + L, b);
  }
  if (i + L <= n) {
    const V a = order.key(load<V>(src + i));
    even.see(a);
    store(dst + i, a);
  }
  store(dst + n - L, last);
  even.see(odd.low);
  even.see(odd.high);
  return even.bounds();
}

// Keys back to elements.
template <class K>
void unmapKeys(K* dst, const K* src, std::ptrdiff_t n, const Order<K>& order) {
  using V = Vec<K>;
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) store(dst + i, order.element(load<V>(src + i)));
  if (i < n) storePart(dst + i, order.element(loadPart<V>(src + i, n - i)), n - i);
}

// n copies of x.
template <class K>
void fill(K* p, std::ptrdiff_t n, K x) {
  using V = Vec<K>;
  const V v = broadcast<V>(x);
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) store(p + i, v);
  if (i < n) storePart(p + i, v, n - i);
}

template <class K>
OVKS_INLINE K elementOf(const Order<K>& order, K key) {
  using V = Vec<K, 16 / sizeof(K)>;
  return order.element(broadcast<V>(key))[0];
}
template <class K>
OVKS_INLINE K keyOf(const Order<K>& order, K element) {
  using V = Vec<K, 16 / sizeof(K)>;
  return order.key(broadcast<V>(element))[0];
}

}  // namespace ovks::sort

// SPDX-License-Identifier: MIT
// Short ranges, sorted whole in registers.
#pragma once

#include "sort/keys.hpp"
#include "sort/network.hpp"

namespace ovks::sort {

namespace detail {

template <class V>
OVKS_INLINE V laneNumbers() {
  V v;
  for (int i = 0; i < lanes<V>; ++i) v[i] = static_cast<Lane<V>>(i);
  return v;
}

// All bits for n lanes or more.
template <class V>
OVKS_INLINE unsigned firstLanes(std::ptrdiff_t n) {
  constexpr unsigned all = ~0u >> (32 - lanes<V>);
  return n >= lanes<V> ? all : n > 0 ? _bzhi_u32(all, static_cast<unsigned>(n)) : 0;
}

}  // namespace detail

// A register for a row that may be shorter.
template <class V>
using Register = Vec<Lane<V>, (sizeof(V) < 16 ? 16 : sizeof(V)) / sizeof(Lane<V>)>;

// The first n keys of a row, n of any size; the others are `rest`.
template <class V>
OVKS_INLINE V loadRow(const Lane<V>* p, std::ptrdiff_t n, V rest) {
  using W = Register<V>;
  constexpr int size = sizeof(Lane<V>), bytes = sizeof(W);
  if constexpr (kAvx512) {
    const unsigned m = detail::firstLanes<V>(n);
    const W w = extend<W>(rest);
    if constexpr (size == 2 && bytes == 16) return low<V>(bits<W>(_mm_mask_loadu_epi16(bits<__m128i>(w), m, p)));
    else if constexpr (size == 2) return bits<V>(_mm256_mask_loadu_epi16(bits<__m256i>(w), m, p));
    else if constexpr (size == 4 && bytes == 16) return bits<V>(_mm_mask_loadu_epi32(bits<__m128i>(w), m, p));
    else if constexpr (size == 4 && bytes == 32) return bits<V>(_mm256_mask_loadu_epi32(bits<__m256i>(w), m, p));
    else if constexpr (size == 4) return bits<V>(_mm512_mask_loadu_epi32(bits<__m512i>(w), m, p));
    else if constexpr (bytes == 32) return bits<V>(_mm256_mask_loadu_epi64(bits<__m256i>(w), m, p));
    else return bits<V>(_mm512_mask_loadu_epi64(bits<__m512i>(w), m, p));
  } else {
    if (n >= lanes<V>) return load<V>(p);
    if (n <= 0) return rest;
    const V valid = detail::laneNumbers<V>() < broadcast<V>(static_cast<Lane<V>>(n));
    return valid ? loadPart<V>(p, n) : rest;
  }
}

// The first n keys of a row, n of any size.
template <class V>
OVKS_INLINE void storeRow(Lane<V>* p, V v, std::ptrdiff_t n) {
  using W = Register<V>;
  constexpr int size = sizeof(Lane<V>), bytes = sizeof(W);
  if constexpr (kAvx512) {
    const unsigned m = detail::firstLanes<V>(n);
    const W w = extend<W>(v);
    if constexpr (size == 2 && bytes == 16) _mm_mask_storeu_epi16(p, m, bits<__m128i>(w));
    else if constexpr (size == 2) _mm256_mask_storeu_epi16(p, m, bits<__m256i>(w));
    else if constexpr (size == 4 && bytes == 16) _mm_mask_storeu_epi32(p, m, bits<__m128i>(w));
    else if constexpr (size == 4 && bytes == 32) _mm256_mask_storeu_epi32(p, m, bits<__m256i>(w));
    else if constexpr (size == 4) _mm512_mask_storeu_epi32(p, m, bits<__m512i>(w));
    else if constexpr (bytes == 32) _mm256_mask_storeu_epi64(p, m, bits<__m256i>(w));
    else _mm512_mask_storeu_epi64(p, m, bits<__m512i>(w));
  } else {
    if (n >= lanes<V>) {
      store(p, v);
    } else if (n > 0) {
      storePart(p, v, n);
    }
  }
}

// The elements of p[0, n), n <= R * L, in sorted order; `in` and `out` map on the way into the registers and back.
template <int R, int L, class K>
[[gnu::noinline]] void sortBlock(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  using V = Vec<K, L>;
  constexpr K last = static_cast<K>(std::make_unsigned_t<K>(-1) >> 1);
  const V rest = in.element(broadcast<V>(last));
  V v[R];
  unroll<R>([&](auto r) __attribute__((always_inline)) { v[r] = in.key(loadRow<V>(p + r * L, n - r * L, rest)); });
  sortRows<L>(v);
  unroll<R>([&](auto r) __attribute__((always_inline)) {
    constexpr int rank = rankOf<R, L>(r);
    storeRow<V>(p + rank, out.element(v[r]), n - rank);
  });
}

// The largest block that the registers hold.
template <class K>
inline constexpr std::ptrdiff_t kBlock = kAvx512 ? (sizeof(K) == 8 ? 128 : 256)
                                                 : (sizeof(K) == 8   ? 32
                                                    : sizeof(K) == 4 ? 64
                                                                     : 256);

template <class K>
OVKS_INLINE void sortShort(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  if constexpr (sizeof(K) == 2) {
    if (n <= 64) return sortBlock<8, 8>(p, n, in, out);
    if (n <= 128) return sortBlock<16, 8>(p, n, in, out);
    return sortBlock<16, 16>(p, n, in, out);
  } else {
    if (n <= 16) return sortBlock<4, 4>(p, n, in, out);
    if (n <= 32) return sortBlock<8, 4>(p, n, in, out);
    if constexpr (kBlock<K> >= 64) {
      if (n <= 64) return sortBlock<8, 8>(p, n, in, out);
    }
    if constexpr (kBlock<K> >= 128) {
      if (n <= 128) return sortBlock<16, 8>(p, n, in, out);
    }
    if constexpr (kBlock<K> >= 256) return sortBlock<16, 16>(p, n, in, out);
  }
}

}  // namespace ovks::sort

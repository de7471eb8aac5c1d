// SPDX-License-Identifier: MIT
// Short ranges, sorted whole in registers.
#pragma once

#include "sort/keys.hpp"
#include "sort/network.hpp"

namespace ovks::sort {

namespace detail {

// A bit for each lane whose number plus `from` is below n < 2^15: a comparison, since n is anybody's guess.
template <int L>
OVKS_INLINE unsigned lanesBelow(std::ptrdiff_t n, int from) {
  using V = Vec<int16_t, L == 16 ? 16 : 8>;
  const V number = laneNumbers<V>() + broadcast<V>(static_cast<int16_t>(from));
  const V end = broadcast<V>(static_cast<int16_t>(n));
  if constexpr (L == 16) return _mm256_cmpgt_epi16_mask(bits<__m256i>(end), bits<__m256i>(number));
  else return _mm_cmpgt_epi16_mask(bits<__m128i>(end), bits<__m128i>(number)) & ((1u << L) - 1);
}

}  // namespace detail

// The keys of p[from, n) that a row holds, none or all of its lanes perhaps; the others are `rest`.
template <class V>
OVKS_INLINE V loadRow(const Lane<V>* p, int from, std::ptrdiff_t n, V rest) {
  p += from;
  if constexpr (kAvx512) {
    constexpr int size = sizeof(Lane<V>), bytes = sizeof(V);
    const unsigned m = detail::lanesBelow<lanes<V>>(n, from);
    if constexpr (size == 1) return bits<V>(_mm_mask_loadu_epi8(bits<__m128i>(rest), m, p));
    else if constexpr (size == 2 && bytes == 16) return bits<V>(_mm_mask_loadu_epi16(bits<__m128i>(rest), m, p));
    else if constexpr (size == 2) return bits<V>(_mm256_mask_loadu_epi16(bits<__m256i>(rest), m, p));
    else if constexpr (size == 4 && bytes == 16) return bits<V>(_mm_mask_loadu_epi32(bits<__m128i>(rest), m, p));
    else if constexpr (size == 4 && bytes == 32) return bits<V>(_mm256_mask_loadu_epi32(bits<__m256i>(rest), m, p));
    else if constexpr (size == 4) return bits<V>(_mm512_mask_loadu_epi32(bits<__m512i>(rest), m, p));
    else if constexpr (bytes == 32) return bits<V>(_mm256_mask_loadu_epi64(bits<__m256i>(rest), m, p));
    else return bits<V>(_mm512_mask_loadu_epi64(bits<__m512i>(rest), m, p));
  } else {
    if (n - from >= lanes<V>) return load<V>(p);
    if (n <= from) return rest;
    return loadPart(p, n - from, rest);
  }
}

// The lanes of a row that belong to p[from, n).
template <class V>
OVKS_INLINE void storeRow(Lane<V>* p, int from, std::ptrdiff_t n, V v) {
  p += from;
  if constexpr (kAvx512) {
    constexpr int size = sizeof(Lane<V>), bytes = sizeof(V);
    const unsigned m = detail::lanesBelow<lanes<V>>(n, from);
    // gcc would make an extraction from a longer vector and this store one instruction, which faults under its mask.
    asm("" : "+v"(v));
    if constexpr (size == 1) _mm_mask_storeu_epi8(p, m, bits<__m128i>(v));
    else if constexpr (size == 2 && bytes == 16) _mm_mask_storeu_epi16(p, m, bits<__m128i>(v));
    else if constexpr (size == 2) _mm256_mask_storeu_epi16(p, m, bits<__m256i>(v));
    else if constexpr (size == 4 && bytes == 16) _mm_mask_storeu_epi32(p, m, bits<__m128i>(v));
    else if constexpr (size == 4 && bytes == 32) _mm256_mask_storeu_epi32(p, m, bits<__m256i>(v));
    else if constexpr (size == 4) _mm512_mask_storeu_epi32(p, m, bits<__m512i>(v));
    else if constexpr (bytes == 32) _mm256_mask_storeu_epi64(p, m, bits<__m256i>(v));
    else _mm512_mask_storeu_epi64(p, m, bits<__m512i>(v));
  } else if (n - from >= lanes<V>) {
    store(p, v);
  } else if (n > from) {
    storePart(p, v, n - from);
  }
}

// Sorts p[0, n), n <= R * L; `in` and `out` map on the way into the registers and back.
template <int R, int L, class K>
[[gnu::noinline]] void sortBlock(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  using V = Vec<K, L>;
  constexpr K last = static_cast<K>(std::make_unsigned_t<K>(-1) >> 1);
  const V rest = in.element(broadcast<V>(last));
  V v[R];
  unroll<R>([&](auto r) __attribute__((always_inline)) { v[r] = in.key(loadRow<V>(p, r * L, n, rest)); });
  sortRows<L>(v);
  unroll<R>([&](auto r) __attribute__((always_inline)) { storeRow<V>(p, rankOf<R, L>(r), n, out.element(v[r])); });
}

// What one vector or two of C's hold, narrow keys widened: fewer operations than a block of such short rows.
template <class C, int vectors, class K>
[[gnu::noinline]] void sortInLanes(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  constexpr int L = lanes<Vec<C>>, last = (vectors - 1) * L;
  using Stored = Vec<K, L>;
  constexpr K most = static_cast<K>(std::make_unsigned_t<K>(-1) >> 1);
  const Stored rest = in.element(broadcast<Stored>(most));
  const auto key = [&](Stored x) { return resize<Vec<C>>(in.key(x)); };
  const auto element = [&](Vec<C> v) { return out.element(resize<Stored>(v)); };
  Vec<C> v[vectors];
  if constexpr (vectors == 2) v[0] = key(load<Stored>(p));
  v[vectors - 1] = key(loadRow<Stored>(p, last, n, rest));
  sortLanes(v);
  if constexpr (vectors == 2) {
    mergePair(v[0], v[1]);
    store(p, element(v[0]));
  }
  storeRow<Stored>(p, last, n, element(v[vectors - 1]));
}

// What the registers hold, or nearly: some of AVX2's sixteen rows of bytes wait in memory.
template <class K>
inline constexpr std::ptrdiff_t kBlock = sizeof(K) < 4    ? 256
                                         : kAvx512        ? (sizeof(K) == 8 ? 128 : 256)
                                         : sizeof(K) == 8 ? 32
                                                          : 64;

template <class C, std::ptrdiff_t most, class K>
void sortWidened(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out);

// Few rows of wide lanes have the least latency, so narrow keys may be widened; bytes always are.
template <class K>
OVKS_INLINE void sortShort(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  constexpr bool narrow = sizeof(K)<4, native = sizeof(K)> 1;
  if constexpr (kAvx512) {
    using C = std::conditional_t<narrow, int32_t, K>;
    constexpr std::ptrdiff_t L = lanes<Vec<C>>;
    if (n <= L) return sortInLanes<C, 1>(p, n, in, out);
    if (L == 16 && n <= 2 * L) return sortInLanes<C, 2>(p, n, in, out);
  }
  if constexpr (narrow) {
    if (n <= 32) return sortWidened<int32_t, 32>(p, n, in, out);
  } else {
    if (n <= 16) return sortBlock<4, 4>(p, n, in, out);
    if (n <= 32) return sortBlock<8, 4>(p, n, in, out);
  }
  if constexpr (native && kBlock<K> >= 64) {
    if (n <= 64) return sortBlock<8, 8>(p, n, in, out);
  }
  if constexpr (native && kBlock<K> >= 128) {
    if (n <= 128) return sortBlock<16, 8>(p, n, in, out);
  }
  if constexpr (native && kBlock<K> >= 256) return sortBlock<16, 16>(p, n, in, out);
  if constexpr (!native) return sortWidened<int16_t, kBlock<K>>(p, n, in, out);
}

// Narrow keys sorted as wider ones.
template <class C, std::ptrdiff_t most, class K>
[[gnu::noinline]] void sortWidened(K* p, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out) {
  using V = Vec<C>;
  constexpr std::ptrdiff_t L = lanes<V>;
  using Narrow = Vec<K, L>;
  C key[most];
  std::ptrdiff_t i = 0;
  for (; i + L <= n; i += L) store(key + i, resize<V>(in.key(load<Narrow>(p + i))));
  if (i < n) store(key + i, resize<V>(in.key(loadPart<Narrow>(p + i, n - i))));
  sortShort(key, n, Order<C>{}, Order<C>{});
  for (i = 0; i + L <= n; i += L) store(p + i, out.element(resize<Narrow>(load<V>(key + i))));
  if (i < n) storePart(p + i, out.element(resize<Narrow>(load<V>(key + i))), n - i);
}

}  // namespace ovks::sort

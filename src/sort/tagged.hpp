// SPDX-License-Identifier: MIT
// Short ranges of keys that carry positions.
#pragma once

#include "sort/block.hpp"

namespace ovks::sort {

// A row of a network whose keys are too wide to share a lane with their positions.
template <int L>
struct TaggedRow {
  Vec<int64_t, L> key, tag;
};

// The lanes below eight whose numbers have the bit set.
template <int bit>
inline constexpr unsigned lanesWith = bit == 0   ? 0
                                      : bit == 1 ? 0xaa
                                      : bit == 2 ? 0xcc
                                                 : 0xf0;

// Where a and b are to be exchanged, for the smaller keys to be in b's place where the lane's number has `bit` set, and
// in a's elsewhere. Equal keys stay: both of the lanes that meet must come to the same decision.
template <int bit, int L>
OVKS_INLINE auto outOfOrder(Vec<int64_t, L> a, Vec<int64_t, L> b) {
  constexpr unsigned all = (1u << L) - 1, set = lanesWith<bit> & all;
  if constexpr (kAvx512 && L == 8) {
    const auto x = bits<__m512i>(a), y = bits<__m512i>(b);
    const __mmask8 less = _mm512_mask_cmplt_epi64_mask(all & ~set, y, x);
    return set == 0 ? less : _kor_mask8(less, _mm512_mask_cmplt_epi64_mask(set, x, y));
  } else if constexpr (kAvx512) {
    const auto x = bits<__m256i>(a), y = bits<__m256i>(b);
    const __mmask8 less = _mm256_mask_cmplt_epi64_mask(all & ~set, y, x);
    return set == 0 ? less : _kor_mask8(less, _mm256_mask_cmplt_epi64_mask(set, x, y));
  } else {
    return pick(b < a, a < b, [](int i) { return i & bit ? i + L : i; });
  }
}

template <class Where, class V>
OVKS_INLINE void swapWhere(Where where, V& a, V& b) {
  const V c = a;
  if constexpr (kAvx512 && sizeof(V) == 64) {
    a = bits<V>(_mm512_mask_mov_epi64(bits<__m512i>(a), where, bits<__m512i>(b)));
    b = bits<V>(_mm512_mask_mov_epi64(bits<__m512i>(b), where, bits<__m512i>(c)));
  } else if constexpr (kAvx512) {
    a = bits<V>(_mm256_mask_mov_epi64(bits<__m256i>(a), where, bits<__m256i>(b)));
    b = bits<V>(_mm256_mask_mov_epi64(bits<__m256i>(b), where, bits<__m256i>(c)));
  } else {
    a = where ? b : a;
    b = where ? c : b;
  }
}

template <int bit, int L>
OVKS_INLINE void exchangeAcross(TaggedRow<L>& a, TaggedRow<L>& b) {
  const auto where = outOfOrder<bit, L>(a.key, b.key);
  swapWhere(where, a.key, b.key);
  swapWhere(where, a.tag, b.tag);
}

template <int L>
OVKS_INLINE void exchange(TaggedRow<L>& a, TaggedRow<L>& b) {
  exchangeAcross<0>(a, b);
}

template <int mask, int L>
OVKS_INLINE TaggedRow<L> swapLanes(TaggedRow<L> row) {
  return {swapLanes<mask>(row.key), swapLanes<mask>(row.tag)};
}

template <int bit, int L>
OVKS_INLINE void swapBlocks(TaggedRow<L>& a, TaggedRow<L>& b) {
  detail::swapBlocks<bit>(a.key, b.key);
  detail::swapBlocks<bit>(a.tag, b.tag);
}

template <int L>
OVKS_INLINE bool any(Vec<int64_t, L> mask) {
  if constexpr (L == 8) return _mm512_movepi64_mask(bits<__m512i>(mask)) != 0;
  else return _mm256_movemask_pd(bits<__m256d>(mask)) != 0;
}

// The tags of a row from `from` on; fresh ones are the positions themselves.
template <int L>
OVKS_INLINE Vec<int64_t, L> loadTags(const int32_t* tag, int from, std::ptrdiff_t n, bool fresh) {
  if (fresh) return laneNumbers<Vec<int64_t, L>>() + broadcast<Vec<int64_t, L>>(from);
  return resize<Vec<int64_t, L>>(loadRow<Vec<int32_t, L>>(tag, from, n, Vec<int32_t, L>{}));
}

// Key and position in one lane, key above.
template <int R, int L>
[[gnu::noinline]] void sortTaggedBlock(int32_t* key, int32_t* tag, std::ptrdiff_t n, const Order<int32_t>& in,
                                       const Order<int32_t>& out, bool fresh) {
  using Narrow = Vec<int32_t, L>;
  using V = Vec<int64_t, L>;
  constexpr int64_t last = 0x7fffffffffffffff;
  V v[R];
  unroll<R>([&](auto r) __attribute__((always_inline)) {
    const Narrow k = in.key(loadRow<Narrow>(key, r * L, n, Narrow{}));
    const V packed = resize<V>(k) << 32 | loadTags<L>(tag, r * L, n, fresh);
    v[r] = laneNumbers<V>() < broadcast<V>(n - r * L) ? packed : broadcast<V>(last);
  });
  sortRows<L>(v);
  unroll<R>([&](auto r) __attribute__((always_inline)) {
    constexpr int rank = rankOf<R, L>(r);
    storeRow<Narrow>(key, rank, n, out.element(resize<Narrow>(v[r] >> 32)));
    storeRow<Narrow>(tag, rank, n, resize<Narrow>(v[r]));
  });
}

// What a network cannot do: keys that equal the padding.
inline void insertTagged(int64_t* key, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& in,
                         const Order<int64_t>& out, bool fresh) {
  using Scalar = Vec<int64_t, 2>;
  const auto at = [](const int64_t* p, const auto& map) { return map(Scalar{*p})[0]; };
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const int64_t moving = at(key + i, [&](Scalar x) { return in.key(x); });
    const int32_t position = fresh ? static_cast<int32_t>(i) : tag[i];
    std::ptrdiff_t j = i;
    for (; j > 0 && moving < key[j - 1]; --j) {
      key[j] = key[j - 1];
      tag[j] = tag[j - 1];
    }
    key[j] = moving;
    tag[j] = position;
  }
  for (std::ptrdiff_t i = 0; i < n; ++i) key[i] = at(key + i, [&](Scalar x) { return out.element(x); });
}

// Keys too wide to share a lane with their positions.
template <int R, int L>
[[gnu::noinline]] void sortTaggedBlock(int64_t* key, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& in,
                                       const Order<int64_t>& out, bool fresh) {
  using V = Vec<int64_t, L>;
  const V last = broadcast<V>(0x7fffffffffffffff), rest = in.element(last);
  TaggedRow<L> v[R];
  V taken{};
  unroll<R>([&](auto r) __attribute__((always_inline)) {
    v[r] = {in.key(loadRow<V>(key, r * L, n, rest)), loadTags<L>(tag, r * L, n, fresh)};
    taken |= (v[r].key == last) & (laneNumbers<V>() < broadcast<V>(n - r * L));
  });
  if (any<L>(taken)) return insertTagged(key, tag, n, in, out, fresh);
  sortRows<L>(v);
  unroll<R>([&](auto r) __attribute__((always_inline)) {
    constexpr int rank = rankOf<R, L>(r);
    storeRow<V>(key, rank, n, out.element(v[r].key));
    storeRow<Vec<int32_t, L>>(tag, rank, n, resize<Vec<int32_t, L>>(v[r].tag));
  });
}

template <class K>
inline constexpr std::ptrdiff_t kTaggedBlock = !kAvx512         ? 32
                                               : sizeof(K) == 8 ? 64
                                                                : 128;

// Sorts key[0, n) with the positions beside: the tags' own, or fresh ones.
template <class K>
OVKS_INLINE void sortTaggedShort(K* key, int32_t* tag, std::ptrdiff_t n, const Order<K>& in, const Order<K>& out,
                                 bool fresh) {
  if (n <= 16) return sortTaggedBlock<4, 4>(key, tag, n, in, out, fresh);
  if (n <= 32) return sortTaggedBlock<8, 4>(key, tag, n, in, out, fresh);
  if constexpr (kTaggedBlock<K> >= 64) {
    if (n <= 64) return sortTaggedBlock<8, 8>(key, tag, n, in, out, fresh);
  }
  if constexpr (kTaggedBlock<K> >= 128) return sortTaggedBlock<16, 8>(key, tag, n, in, out, fresh);
}

inline void sortTaggedShort(int16_t* key, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& in,
                            const Order<int16_t>& out, bool fresh) {
  int32_t wide[kTaggedBlock<int16_t>];
  for (std::ptrdiff_t i = 0; i < n; ++i) wide[i] = key[i] ^ in.flip;
  sortTaggedShort(wide, tag, n, Order<int32_t>{}, Order<int32_t>{}, fresh);
  for (std::ptrdiff_t i = 0; i < n; ++i) key[i] = static_cast<int16_t>(wide[i] ^ out.flip);
}

}  // namespace ovks::sort

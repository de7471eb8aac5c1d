// SPDX-License-Identifier: MIT
// Vectors of double-width lanes and back, with saturation.
//
// Widening splits a vector into two in whatever order the processor does at once; narrowing is its inverse, so that the
// order never shows.
#pragma once

#include <limits>

#include "core/simd.hpp"

namespace ovks {

template <class T>
struct WiderType;
template <>
struct WiderType<uint8_t> {
  using type = uint16_t;
};
template <>
struct WiderType<int16_t> {
  using type = int32_t;
};
template <>
struct WiderType<uint16_t> {
  using type = uint32_t;
};
template <>
struct WiderType<int32_t> {
  using type = int64_t;
};
template <class T>
using Wider = typename WiderType<T>::type;

// The lanes of a V at twice the width.
template <class V>
using WideVec = Vec<Wider<Lane<V>>, lanes<V> / 2>;

template <class W>
struct Pair {
  W first, second;
};

// Clamped to the range of T, in the same lanes.
template <class T, class W>
OVKS_INLINE W clamp(W v) {
  using L = std::numeric_limits<T>;
  v = smaller(v, broadcast<W>(L::max()));
  if constexpr (std::is_signed_v<Lane<W>>) v = larger(v, broadcast<W>(L::min()));
  return v;
}

// Within each 128 bits, the low or the high halves of a and b in turn.
template <class V>
OVKS_INLINE V unpackLow(V a, V b) {
  constexpr int n = 16 / sizeof(Lane<V>);
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, (i / n * n + i % n / 2 + (i % 2) * lanes<V>)...);
  }
  (std::make_index_sequence<lanes<V>>{});
}
template <class V>
OVKS_INLINE V unpackHigh(V a, V b) {
  constexpr int n = 16 / sizeof(Lane<V>);
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, (i / n * n + n / 2 + i % n / 2 + (i % 2) * lanes<V>)...);
  }
  (std::make_index_sequence<lanes<V>>{});
}

// The saturating packs of the processor, which read their lanes as signed.
template <class V, class W>
OVKS_INLINE V packSigned(W a, W b) {
  using T = Lane<V>;
  const auto x = bits<RawVec<sizeof(W)>>(a), y = bits<RawVec<sizeof(W)>>(b);
  if constexpr (sizeof(V) == 64) {
    if constexpr (std::is_same_v<T, uint8_t>) return bits<V>(_mm512_packus_epi16(x, y));
    if constexpr (std::is_same_v<T, int16_t>) return bits<V>(_mm512_packs_epi32(x, y));
    if constexpr (std::is_same_v<T, uint16_t>) return bits<V>(_mm512_packus_epi32(x, y));
  } else {
    if constexpr (std::is_same_v<T, uint8_t>) return bits<V>(_mm256_packus_epi16(x, y));
    if constexpr (std::is_same_v<T, int16_t>) return bits<V>(_mm256_packs_epi32(x, y));
    if constexpr (std::is_same_v<T, uint16_t>) return bits<V>(_mm256_packus_epi32(x, y));
  }
}

// 32-bit lanes from the low halves of even and the low halves of odd 64-bit lanes.
template <class V, class W>
OVKS_INLINE V interleave(W even, W odd) {
  using U = Unsigned<W>;
  return bits<V>((bits<U>(even) & broadcast<U>(0xffffffffu)) | (bits<U>(odd) << 32));
}

template <class V>
OVKS_INLINE Pair<WideVec<V>> widen(V v) {
  using T = Lane<V>;
  using W = WideVec<V>;
  if constexpr (sizeof(T) == 4) {
    return {(bits<W>(v) << 32) >> 32, bits<W>(v) >> 32};
  } else if constexpr (std::is_signed_v<T>) {
    const V sign = v >> (8 * sizeof(T) - 1);
    return {bits<W>(unpackLow(v, sign)), bits<W>(unpackHigh(v, sign))};
  } else {
    return {bits<W>(unpackLow(v, V{})), bits<W>(unpackHigh(v, V{}))};
  }
}

// The inverse of widen, saturated.
template <class V>
OVKS_INLINE V narrow(Pair<WideVec<V>> p) {
  using T = Lane<V>;
  if constexpr (sizeof(T) == 4) {
    return interleave<V>(clamp<T>(p.first), clamp<T>(p.second));
  } else if constexpr (std::is_signed_v<T>) {
    return packSigned<V>(p.first, p.second);
  } else {
    return packSigned<V>(clamp<T>(p.first), clamp<T>(p.second));
  }
}

}  // namespace ovks

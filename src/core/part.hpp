// SPDX-License-Identifier: MIT
// The first lanes of a vector from memory and to memory: through masks on AVX-512; on AVX2 through masks where lanes
// are wide enough and nothing is written, else as two pieces of one size that overlap.
#pragma once

#include "core/simd.hpp"

namespace ovks {

// 0, 1, 2 ...
template <class V>
OVKS_INLINE V laneNumbers() {
  V v;
  for (int i = 0; i < lanes<V>; ++i) v[i] = static_cast<Lane<V>>(i);
  return v;
}

namespace detail {

// True in the first n lanes.
template <class V>
OVKS_INLINE auto firstLanes(std::ptrdiff_t n) {
  using I = decltype(V{} == V{});
  return laneNumbers<I>() < broadcast<I>(static_cast<Lane<I>>(n));
}

template <std::size_t bytes>
struct PieceType {
  using type = RawVec<bytes>;
};
template <>
struct PieceType<8> {
  using type = uint64_t;
};
template <>
struct PieceType<4> {
  using type = uint32_t;
};
template <>
struct PieceType<2> {
  using type = uint16_t;
};
template <>
struct PieceType<1> {
  using type = uint8_t;
};
// What moves so many bytes at once.
template <std::size_t bytes>
using Piece = typename PieceType<bytes>::type;

// Shuffles bytes down by as many as the address is above the table's, zeros coming after them.
alignas(32) inline constexpr int8_t kDown[32] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                                 -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};

// 0 < n < 2 * size bytes of whole lanes, and zeros. In registers, because the load of a vector that was stored in
// pieces waits until all of them have reached the cache.
template <class V, std::size_t size = sizeof(V) / 2>
OVKS_INLINE V loadPieces(const char* p, std::ptrdiff_t n) {
  constexpr std::ptrdiff_t m{size};
  if constexpr (size > sizeof(Lane<V>)) {
    if (n < m) return loadPieces<V, size / 2>(p, n);
  }
  using P = Piece<size>;
  const P first = load<P>(p), last = load<P>(p + n - m);
  const auto again = static_cast<int>(2 * m - n);  // bytes of `first` that `last` begins with, 1 ... m
  if constexpr (size == 16) {
    const __m128i others = _mm_shuffle_epi8(bits<__m128i>(last), load<__m128i>(kDown + again));
    return bits<V>(_mm256_set_m128i(others, bits<__m128i>(first)));
  } else if constexpr (size == 8) {
    return bits<V>(Vec<uint64_t, sizeof(V) / 8>{first, last >> 8 * (again - 1) >> 8});
  } else {
    const uint64_t both = uint64_t{last} >> 8 * again << 8 * m | first;
    if constexpr (sizeof(V) == 4) return bits<V>(static_cast<uint32_t>(both));
    else return bits<V>(Vec<uint64_t, sizeof(V) / 8>{both});
  }
}

// 0 < n < 2 * size bytes, a multiple of `least`.
template <std::size_t size, std::size_t least>
OVKS_INLINE void copyPieces(char* dst, const char* src, std::ptrdiff_t n) {
  constexpr std::ptrdiff_t m{size};
  if constexpr (size > least) {
    if (n < m) return copyPieces<size / 2, least>(dst, src, n);
  }
  const auto first = load<Piece<size>>(src), last = load<Piece<size>>(src + n - m);
  store(dst, first);
  store(dst + n - m, last);
}

// The lanes of which mask is negative, the others zero.
template <class I>
OVKS_INLINE I maskLoad(const void* p, I mask) {
  if constexpr (sizeof(I) == 32) {
    const auto m = bits<__m256i>(mask);
    if constexpr (sizeof(Lane<I>) == 4) return bits<I>(_mm256_maskload_epi32(static_cast<const int*>(p), m));
    else return bits<I>(_mm256_maskload_epi64(static_cast<const long long*>(p), m));
  } else {
    const auto m = bits<__m128i>(mask);
    if constexpr (sizeof(Lane<I>) == 4) return bits<I>(_mm_maskload_epi32(static_cast<const int*>(p), m));
    else return bits<I>(_mm_maskload_epi64(static_cast<const long long*>(p), m));
  }
}

// By masks of AVX-512.
template <class V>
OVKS_INLINE V loadMasked(const Lane<V>* p, std::ptrdiff_t n, V rest) {
  constexpr int size = sizeof(Lane<V>);
  const uint64_t mask = _bzhi_u64(~uint64_t{0}, static_cast<unsigned>(n));
  const __m512i others = extend<__m512i>(rest);
  __m512i v;
  if constexpr (size == 1) v = _mm512_mask_loadu_epi8(others, mask, p);
  if constexpr (size == 2) v = _mm512_mask_loadu_epi16(others, static_cast<__mmask32>(mask), p);
  if constexpr (size == 4) v = _mm512_mask_loadu_epi32(others, static_cast<__mmask16>(mask), p);
  if constexpr (size == 8) v = _mm512_mask_loadu_epi64(others, static_cast<__mmask8>(mask), p);
  return low<V>(v);
}

}  // namespace detail

// The first n lanes from memory, 0 < n < lanes<V> (on AVX-512 also all), the others zero. Reads nothing beyond.
template <class V>
OVKS_INLINE V loadPart(const Lane<V>* p, std::ptrdiff_t n) {
  constexpr int size = sizeof(Lane<V>);
  if constexpr (kAvx512) return detail::loadMasked(p, n, V{});
  else if constexpr (size >= 4 && sizeof(V) >= 16) return bits<V>(detail::maskLoad(p, detail::firstLanes<V>(n)));
  else return detail::loadPieces<V>(reinterpret_cast<const char*>(p), n * size);
}
// The others from rest.
template <class V>
OVKS_INLINE V loadPart(const Lane<V>* p, std::ptrdiff_t n, V rest) {
  if constexpr (kAvx512) return detail::loadMasked(p, n, rest);
  else return detail::firstLanes<V>(n) ? loadPart<V>(p, n) : rest;
}

// The first n lanes to memory, 0 < n < lanes<V> (on AVX-512 also all). Writes nothing beyond.
template <class V>
OVKS_INLINE void storePart(Lane<V>* p, V v, std::ptrdiff_t n) {
  constexpr int size = sizeof(Lane<V>);
  if constexpr (kAvx512) {
    const uint64_t mask = _bzhi_u64(~uint64_t{0}, static_cast<unsigned>(n));
    const __m512i wide = extend<__m512i>(v);
    if constexpr (size == 1) _mm512_mask_storeu_epi8(p, mask, wide);
    if constexpr (size == 2) _mm512_mask_storeu_epi16(p, static_cast<__mmask32>(mask), wide);
    if constexpr (size == 4) _mm512_mask_storeu_epi32(p, static_cast<__mmask16>(mask), wide);
    if constexpr (size == 8) _mm512_mask_storeu_epi64(p, static_cast<__mmask8>(mask), wide);
  } else {
    auto* from = reinterpret_cast<const char*>(&v);
    asm("" : "+r"(from) : "m"(v));  // The compiler warns of lengths that do not occur.
    detail::copyPieces<sizeof(V) / 2, size>(reinterpret_cast<char*>(p), from, n * size);
  }
}

}  // namespace ovks

// SPDX-License-Identifier: MIT
// Vectors as wide as the level's registers, over the compiler's vector extensions.
//
// A vector is a plain value of the language: operators, comparisons, the conditional operator, __builtin_shufflevector
// and __builtin_convertvector are used as they are. This file adds what the language has no spelling for.
#pragma once

#include <immintrin.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "ovks/types.h"

#define OVKS_INLINE inline __attribute__((always_inline))

namespace ovks {

#ifdef __AVX512BW__
inline constexpr bool kAvx512 = true;
#else
inline constexpr bool kAvx512 = false;
#endif
inline constexpr int kVectorBytes = kAvx512 ? 64 : 32;

template <class T, int N>
struct VecType {
  typedef T type __attribute__((vector_size(N * sizeof(T))));
};
template <class T, int N = kVectorBytes / int{sizeof(T)}>
using Vec = typename VecType<T, N>::type;

// The element type of a vector, and how many it has.
template <class V>
using Lane = std::remove_cvref_t<decltype(std::declval<V>()[0])>;
template <class V>
inline constexpr int lanes = sizeof(V) / sizeof(Lane<V>);

// The same lanes, signed or unsigned.
template <class V>
using Signed = Vec<std::make_signed_t<Lane<V>>, lanes<V>>;
template <class V>
using Unsigned = Vec<std::make_unsigned_t<Lane<V>>, lanes<V>>;

template <std::size_t bytes>
using RawVec = Vec<long long, bytes / 8>;

// The same bits as another type of the same size.
template <class To, class From>
OVKS_INLINE To bits(From v) {
  static_assert(sizeof(To) == sizeof(From));
  return __builtin_bit_cast(To, v);
}

// x in every lane. Scalar operands of vector operators are spread, and what is left of this difference is that.
template <class V>
OVKS_INLINE V broadcast(Lane<V> x) {
  return x - V{};
}

template <class V>
OVKS_INLINE V load(const void* p) {
  V v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <class V>
OVKS_INLINE void store(void* p, V v) {
  __builtin_memcpy(p, &v, sizeof v);
}

// Past the caches; p must be aligned to the vector's size.
template <class V>
OVKS_INLINE void stream(void* p, V v) {
  if constexpr (sizeof(V) == 64) {
    _mm512_stream_si512(static_cast<__m512i*>(p), bits<__m512i>(v));
  } else if constexpr (sizeof(V) == 32) {
    _mm256_stream_si256(static_cast<__m256i*>(p), bits<__m256i>(v));
  } else {
    _mm_stream_si128(static_cast<__m128i*>(p), bits<__m128i>(v));
  }
}

// The first lanes of a wider vector.
template <class To, class From>
OVKS_INLINE To low(From v) {
  static_assert(sizeof(To) <= sizeof(From));
  To r;
  __builtin_memcpy(&r, &v, sizeof r);
  return r;
}

// A vector followed by lanes of any value.
template <class To, class From>
OVKS_INLINE To extend(From v) {
  if constexpr (sizeof(To) == sizeof(From)) {
    return bits<To>(v);
  } else if constexpr (sizeof(From) == 32) {
    return bits<To>(_mm512_castsi256_si512(bits<__m256i>(v)));
  } else if constexpr (sizeof(From) == 16 && sizeof(To) == 64) {
    return bits<To>(_mm512_castsi128_si512(bits<__m128i>(v)));
  } else if constexpr (sizeof(From) == 16) {
    return bits<To>(_mm256_castsi128_si256(bits<__m128i>(v)));
  } else if constexpr (sizeof(From) == 8) {
    return extend<To>(RawVec<16>{bits<long long>(v), 0});
  } else {
    To r{};
    __builtin_memcpy(&r, &v, sizeof v);
    return r;
  }
}

// v, loaded once: keeps the compiler from repeating a load inside every instruction that uses it.
template <class V>
OVKS_INLINE V inRegister(V v) {
  asm("" : "+v"(v));
  return v;
}

// One rounding for a * b + c.
template <class V>
OVKS_INLINE V fma(V a, V b, V c) {
  using T = Lane<V>;
  if constexpr (sizeof(V) == 64) {
    if constexpr (sizeof(T) == 4) return _mm512_fmadd_ps(a, b, c);
    else return _mm512_fmadd_pd(a, b, c);
  } else if constexpr (sizeof(V) == 32) {
    if constexpr (sizeof(T) == 4) return _mm256_fmadd_ps(a, b, c);
    else return _mm256_fmadd_pd(a, b, c);
  } else {
    if constexpr (sizeof(T) == 4) return _mm_fmadd_ps(a, b, c);
    else return _mm_fmadd_pd(a, b, c);
  }
}

// One rounding for a * b - c in the even lanes and a * b + c in the odd ones.
template <class V>
OVKS_INLINE V fmaSubAdd(V a, V b, V c) {
  using T = Lane<V>;
  if constexpr (sizeof(V) == 64) {
    if constexpr (sizeof(T) == 4) return _mm512_fmaddsub_ps(a, b, c);
    else return _mm512_fmaddsub_pd(a, b, c);
  } else {
    if constexpr (sizeof(T) == 4) return _mm256_fmaddsub_ps(a, b, c);
    else return _mm256_fmaddsub_pd(a, b, c);
  }
}

// a < b ? a : b and a > b ? a : b, so b where either is NaN. Of integers the compilers see it by themselves.
template <class V>
OVKS_INLINE V smaller(V a, V b) {
  using T = Lane<V>;
  if constexpr (std::is_integral_v<T>) {
    return a < b ? a : b;
  } else if constexpr (sizeof(V) == 64) {
    if constexpr (sizeof(T) == 4) return _mm512_min_ps(a, b);
    else return _mm512_min_pd(a, b);
  } else {
    if constexpr (sizeof(T) == 4) return _mm256_min_ps(a, b);
    else return _mm256_min_pd(a, b);
  }
}

template <class V>
OVKS_INLINE V larger(V a, V b) {
  using T = Lane<V>;
  if constexpr (std::is_integral_v<T>) {
    return a > b ? a : b;
  } else if constexpr (sizeof(V) == 64) {
    if constexpr (sizeof(T) == 4) return _mm512_max_ps(a, b);
    else return _mm512_max_pd(a, b);
  } else {
    if constexpr (sizeof(T) == 4) return _mm256_max_ps(a, b);
    else return _mm256_max_pd(a, b);
  }
}

namespace detail {
template <class V, class F, std::size_t... i>
OVKS_INLINE V shuffle(V v, F, std::index_sequence<i...>) {
  return __builtin_shufflevector(v, v, F{}(static_cast<int>(i))...);
}
}  // namespace detail

// Lane i of the result is lane f(i) of v; f is a stateless lambda.
template <class V, class F>
OVKS_INLINE V shuffle(V v, F f) {
  return detail::shuffle(v, f, std::make_index_sequence<lanes<V>>{});
}

namespace detail {

// To lanes of twice the width. gcc would convert halves and join them.
template <class T, class V>
OVKS_INLINE auto convertWider(V v) {
  using S = Lane<V>;
  using R = Vec<T, lanes<V>>;
  const auto raw = extend<RawVec<sizeof(V) < 16 ? 16 : sizeof(V)>>(v);
  if constexpr (sizeof(R) == 64) {
    if constexpr (std::is_same_v<S, float>) return _mm512_cvtps_pd(v);
    else if constexpr (std::is_same_v<T, double>) return _mm512_cvtepi32_pd(raw);
    else if constexpr (sizeof(S) == 4) return bits<R>(_mm512_cvtepi32_epi64(raw));
    else return bits<R>(_mm512_cvtepi16_epi32(raw));
  } else if constexpr (sizeof(R) == 32) {
    if constexpr (std::is_same_v<S, float>) return _mm256_cvtps_pd(v);
    else if constexpr (std::is_same_v<T, double>) return _mm256_cvtepi32_pd(raw);
    else if constexpr (sizeof(S) == 4) return bits<R>(_mm256_cvtepi32_epi64(raw));
    else return bits<R>(_mm256_cvtepi16_epi32(raw));
  } else {
    return bits<R>(_mm_cvtepi16_epi32(raw));
  }
}

template <class T, class V>
inline constexpr bool convertsWider = sizeof(T) == 2 * sizeof(Lane<V>) &&
                                      ((sizeof(T) * lanes<V> >= 32 && sizeof(T) * lanes<V> <= kVectorBytes) ||
                                       (sizeof(T) == 4 && lanes<V> == 4)) &&
                                      (std::is_same_v<Lane<V>, float> || std::is_same_v<Lane<V>, int32_t> ||
                                       (std::is_same_v<Lane<V>, int16_t> && std::is_same_v<T, int32_t>));

// Unsigned lanes of 8 or 16 bits to 32. gcc would take each by itself.
template <class V>
OVKS_INLINE auto toInt32(V v) {
  using R = Vec<int32_t, lanes<V>>;
  const auto raw = extend<RawVec<sizeof(V) < 16 ? 16 : sizeof(V)>>(v);
  if constexpr (sizeof(Lane<V>) == 1) {
    if constexpr (sizeof(R) == 64) return bits<R>(_mm512_cvtepu8_epi32(raw));
    else if constexpr (sizeof(R) == 32) return bits<R>(_mm256_cvtepu8_epi32(raw));
    else return bits<R>(_mm_cvtepu8_epi32(raw));
  } else {
    if constexpr (sizeof(R) == 64) return bits<R>(_mm512_cvtepu16_epi32(raw));
    else if constexpr (sizeof(R) == 32) return bits<R>(_mm256_cvtepu16_epi32(raw));
    else return bits<R>(_mm_cvtepu16_epi32(raw));
  }
}

template <class T, class V>
inline constexpr bool convertsToInt32 = std::is_same_v<T, int32_t> &&
                                        sizeof(Lane<V>) <= 2 && std::is_unsigned_v<Lane<V>> &&
                                        sizeof(T) * lanes<V> >= 16 && sizeof(T) * lanes<V> <= kVectorBytes;

}  // namespace detail

// Each lane converted to another type.
template <class T, class V>
OVKS_INLINE auto convert(V v) {
  if constexpr (std::is_same_v<T, Lane<V>>) return v;
  else if constexpr (detail::convertsWider<T, V>) return detail::convertWider<T>(v);
  else if constexpr (detail::convertsToInt32<T, V>) return detail::toInt32(v);
  else if constexpr (std::is_floating_point_v<T> && sizeof(Lane<V>) <= 2) return convert<T>(convert<int32_t>(v));
  else return __builtin_convertvector(v, Vec<T, lanes<V>>);
}

}  // namespace ovks
